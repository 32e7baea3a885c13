#pragma once

#include "ToolRun.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QtEndian>

#include <vector>

/// \brief What stands in a report, taken out of the page as a browser does.
class ReportFile
{
public:
    explicit ReportFile(QByteArray page)
        : page_(std::move(page))
        , data_(QJsonDocument::fromJson(scriptOf("case")).object())
    {
    }

    const QByteArray& page() const { return page_; }
    bool isFilled() const { return !data_.isEmpty(); }

    /// \brief The value at a path such as "info/dimensions/3/mesh/count".
    QJsonValue at(const QString& path) const
    {
        QJsonValue value = data_;
        for (const QString& step : path.split(QLatin1Char('/'))) {
            value = value.isArray() ? value[step.toInt()] : value[step];
        }
        return value;
    }

    /// \brief The text of the script element of that id.
    QByteArray scriptOf(const QByteArray& id) const
    {
        const qsizetype begin = page_.indexOf('>', page_.indexOf("id=\"" + id + "\">")) + 1;
        return page_.mid(begin, page_.indexOf("</script", begin) - begin);
    }

    /// \brief The title as a browser's parser takes it.
    QByteArray title() const
    {
        const qsizetype begin = page_.indexOf("<title>") + 7;
        return page_.mid(begin, page_.indexOf("</title>") - begin);
    }

    std::vector<float> positions() const { return numbersOf<float>("positions"); }

    std::vector<quint32> indices() const
    {
        std::vector<quint32> numbers = numbersOf<quint32>("indices");
        for (std::size_t i = 1; i < numbers.size(); ++i) {
            numbers[i] += numbers[i - 1];
        }
        return numbers;
    }

private:
    template <typename Number>
    std::vector<Number> numbersOf(const QByteArray& id) const
    {
        // Qt wants the size ahead, which a browser's streams do without; too small a one is grown.
        const QByteArray bytes =
            qUncompress(QByteArray(4, '\0') + QByteArray::fromBase64(scriptOf(id)));
        std::vector<Number> numbers(static_cast<std::size_t>(bytes.size()) / sizeof(Number));
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            numbers[i] = qFromLittleEndian<Number>(bytes.constData() + i * sizeof(Number));
        }
        return numbers;
    }

    QByteArray page_;
    QJsonObject data_;
};
