#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>

namespace Ovra::GeoTool
{

/// \brief What a report's page may take, and how much of that each of its parts.
///
/// What is left out of a list is counted beside it, under its name and "More".
struct PageBudget
{
    qsizetype page = 14'900'000;    ///< bytes of all, but for some words between the parts
    qsizetype surfaces = 4'000'000; ///< bytes that tables leave to the surfaces in any case
    qsizetype list = 800'000;       ///< bytes of a list, other than that of regions and faces
    qsizetype text = 2'000;         ///< characters

    /// \brief The object with no list or text in it that takes more than it may.
    QJsonObject limited(const QJsonObject& object) const;

    /// \brief The rows at the beginning that fit into some bytes, themselves limited.
    QJsonArray fitting(const QJsonArray& rows, qsizetype room) const;

    /// \brief A value as it stands in a script of the page: nothing in it ends that.
    static QByteArray scriptText(const QJsonValue& value);

private:
    QJsonValue limited(const QJsonValue& value) const;
};

} // namespace Ovra::GeoTool
