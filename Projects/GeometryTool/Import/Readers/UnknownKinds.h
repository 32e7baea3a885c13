#pragma once

#include <QMap>
#include <QString>

namespace Ovra::GeoTool
{

/// \brief Counts the elements of kinds that have no counterpart in a case.
class UnknownKinds
{
public:
    /// \param kind as the format names it
    void add(const QString& kind, qint64 elements = 1) { counts_[kind] += elements; }

    /// \brief Throws ToolError Unsuitable with the kinds in \p path and their numbers, if there are
    /// any.
    void requireNone(const QString& path) const;

private:
    QMap<QString, qint64> counts_;
};

} // namespace Ovra::GeoTool
