#include "SolverInput.h"

#include "GbiWriter.h"
#include "Progress.h"
#include "ScaleCheck.h"
#include "SolverInputCheck.h"
#include "ToolError.h"

#include <QTextStream>

#include <functional>
#include <vector>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// The transform and the labelled weights follow the stream's precision; less would move periodic
/// faces.
constexpr int streamPrecision = 15;

struct Target
{
    const GbiWriter& writer;
    QTextStream& stream;
    double scale;
};

using Writing = std::function<void(const Target&)>;

struct Section
{
    QString name;
    Writing plain;
    Writing labelled;
};

void writeShells(const Target& target)
{
    target.writer.writeShellElements(target.stream);
    target.writer.writeShellRegionData(target.stream);
    target.writer.writeShellSurfaceNodeLinks(target.stream);
}

/// The nodal data come first because they gather what the face list only prints.
void writePeriodic(const Target& target)
{
    target.writer.writePeriodicNodalData(target.stream);
    target.writer.writePeriodicFaceList(target.stream);
    target.writer.writePeriodicTransform(target.stream);
}

/// The nodal data come first because they gather what the face list only prints.
void writeExtrusion(const Target& target)
{
    target.writer.writeExtrusionNodalData(target.stream);
    target.writer.writeExtrusionFaceList(target.stream);
}

Section inOneForm(const char* name, const Writing& writing)
{
    return {QLatin1String(name), writing, writing};
}

const std::vector<Section>& sections()
{
    static const std::vector<Section> table = {
        inOneForm("nodes", [](const Target& t) { t.writer.writeNodes(t.stream, t.scale); }),
        inOneForm("elements", [](const Target& t) { t.writer.writeElements(t.stream); }),
        inOneForm("part-surfaces",
                  [](const Target& t) { t.writer.writePartSurfaces(t.stream, t.scale); }),
        inOneForm("surface-connectivity",
                  [](const Target& t) { t.writer.writeSurfaceConnectivity(t.stream, t.scale); }),
        inOneForm("shells", writeShells),
        {"periodic", writePeriodic,
         [](const Target& t) { t.writer.writeGmPeriodicData(t.stream); }},
        {"extrusion", writeExtrusion,
         [](const Target& t) { t.writer.writeGmExtrusionData(t.stream); }},
        {"moving", [](const Target& t) { t.writer.writeMovingRegionData(t.stream); },
         [](const Target& t) { t.writer.writeGmMovingRegionData(t.stream); }},
        {"rotating", [](const Target& t) { t.writer.writeRotatingRegionData(t.stream); },
         [](const Target& t) { t.writer.writeGmRotatingRegionData(t.stream); }},
    };
    return table;
}

} // namespace

QStringList SolverInput::sectionNames()
{
    QStringList names;
    for (const Section& section : sections()) {
        names += section.name;
    }
    return names;
}

void SolverInput::setSections(const QStringList& names)
{
    for (const QString& name : names) {
        if (!sectionNames().contains(name)) {
            throw ToolError(ExitCode::Usage,
                            QStringLiteral("unknown section \"%1\"; the sections are %2")
                                .arg(name, sectionNames().join(QStringLiteral(", "))));
        }
    }
    sections_ = names;
}

void SolverInput::write(Database& database, QTextStream& stream, Progress& progress) const
{
    progress.phase(QStringLiteral("checking the case"));
    SolverInputCheck(database).require(sections_);
    if (sections_.contains(QStringLiteral("periodic"))) {
        ScaleCheck(database).require(scale_, progress);
    }
    const GbiWriter writer(&database);
    int done = 0;
    for (const Section& section : sections()) {
        if (!sections_.contains(section.name)) {
            continue;
        }
        progress.phase(QStringLiteral("writing section %1 of %2, %3")
                           .arg(++done)
                           .arg(sections_.size())
                           .arg(section.name));
        stream.setRealNumberPrecision(
            streamPrecision); // one of the operations leaves its own behind
        (labelled_ ? section.labelled : section.plain)({writer, stream, scale_});
    }
    progress.finish();
}

} // namespace Ovra::GeoTool
