#pragma once

#include <QByteArray>

namespace Ovra::GeoTool
{

struct CaseSummary;

/// \brief The summary as lines for people to read.
QByteArray infoText(const CaseSummary& summary);

} // namespace Ovra::GeoTool
