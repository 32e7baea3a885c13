#pragma once

#include <QString>

namespace Ovra::Geo
{
class Model;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

class Progress;
struct LooseBodies;

/// \brief Warns of what makes an imported model useless for what users go on to do with it, though
/// it is sound.
class ImportRemarks
{
public:
    ImportRemarks(const Geo::Model& model, Progress& progress);

    /// \brief Bodies that touch or overlap without being joined, but for faces that are tied.
    /// \param scale of lengths of the model to those of the input
    void warnOfLooseBodies(const QString& input, const LooseBodies& loose, double scale) const;

    /// \brief Values of material_type that the library does not know, each told once, and regions
    /// that have none, by name where others have one.
    /// \param attributes path of the file that gave the model its attributes
    void warnOfMaterials(const QString& attributes) const;

private:
    void warnOfUnknownMaterials(const QString& attributes) const;
    void warnOfMissingMaterials(const QString& attributes) const;
    void warnOfContacts(const QString& input, const LooseBodies& loose, double scale) const;
    void warnOfOverlaps(const QString& input, const LooseBodies& loose, double scale) const;

    const Geo::Model& model_;
    Progress& progress_;
};

} // namespace Ovra::GeoTool
