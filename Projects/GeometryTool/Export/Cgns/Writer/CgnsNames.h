#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QStringList>

namespace Ovra::GeoTool
{

/// \brief Gives the nodes below one node of a CGNS file names: of at most 32 characters of ASCII,
/// and none twice.
class CgnsNames
{
public:
    /// \param reserved names that others have
    explicit CgnsNames(const QStringList& reserved = {});

    /// \brief The name for what is called \p full; not empty.
    QByteArray add(const QString& full);

private:
    QSet<QByteArray> taken_;
};

} // namespace Ovra::GeoTool
