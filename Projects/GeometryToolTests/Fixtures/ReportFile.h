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
        qint32 last = 0;
        for (quint32& number : numbers) {
            const auto half = static_cast<qint32>(number / 2);
            last += number % 2 == 0 ? half : -1 - half;
            number = static_cast<quint32>(last);
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
        const qsizetype count = bytes.size() / qsizetype(sizeof(Number));
        std::vector<Number> numbers;
        for (qsizetype i = 0; i < count; ++i) {
            QByteArray little;
            for (qsizetype rank = 0; rank < qsizetype(sizeof(Number)); ++rank) {
                little += bytes[rank * count + i];
            }
            numbers.push_back(qFromLittleEndian<Number>(little.constData()));
        }
        return numbers;
    }

    QByteArray page_;
    QJsonObject data_;
};
