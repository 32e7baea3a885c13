#pragma once

#include <QString>

namespace CLI
{
class App;
}

namespace Ovra::GeoTool
{

/// \brief The manual page ovrageo(1), in the language of man(7).
QString manualPage(const CLI::App& app);

} // namespace Ovra::GeoTool
