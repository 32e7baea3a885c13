#pragma once

namespace Ovra::GeoTool
{

class CaseView;
class FindingSink;

/// \brief Looks whether the links between model entities of different dimension run both ways.
class ModelLinkCheck
{
public:
    static void run(const CaseView& view, FindingSink& sink);
};

} // namespace Ovra::GeoTool
