#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <vector>

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

/// \brief A field of cells or points, row by row; of numbers or of texts.
struct Field
{
    std::size_t components = 0;
    std::vector<double> numbers;
    QStringList texts;
};

/// \brief All cells of a data set, or all points, with their fields.
struct Rows
{
    std::size_t count = 0;
    QMap<QString, Field> fields;

    bool has(const QString& name) const { return fields.contains(name); }
    bool isText(const QString& name) const { return !fields.value(name).texts.isEmpty(); }

    /// \brief The numbers of a row; none where there is no such field of numbers.
    std::vector<double> numbers(const QString& name, std::size_t row) const;

    /// \brief The first number of a row; 0 where there is no such field of numbers.
    double number(const QString& name, std::size_t row) const;

    /// \brief A row as text, numbers with all their digits.
    QString text(const QString& name, std::size_t row) const;
};

struct Grid
{
    Rows cells;
    Rows points;
};

/// \brief With all its digits.
QString textOf(double number);

/// \brief The data set of a .vtu, .vtp or .pvtu file, all parts of the last one behind one another.
Grid gridOf(const QString& path);

/// \brief The blocks of a .vtm file, by the names of their groups.
QMap<QString, QList<Piece>> blocksOf(const QString& path);

} // namespace VtkContent
