#pragma once

#include <QString>

namespace CLI
{
class App;
}

namespace Ovra::GeoTool
{

/// \brief What bash sources to complete the arguments of ovrageo. It asks for nothing but bash itself.
QString bashCompletion(const CLI::App& app);

/// \brief The function `_ovrageo` of zsh's completion system.
QString zshCompletion(const CLI::App& app);

} // namespace Ovra::GeoTool
