#pragma once

#include "ComparedCase.h"
#include "Signatures.h"

#include <array>
#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief One of two cases with signatures of where its mesh lies, which it shares with the other.
class PlacedCase
{
public:
    using Places = std::vector<Signature>;

    /// \param oneCase not owned; must outlive this object
    /// \param vertices a signature for the place of each mesh vertex
    PlacedCase(const ComparedCase& oneCase, Places vertices);

    /// \brief Both cases, whose vertices are in the same place if no coordinate differs by more
    ///        than \p tolerance.
    static std::pair<PlacedCase, PlacedCase> both(const ComparedCase& a, const ComparedCase& b,
                                                  double tolerance);

    const ComparedCase& oneCase() const { return *oneCase_; }

    /// \brief Of the mesh entities of \p dimension, by position: where their vertices lie, in
    ///        whatever order.
    const Places& places(int dimension) const
    {
        return places_[static_cast<std::size_t>(dimension)];
    }

private:
    const ComparedCase* oneCase_;
    std::array<Places, 4> places_;
};

} // namespace Ovra::GeoTool
