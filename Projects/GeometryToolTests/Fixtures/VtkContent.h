#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

/// \brief What VTK's own readers find in the files of an export.
namespace VtkContent
{

/// \brief A data set; one that could not be read has -1 cells.
struct Piece
{
    QString name; ///< of the block
    qint64 cells = -1;
    QStringList cellFields;
    QMap<QString, QString> facts; ///< the first row of each field of the data set
};

/// \brief The grid of a .vtu file.
Piece gridOf(const QString& path);

/// \brief The blocks of a .vtm file, by the names of their groups.
QMap<QString, QList<Piece>> blocksOf(const QString& path);

} // namespace VtkContent
