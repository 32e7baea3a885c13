#pragma once

#include <QString>

/// \brief Where the build and the checkout lie, known to one source alone so that all others
/// compile to the same object in every checkout.
namespace Places
{

QString tool();          ///< the built ovrageo
QString cases();         ///< folder of the cases that come with the project
QString documentation(); ///< folder of the pages
QString toolSources();   ///< folder of the host's sources
QString browserDriver(); ///< folder of what opens a page in a browser

} // namespace Places
