#pragma once

#include <QString>

namespace Ovra::GeoTool
{

class GmshSession;
class LooseFaces;
class Progress;
struct ImportOptions;

/// \brief Makes solids of the shells that a CAD file holds without saying that they are solids.
///
/// Shells whose faces share their edges are taken as they are. Where edges are free, their faces are
/// sewn, first as closely as the kernel can, then within 1e-5 of the size of the whole. What stays open, and what lies beside solids of the file, is told.
class SolidMaking
{
public:
    SolidMaking(GmshSession& session, Progress& progress, const ImportOptions& options);

    /// \brief Completes Gmsh's current model; throws ToolError if volumes are wanted and no shell
    /// is closed.
    void run();

    /// \brief Whether it has been told why there are no volumes.
    bool isOpennessTold() const { return isOpennessTold_; }

private:
    LooseFaces look(double tolerance);
    void fill(LooseFaces& loose);
    void tellOfFacesBesideSolids(const LooseFaces& loose) const;
    void tellOfOpenness(const LooseFaces& loose);
    void warn(const QString& text) const;

    GmshSession& session_;
    Progress& progress_;
    const ImportOptions& options_;
    bool isOpennessTold_ = false;
};

} // namespace Ovra::GeoTool
