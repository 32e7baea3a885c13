#include "GmshReader.h"

#include "AbaqusReader.h"
#include "BodyArrangement.h"
#include "BrepReader.h"
#include "CadModel.h"
#include "Counted.h"
#include "DeclaredElements.h"
#include "ElementLists.h"
#include "GmshSession.h"
#include "ImportOptions.h"
#include "InputDamage.h"
#include "InputFileCheck.h"
#include "KnownSuffix.h"
#include "MeditReader.h"
#include "MshElementTags.h"
#include "NastranReader.h"
#include "OffReader.h"
#include "PlyReader.h"
#include "Progress.h"
#include "SolidMaking.h"
#include "StlReader.h"
#include "SurfaceFilling.h"
#include "ToolError.h"
#include "UniversalReader.h"
#include "UnknownNode.h"
#include "VolumeAdvice.h"
#include "VrmlReader.h"
#include "VtkCheck.h"
#include "VtkSurfaceReader.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QTemporaryFile>

#include <algorithm>
#include <cmath>
#include <gmsh.h>
#include <optional>

namespace Ovra::GeoTool
{

namespace
{

const QStringList TriangleFormats{QStringLiteral("stl"), QStringLiteral("off"),
                                  QStringLiteral("ply"), QStringLiteral("vrml"),
                                  QStringLiteral("wrl")};

bool hasElements(int dimension)
{
    std::vector<int> types;
    gmsh::model::mesh::getElementTypes(types, dimension);
    return !types.empty();
}

qint64 elementCount()
{
    std::vector<int> types;
    gmsh::model::mesh::getElementTypes(types);
    std::size_t count = 0;
    for (const int type : types) {
        count += ElementLists::count(type);
    }
    return static_cast<qint64>(count);
}

/// By long lists, in which those without nodes are too.
qint64 listedElementCount()
{
    std::vector<int> types;
    std::vector<std::vector<std::size_t>> elements;
    std::vector<std::vector<std::size_t>> nodes;
    gmsh::model::mesh::getElements(types, elements, nodes);
    qint64 count = 0;
    for (const auto& list : elements) {
        count += static_cast<qint64>(list.size());
    }
    return count;
}

QStringList readByGmsh(const QString& path)
{
    gmsh::open(KnownSuffix(path).encodedPath());
    return {};
}

template <typename Reader>
QStringList readBy(const QString& path)
{
    return Reader(path).read();
}

QStringList readGmshMesh(const QString& path)
{
    QFile file(path);
    const std::optional<QByteArray> completed =
        file.open(QIODevice::ReadOnly) ? MshElementTags::completed(file) : std::nullopt;
    if (!completed) {
        return readByGmsh(path);
    }
    QTemporaryFile copy(QDir::tempPath() + QStringLiteral("/XXXXXX.msh"));
    if (!copy.open() || copy.write(*completed) != completed->size() || !copy.flush()) {
        throw ToolError(ExitCode::OutputFailed,
                        QStringLiteral("%1: %2").arg(copy.fileName(), copy.errorString()));
    }
    return readByGmsh(copy.fileName());
}

QStringList readBrep(const QString& path)
{
    BrepReader(path).read();
    return {};
}

bool isVtkSurface(const QString& path)
{
    return InputFileCheck::suffix(path) == QLatin1String("vtk") &&
           VtkCheck::dataset(path) == "POLYDATA";
}

QStringList readVtk(const QString& path)
{
    return isVtkSurface(path) ? VtkSurfaceReader(path).read() : readByGmsh(path);
}

/// \brief Loads a file into Gmsh; what is odd about it.
using Read = QStringList (*)(const QString& path);

/// \brief What is not left to Gmsh, by suffix.
const QHash<QString, Read>& ownReaders()
{
    static const QHash<QString, Read> readers{{QStringLiteral("inp"), readBy<AbaqusReader>},
                                              {QStringLiteral("brep"), readBrep},
                                              {QStringLiteral("brp"), readBrep},
                                              {QStringLiteral("mesh"), readBy<MeditReader>},
                                              {QStringLiteral("msh"), readGmshMesh},
                                              {QStringLiteral("msh2"), readGmshMesh},
                                              {QStringLiteral("stl"), readBy<StlReader>},
                                              {QStringLiteral("off"), readBy<OffReader>},
                                              {QStringLiteral("ply"), readBy<PlyReader>},
                                              {QStringLiteral("vrml"), readBy<VrmlReader>},
                                              {QStringLiteral("wrl"), readBy<VrmlReader>},
                                              {QStringLiteral("vtk"), readVtk},
                                              {QStringLiteral("unv"), readBy<UniversalReader>},
                                              {QStringLiteral("bdf"), readBy<NastranReader>},
                                              {QStringLiteral("nas"), readBy<NastranReader>}};
    return readers;
}

const char* const threadOptions[] = {"General.NumThreads", "Mesh.MaxNumThreads1D",
                                     "Mesh.MaxNumThreads2D", "Mesh.MaxNumThreads3D"};

bool asksForThreads()
{
    return std::any_of(std::begin(threadOptions), std::end(threadOptions), [](const char* option) {
        double threads = 0;
        gmsh::option::getNumber(option, threads);
        const bool isForAll = option == threadOptions[0]; // of it, 0 stands for all there are
        return threads > 1 || (isForAll && threads < 1);
    });
}

/// \brief Several threads number nodes as they happen to finish.
void useOneThread()
{
    for (const char* option : threadOptions) {
        gmsh::option::setNumber(option, 1);
    }
}

bool isSurfaceFormat(const QString& path)
{
    return TriangleFormats.contains(InputFileCheck::suffix(path)) || isVtkSurface(path);
}

} // namespace

GmshReader::GmshReader(GmshSession& session, Progress& progress)
    : session_(session)
    , progress_(progress)
{
}

int GmshReader::read(const ImportOptions& options)
{
    InputFileCheck::check(options.input);
    requireReader(options.input);
    open(options.input);
    tellOfThreads(options.input);
    requireAllElements(options.input);
    requireFiniteNodes(options.input);
    makeSolids(options);
    fillIfSurface(options);
    const int dimension = targetDimension(options);
    BodyArrangement(session_, progress_).arrange(options, hasElements(dimension));
    if (!hasElements(dimension)) {
        generate(options, dimension);
    }
    if (options.meshSize > 0 && !isMeshedHere_) {
        progress_.warning(
            QStringLiteral("%1: brings a mesh with it, on which --mesh-size has no influence")
                .arg(options.input));
    }
    return dimension;
}

void GmshReader::requireReader(const QString& path) const
{
    static const QHash<QString, QString> features{{QStringLiteral("cgns"), QStringLiteral("Cgns")},
                                                  {QStringLiteral("med"), QStringLiteral("Med")},
                                                  {QStringLiteral("mmed"), QStringLiteral("Med")},
                                                  {QStringLiteral("rmed"), QStringLiteral("Med")}};
    const QString feature = features.value(InputFileCheck::suffix(path));
    if (!feature.isEmpty() && !GmshSession::hasFeature(feature)) {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("%1: the installed Gmsh was built without support for %2 "
                                       "files; convert the file to .msh first")
                            .arg(path, feature.toUpper()));
    }
}

