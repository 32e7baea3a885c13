#pragma once

#include <QString>

class QFile;

namespace Ovra::GeoTool
{

/// \brief What a check says of an input file, as ToolError of InputDamaged.
class InputDamage
{
public:
    /// \brief Throws \p what of the file \p path.
    [[noreturn]] static void damaged(const QString& path, const QString& what);

    /// \brief Throws that \p file is cut off at its end, which shows by what is \p missing.
    [[noreturn]] static void cutOff(const QFile& file, const QString& missing);
};

} // namespace Ovra::GeoTool
