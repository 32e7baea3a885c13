#pragma once

#include <QString>

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

    /// \brief Bodies that touch without being joined.
    void warnOfLooseBodies(const QString& input) const;

    /// \brief Values of material_type that the library does not know, each told once, and regions
    /// none of which has any.
    /// \param attributes path of the file that gave the model its attributes
    void warnOfMaterials(const QString& attributes) const;

private:
    const Geo::Model& model_;
    Progress& progress_;
};

} // namespace Ovra::GeoTool