void GmshReader::open(const QString& path)
{
    progress_.phase(QStringLiteral("reading %1").arg(path));
    QStringList remarks;
    try {
        session_.run(path, [&path, &remarks] {
            remarks = ownReaders().value(InputFileCheck::suffix(path), readByGmsh)(path);
        });
    } catch (const ToolError& error) {
        throw ToolError(error.exitCode(), UnknownNode::explained(error.text(), path));
    }
    for (const QString& remark : std::as_const(remarks)) {
        progress_.warning(QStringLiteral("%1: %2").arg(path, remark));
    }
    for (const QString& warning : session_.takeWarnings()) {
        progress_.warning(QStringLiteral("%1: Gmsh: %2").arg(path, warning));
    }
    if (gmsh::model::getDimension() < 1) {
        throw ToolError(ExitCode::InputDamaged,
                        QStringLiteral("%1: Gmsh finds neither geometry nor mesh in it").arg(path));
    }
}

void GmshReader::tellOfThreads(const QString& path) const
{
    if (asksForThreads() && hasElements(qMax(1, gmsh::model::getDimension()))) {
        progress_.warning(QStringLiteral("%1: meshes itself with several threads, so that every "
                                         "import may give another mesh; leave out its Mesh "
                                         "command, or the threads")
                              .arg(path));
    }
}

void GmshReader::makeSolids(const ImportOptions& options)
{
    SolidMaking making(session_, progress_, options);
    making.run();
    isOpennessTold_ = making.isOpennessTold();
}

