#include "BodyArrangement.h"

#include "AirBox.h"
#include "BodyJoining.h"
#include "CadModel.h"
#include "GmshSession.h"
#include "ImportOptions.h"
#include "Progress.h"
#include "ToolError.h"

#include <memory>

namespace Ovra::GeoTool
{

BodyArrangement::BodyArrangement(GmshSession& session, Progress& progress)
    : session_(session)
    , progress_(progress)
{
}

void BodyArrangement::arrange(const ImportOptions& options, bool hasMesh)
{
    if (!options.join && !options.air) {
        return;
    }
    requireBodies(options, hasMesh);
    progress_.phase(QStringLiteral("joining the bodies of %1").arg(options.input));
    std::unique_ptr<BodyJoining> joining;
    session_.run(
        QStringLiteral("%1: joining its bodies fails").arg(options.input),
        [&] {
            const double tolerance = options.joinTolerance.value_or(CadModel::contactTolerance());
            const int air = options.air ? AirBox(*options.air).add() : 0;
            joining = std::make_unique<BodyJoining>(tolerance);
            joining->setBackground(air);
            joining->join();
        },
        false);
    if (!joining->fault().isEmpty()) {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("%1: %2").arg(options.input, joining->fault()));
    }
    for (const QString& remark : joining->remarks()) {
        progress_.warning(QStringLiteral("%1: %2").arg(options.input, remark));
    }
}

void BodyArrangement::requireBodies(const ImportOptions& options, bool hasMesh) const
{
    if (hasMesh || !CadModel::isOfKernel()) {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("%1: --join and --air need geometry of the OpenCASCADE "
                                       "kernel, as STEP, IGES and BREP files have it, and no mesh")
                            .arg(options.input));
    }
    const QString taken = options.air ? AirBox::nameInUse() : QString();
    if (!taken.isEmpty()) {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("%1: has the name \"%2\" already, which the air is to get")
                            .arg(options.input, taken));
    }
    if (options.air && CadModel::bodyDimension() != 3) {
        throw ToolError(
            ExitCode::Unsuitable,
            QStringLiteral("%1: holds no volumes that air could surround").arg(options.input));
    }
}

} // namespace Ovra::GeoTool
