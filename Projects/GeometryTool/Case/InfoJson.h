#pragma once

#include <QByteArray>

namespace Ovra::GeoTool
{

struct CaseSummary;

/// \brief The summary as a JSON object, laid out as Documentation/ovrageo.md describes it.
QByteArray infoJson(const CaseSummary& summary);

} // namespace Ovra::GeoTool
