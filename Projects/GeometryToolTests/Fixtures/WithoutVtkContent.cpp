// For a build without VTK, in which the tests that read its files skip.

#include "VtkContent.h"

namespace VtkContent
{

std::vector<double> Rows::numbers(const QString&, std::size_t) const
{
    return {};
}

double Rows::number(const QString&, std::size_t) const
{
    return 0.0;
}

QString Rows::text(const QString&, std::size_t) const
{
    return {};
}

QString textOf(double)
{
    return {};
}

Grid gridOf(const QString&)
{
    return {};
}

QMap<QString, QList<Piece>> blocksOf(const QString&)
{
    return {};
}

} // namespace VtkContent