void GmshReader::requireAllElements(const QString& path) const
{
    const qint64 declared = DeclaredElements::in(path).value_or(0);
    qint64 loaded = elementCount();
    loaded = loaded < declared ? qMax(loaded, listedElementCount()) : loaded;
    if (loaded < declared) {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("%1: of its %2, %3 that cannot be imported, polygons or "
                                       "springs for instance")
                            .arg(path, counted(declared, QStringLiteral("element")),
                                 counted(declared - loaded, QStringLiteral("is of a kind"),
                                         QStringLiteral("are of kinds"))));
    }
}

void GmshReader::requireFiniteNodes(const QString& path) const
{
    std::vector<std::size_t> tags;
    std::vector<double> coordinates;
    std::vector<double> parameters;
    gmsh::model::mesh::getNodes(tags, coordinates, parameters);
    const auto place = std::find_if(coordinates.begin(), coordinates.end(),
                                    [](double coordinate) { return !std::isfinite(coordinate); });
    if (place == coordinates.end()) {
        return;
    }
    const auto node = static_cast<std::size_t>(place - coordinates.begin()) / 3;
    const bool isVtk = InputFileCheck::suffix(path) == QLatin1String("vtk"); // without numbers
    InputDamage::damaged(path, QStringLiteral("node %1%2 has a coordinate that is no finite number")
                                   .arg(tags[node])
                                   .arg(isVtk ? QStringLiteral(", counted from 1,") : QString()));
}

int GmshReader::targetDimension(const ImportOptions& options) const
{
    const int present = gmsh::model::getDimension();
    const int wanted = options.dimension == 0 ? qMax(2, present) : options.dimension;
    if (present >= wanted) {
        return wanted;
    }
    throw ToolError(ExitCode::Unsuitable,
                    wanted == 3
                        ? QStringLiteral("%1: holds no volumes; import it with --dimension 2")
                              .arg(options.input)
                        : QStringLiteral("%1: holds curves only, no surfaces").arg(options.input));
}

void GmshReader::generate(const ImportOptions& options, int dimension)
{
    if (!CadModel::hasShapes() && !isSurfaceFormat(options.input)) {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("%1: holds no elements of dimension %2 and no geometry to "
                                       "mesh")
                            .arg(options.input, QString::number(dimension)));
    }
    if (options.meshSize > 0) {
        gmsh::option::setNumber("Mesh.MeshSizeMax", options.meshSize);
        gmsh::option::setNumber("Mesh.MeshSizeMin", 0);
    }
    isMeshedHere_ = true;
    useOneThread();
    // In one call, as Gmsh's own users have it: meshing in steps gives another mesh.
    progress_.phase(QStringLiteral("meshing %1").arg(options.input));
    try {
        session_.run(
            QStringLiteral("%1: meshing fails").arg(options.input),
            [dimension] { gmsh::model::mesh::generate(dimension); }, false);
    } catch (const ToolError& error) {
        throw ToolError(error.exitCode(), error.text() + VolumeAdvice::onFailure(error.text()));
    }
    if (!hasElements(dimension)) {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("%1: Gmsh makes no elements of dimension %2 of it")
                            .arg(options.input, QString::number(dimension)));
    }
    session_.takeWarnings(); // about quality on the way, of which the result tells more
}

void GmshReader::fillIfSurface(const ImportOptions& options)
{
    const bool surfaceOnly = gmsh::model::getDimension() == 2 && !CadModel::hasShapes();
    const bool wanted =
        options.dimension == 3 || (options.dimension == 0 && isSurfaceFormat(options.input));
    if (!surfaceOnly || !wanted) {
        return;
    }
    progress_.phase(QStringLiteral("looking for closed bodies"));
    SurfaceFilling filling(isSurfaceFormat(options.input));
    session_.run(options.input, [&filling] { filling.collect(); });
    if (!filling.obstacle().isEmpty()) {
        const QString text = QStringLiteral("%1: %2").arg(options.input, filling.obstacle());
        if (options.dimension == 3) {
            throw ToolError(ExitCode::Unsuitable, text);
        }
        progress_.warning(text + QStringLiteral("; only the surface is imported"));
        isOpennessTold_ = true;
        return;
    }
    session_.run(options.input, [&filling] { filling.addVolumes(); });
    generate(options, 3);
}

} // namespace Ovra::GeoTool
