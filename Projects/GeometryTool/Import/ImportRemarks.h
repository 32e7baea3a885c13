#pragma once

#include "CadContacts.h"
#include "CoincidentFaces.h"

#include <QString>

#include <vector>

namespace Ovra::Geo
{
class Model;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

class Progress;

/// \brief Warns of what makes an imported model useless for what users go on to do with it, though
/// it is sound.
class ImportRemarks
{
public:
    ImportRemarks(const Geo::Model& model, Progress& progress);

    /// \brief Bodies that touch without being joined, but for faces that are tied.
    /// \param contacts as the geometry kernel finds them; null where there is no kernel to ask
    void warnOfLooseBodies(const QString& input,
                           const std::vector<CadContacts::Contact>* contacts) const;

    /// \brief Values of material_type that the library does not know, each told once, and regions
    /// that have none, by name where others have one.
    /// \param attributes path of the file that gave the model its attributes
    void warnOfMaterials(const QString& attributes) const;

private:
    void warnOfUnknownMaterials(const QString& attributes) const;
    void warnOfMissingMaterials(const QString& attributes) const;
    std::vector<CoincidentFaces::Pair>
    loosePairs(const std::vector<CadContacts::Contact>& contacts) const;

    const Geo::Model& model_;
    Progress& progress_;
};

} // namespace Ovra::GeoTool
