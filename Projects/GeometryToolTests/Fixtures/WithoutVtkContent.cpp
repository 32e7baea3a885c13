// For a build without VTK, in which the tests that read its files skip.

#include "VtkContent.h"

namespace VtkContent
{

Piece gridOf(const QString&)
{
    return {};
}

QMap<QString, QList<Piece>> blocksOf(const QString&)
{
    return {};
}

} // namespace VtkContent
