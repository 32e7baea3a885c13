#include "AttributeType.h"
#include "ClosedCase.h"
#include "GeometryDatabaseTests/GridMesh.h"
#include "Matrix.h"
#include "MeshRegion.h"
#include "PreparationCase.h"
#include "TinyCase.h"
#include "ToolRun.h"

#include <QMap>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <sys/resource.h>
#include <vtkCellData.h>
#include <vtkCellSizeFilter.h>
#include <vtkCellType.h>
#include <vtkCompositeDataSet.h>
#include <vtkDataArray.h>
#include <vtkFieldData.h>
#include <vtkInformation.h>
#include <vtkMeshQuality.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkSmartPointer.h>
#include <vtkStringArray.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLMultiBlockDataReader.h>
#include <vtkXMLPolyDataReader.h>
#include <vtkXMLUnstructuredGridReader.h>

using namespace Ovra::Geo;

using Doubling = void (*)(GridMesh&);
using Sides = QMap<int, int>;
Q_DECLARE_METATYPE(Doubling)

namespace
{

template <typename Reader, typename Data>
vtkSmartPointer<Data> readBy(const QString& path)
{
    vtkNew<Reader> reader;
    reader->SetFileName(path.toUtf8().constData());
    reader->Update();
    return vtkSmartPointer<Data>(Data::SafeDownCast(reader->GetOutputDataObject(0)));
}

QString textOf(vtkFieldData& data, const char* name, vtkIdType tuple)
{
    vtkAbstractArray* const array = data.GetAbstractArray(name);
    if (!array) {
        return QStringLiteral("(missing)");
    }
    QStringList texts;
    for (int i = 0; i < array->GetNumberOfComponents(); ++i) {
        const vtkVariant value = array->GetVariantValue(tuple * array->GetNumberOfComponents() + i);
        texts += QString::fromStdString(value.ToString());
    }
    return texts.join(QLatin1Char(' '));
}

QString namesIn(vtkFieldData& data)
{
    QStringList names;
    for (int i = 0; i < data.GetNumberOfArrays(); ++i) {
        names += QString::fromUtf8(data.GetAbstractArray(i)->GetName());
    }
    return names.join(QLatin1Char(' '));
}

double valueOf(vtkFieldData& data, const char* name, vtkIdType tuple)
{
    vtkDataArray* const array = data.GetArray(name);
    return array ? array->GetTuple1(tuple) : std::nan("");
}

QByteArray run(const QString& name, const QString& output)
{
    const ToolRun run = runTool({"export", name, "-o", output});
    return run.exitCode == 0 ? run.errors : "failed: " + run.errors;
}

/// \brief One solid of each kind, and a triangle and a quadrilateral, none of them regular.
class KindsCase : public TinyCase
{
public:
    KindsCase()
    {
        const std::array<Vector, 8> points = {
            Vector(0, 0, 0), Vector(2, 0.1, 0), Vector(2.1, 1, 0), Vector(0, 1.2, 0),
            Vector(0, 0, 1), Vector(2, 0, 1.1), Vector(2, 1.1, 1), Vector(0.1, 1, 1.3)};
        for (const Vector& point : points) {
            addVertex(point); // 5 to 12
        }
        addElement(3, {5, 6, 7, 8, 12}, region);
        addElement(3, {5, 6, 8, 9, 10, 12}, region);
        addElement(3, {5, 6, 7, 8, 9, 10, 11, 12}, region);
        addElement(2, {5, 6, 7, 8}, face);
        addElement(2, {9, 10, 12}, face);
    }
};

} // namespace

/// \brief What the VTK formats carry, as VTK itself reads it.
class VtkExportTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QVERIFY(directory_.isValid()); }

    void hasEveryKindInTheOrderOfVtk()
    {
        KindsCase kinds;
        QVERIFY(kinds.save(path("kinds")));
        QCOMPARE(run(path("kinds"), path("kinds.vtu")), QByteArray());
        const auto grid =
            readBy<vtkXMLUnstructuredGridReader, vtkUnstructuredGrid>(path("kinds.vtu"));
        const std::array<int, 4> types = {VTK_TETRA, VTK_PYRAMID, VTK_WEDGE, VTK_HEXAHEDRON};
        QCOMPARE(grid->GetNumberOfCells(), 4);
        vtkNew<vtkCellSizeFilter> sizes;
        sizes->SetInputData(grid);
        sizes->Update();
        for (vtkIdType i = 0; i < 4; ++i) {
            QCOMPARE(grid->GetCellType(i), types.at(static_cast<std::size_t>(i)));
            const double expected =
                valueOf(*vtkDataSet::SafeDownCast(sizes->GetOutput())->GetCellData(), "Volume", i);
            QVERIFY(expected > 0);
            // VTK cuts sides that are not flat along a diagonal, the tool about their middle.
            QVERIFY(std::abs(valueOf(*grid->GetCellData(), "volume", i) / expected - 1) < 0.03);
            QCOMPARE(textOf(*grid->GetCellData(), "quality", i), "0");
        }
    }

    void hasTheAspectsOfVtk()
    {
        KindsCase kinds;
        QVERIFY(kinds.save(path("kinds")));
        QCOMPARE(run(path("kinds"), path("kinds.vtu")), QByteArray());
        QCOMPARE(run(path("kinds"), path("kinds.vtp")), QByteArray());
        const auto grid =
            readBy<vtkXMLUnstructuredGridReader, vtkUnstructuredGrid>(path("kinds.vtu"));
        const auto surface = readBy<vtkXMLPolyDataReader, vtkPolyData>(path("kinds.vtp"));
        QCOMPARE(surface->GetNumberOfCells(), 3);
        vtkNew<vtkMeshQuality> quality;
        quality->SetTetQualityMeasureToAspectRatio();
        quality->SetTriangleQualityMeasureToAspectRatio();
        quality->SetQuadQualityMeasureToAspectRatio();
        quality->SetHexQualityMeasureToScaledJacobian();
        quality->SetInputData(grid);
        quality->Update();
        QCOMPARE(valueOf(*grid->GetCellData(), "aspect", 0),
                 valueOf(*quality->GetOutput()->GetCellData(), "Quality", 0));
        QVERIFY(valueOf(*quality->GetOutput()->GetCellData(), "Quality", 3) > 0.5);
        quality->SetInputData(surface);
        quality->Update();
        for (vtkIdType i = 0; i < 3; ++i) {
            QCOMPARE(valueOf(*surface->GetCellData(), "aspect", i),
                     valueOf(*quality->GetOutput()->GetCellData(), "Quality", i));
        }
    }

    void carriesAttributesOfEveryKind()
    {
        TinyCase tiny;
        tiny.addVertex(Vector(1, 1, 1));
        tiny.addElement(3, {2, 3, 4, 5}, tiny.region);
        setAttributes(tiny);
        QVERIFY(tiny.save(path("tiny")));
        QCOMPARE(run(path("tiny"), path("tiny.vtu")), QByteArray());
        const auto grid =
            readBy<vtkXMLUnstructuredGridReader, vtkUnstructuredGrid>(path("tiny.vtu"));
        vtkCellData& cells = *grid->GetCellData();
        QCOMPARE(namesIn(cells),
                 "mesh_id model_id model_dimension model_name volume aspect quality circle_radius "
                 "circle_radius_given hot_faces hot_faces_count in_bl in_bl_given layers "
                 "layers_count material_id "
                 "material_type mesh_offset split_energy");
        const QMap<const char*, QStringList> expected = {
            {"mesh_id", {"1", "2"}},
            {"model_id", {"2", "2"}},
            {"model_dimension", {"3", "3"}},
            {"model_name", {"box", "box"}},
            {"circle_radius", {"0.5", "nan"}},
            {"circle_radius_given", {"1", "0"}},
            {"hot_faces", {"3 1", "3 1"}},
            {"hot_faces_count", {"2", "2"}},
            {"in_bl", {"1", "0"}},
            {"in_bl_given", {"1", "0"}},
            {"layers", {"1 2 3 4 5 6 7 8 9", "1 2 3 4 5 6 7 8 9"}},
            {"material_id", {"9", "7"}}, // its own counts, then that of the region
            {"material_type", {"fluid", "fluid"}},
            {"mesh_offset", {"1 2 3", "1 2 3"}},
            {"split_energy", {"two", "2"}}};
        for (auto field = expected.begin(); field != expected.end(); ++field) {
            QCOMPARE(textOf(cells, field.key(), 0), field->at(0));
            QCOMPARE(textOf(cells, field.key(), 1), field->at(1));
        }
        QVERIFY(cells.GetArray("in_bl")->GetDataType() == VTK_UNSIGNED_CHAR);
        QVERIFY(cells.GetArray("material_id")->GetDataType() == VTK_INT);
        checkPoints(*grid->GetPointData());
        checkFieldData(*grid->GetFieldData());
    }

    void saysWhichSideOfASplitAnEntityLiesOn()
    {
        GridMesh grid(PreparationCase::plan({"12"}, {{1, "fluid"}, {2, "solid"}}));
        QCOMPARE(PreparationCase::prepareAll(*grid.database()).refusal, QString());
        QVERIFY(SavedCase::save(*grid.database(), path("split")));
        QCOMPARE(run(path("split"), path("split.vtu")), QByteArray());
        QCOMPARE(run(path("split"), path("split.vtp")), QByteArray());
        const auto elements =
            readBy<vtkXMLUnstructuredGridReader, vtkUnstructuredGrid>(path("split.vtu"));
        const auto faces = readBy<vtkXMLPolyDataReader, vtkPolyData>(path("split.vtp"));
        QCOMPARE(valueOf(*elements->GetCellData(), "solid_side", 0), 1.0);
        QCOMPARE(valueOf(*elements->GetCellData(), "solid_side", 1), 2.0);
        QMap<int, int> pointsOfSide;
        for (vtkIdType i = 0; i < elements->GetNumberOfPoints(); ++i) {
            const int side = static_cast<int>(valueOf(*elements->GetPointData(), "solid_side", i));
            ++pointsOfSide[side];
            QCOMPARE(side != 0, elements->GetPoint(i)[0] == 1.0);
        }
        QCOMPARE(pointsOfSide, (QMap<int, int>{{0, 8}, {1, 4}, {2, 4}}));
        for (vtkIdType i = 0; i < faces->GetNumberOfCells(); ++i) {
            const bool isFluids = valueOf(*faces->GetCellData(), "solid_face", i) > 0;
            const bool isSolids = valueOf(*faces->GetCellData(), "fluid_face", i) > 0;
            QCOMPARE(valueOf(*faces->GetCellData(), "solid_side", i),
                     isFluids ? 1.0 : (isSolids ? 2.0 : 0.0));
        }
    }

    void saysOnWhichSideOfATwinAnEntityLies_data()
    {
        QTest::addColumn<QString>("material"); // of the middle one of three regions
        QTest::addColumn<Doubling>("makeTwins");
        QTest::addColumn<Sides>("sidesOfRegions");
        QTest::addColumn<Sides>("pointsOfSides");

        QTest::newRow("stator_side")
            << "rotating_device" << Doubling(prepare) << Sides{{1, 2}, {2, 1}, {3, 2}}
            << Sides{{0, 8}, {1, 8}, {2, 8}};
        QTest::newRow("replica") << "solid" << Doubling(move)
                                 << Sides{{1, 0}, {2, 1}, {3, 0}, {4, 2}}
                                 << Sides{{0, 8}, {1, 8}, {2, 8}};
        QTest::newRow("shell_twin")
            << "solid" << Doubling(tieAcross) << Sides{{1, 1}, {2, 3}, {3, 2}}
            << Sides{{0, 8}, {1, 4}, {2, 4}};
    }

    void saysOnWhichSideOfATwinAnEntityLies()
    {
        QFETCH(QString, material);
        QFETCH(Doubling, makeTwins);
        QFETCH(Sides, sidesOfRegions);
        QFETCH(Sides, pointsOfSides);
        GridMesh grid(PreparationCase::plan({"123"}, {{1, "fluid"}, {2, material}, {3, "fluid"}}));
        makeTwins(grid);
        QVERIFY(SavedCase::save(*grid.database(), path("twins")));
        QCOMPARE(run(path("twins"), path("twins.vtu")), QByteArray());
        const auto elements =
            readBy<vtkXMLUnstructuredGridReader, vtkUnstructuredGrid>(path("twins.vtu"));
        vtkCellData& cells = *elements->GetCellData();
        Sides regions;
        for (vtkIdType i = 0; i < elements->GetNumberOfCells(); ++i) {
            regions[textOf(cells, "model_id", i).toInt()] =
                textOf(cells, QTest::currentDataTag(), i).toInt();
        }
        QCOMPARE(regions, sidesOfRegions);
        Sides points;
        for (vtkIdType i = 0; i < elements->GetNumberOfPoints(); ++i) {
            ++points[textOf(*elements->GetPointData(), QTest::currentDataTag(), i).toInt()];
        }
        QCOMPARE(points, pointsOfSides);
    }

    void hasABlockForEachRegionAndFace()
    {
        TinyCase tiny;
        addUnmeshedRegion(tiny);
        tiny.addElement(2, {1, 2, 4}, nullptr);
        QVERIFY(tiny.save(path("blocks")));
        const ToolRun run = runTool({"export", path("blocks"), "-o", path("blocks.vtm")});
        QCOMPARE(run.errors,
                 "ovrageo: warning: 1 mesh face stands on no model face and in no block\n");
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(filesIn(path("blocks")),
                 (QStringList{"face_3.vtp", "region_2.vtu", "region_5.vtu"}));
        const auto root =
            readBy<vtkXMLMultiBlockDataReader, vtkMultiBlockDataSet>(path("blocks.vtm"));
        const QMap<QString, vtkSmartPointer<vtkDataSet>> blocks = blocksOf(*root);
        QCOMPARE(blocks.keys(), (QStringList{"faces/inlet", "regions/box", "regions/region_5"}));
        QCOMPARE(blocks["regions/box"]->GetNumberOfCells(), 1);
        QCOMPARE(blocks["regions/region_5"]->GetNumberOfCells(), 0);
        QCOMPARE(textOf(*blocks["regions/region_5"]->GetFieldData(), "region_material_id", 0), "4");
        QCOMPARE(textOf(*blocks["regions/box"]->GetFieldData(), "region_material_type", 0),
                 "fluid");
        QCOMPARE(blocks["faces/inlet"]->GetNumberOfCells(), 1);
        QCOMPARE(textOf(*blocks["faces/inlet"]->GetFieldData(), "face_id", 0), "3");
    }

    void takesACaseWithoutRegions()
    {
        GridSpec spec = PreparationCase::plan({"12"}, {{1, "fluid"}, {2, "solid"}});
        spec.planar = true;
        GridMesh grid(spec);
        QVERIFY(SavedCase::save(*grid.database(), path("planar")));
        QCOMPARE(run(path("planar"), path("planar.vtu")), QByteArray());
        QCOMPARE(run(path("planar"), path("planar.vtp")), QByteArray());
        const auto elements =
            readBy<vtkXMLUnstructuredGridReader, vtkUnstructuredGrid>(path("planar.vtu"));
        const auto edges = readBy<vtkXMLPolyDataReader, vtkPolyData>(path("planar.vtp"));
        QCOMPARE(elements->GetNumberOfCells(), 2);
        QCOMPARE(elements->GetCellType(0), static_cast<int>(VTK_QUAD));
        QCOMPARE(valueOf(*elements->GetCellData(), "area", 0), 1.0);
        QCOMPARE(textOf(*elements->GetCellData(), "material_type", 1), "solid");
        QCOMPARE(edges->GetNumberOfLines(), 7);
        QCOMPARE(valueOf(*edges->GetCellData(), "length", 0), 1.0);
        QCOMPARE(elements->GetFieldData()->GetAbstractArray("face_id")->GetNumberOfTuples(), 2);
        QVERIFY(edges->GetFieldData()->HasArray("edge_name"));
    }

    void keepsWhatIsNoElement()
    {
        TinyCase tiny;
        tiny.addVertex(Vector(1, 1, 1));
        tiny.addVertex(Vector(1, 1, 2));
        tiny.addVertex(Vector(1, 2, 2));
        tiny.addElement(3, {1, 2, 3, 4, 5, 6, 7}, tiny.region);
        tiny.addElement(2, {1, 2, 5, 4, 3}, tiny.face);
        QVERIFY(tiny.save(path("odd")));
        QCOMPARE(run(path("odd"), path("odd.vtu")), QByteArray());
        QCOMPARE(run(path("odd"), path("odd.vtp")), QByteArray());
        const auto grid =
            readBy<vtkXMLUnstructuredGridReader, vtkUnstructuredGrid>(path("odd.vtu"));
        QCOMPARE(grid->GetCellType(1), static_cast<int>(VTK_POLY_VERTEX));
        QCOMPARE(grid->GetCell(1)->GetNumberOfPoints(), 7);
        QCOMPARE(textOf(*grid->GetCellData(), "quality", 1), "4");
        QCOMPARE(textOf(*grid->GetCellData(), "volume", 1), "nan");
        const auto surface = readBy<vtkXMLPolyDataReader, vtkPolyData>(path("odd.vtp"));
        QCOMPARE(surface->GetCell(1)->GetNumberOfPoints(), 5);
    }

    void keepsFacesOfTooFewVertices()
    {
        TinyCase tiny;
        tiny.addElement(2, {}, tiny.face);
        tiny.addElement(2, {4}, tiny.face);
        tiny.addElement(2, {1, 4, 2}, tiny.face);
        tiny.addElement(2, {4, 2}, tiny.face);
        QVERIFY(tiny.save(path("few")));
        for (const char* file : {"few.vtp", "few.vtm"}) {
            QCOMPARE(run(path("few"), path(file)),
                     "ovrageo: warning: " + path(file).toUtf8() +
                         ": 1 mesh face without vertices is left out\n");
        }
        for (const char* file : {"few.vtp", "few/face_3.vtp"}) {
            const auto surface = readBy<vtkXMLPolyDataReader, vtkPolyData>(path(file));
            QCOMPARE(surface->GetNumberOfVerts(), 2);
            QCOMPARE(surface->GetNumberOfPolys(), 2);
            QStringList told;
            for (vtkIdType cell = 0; cell < 4; ++cell) {
                told += textOf(*surface->GetCellData(), "mesh_id", cell) + ':' +
                        QString::number(surface->GetCell(cell)->GetNumberOfPoints());
            }
            QCOMPARE(told, (QStringList{"3:1", "5:2", "1:3", "4:3"}));
        }
    }

    void keepsEdgesOfTooFewVertices()
    {
        PlanarCase planar;
        planar.addElement(1, {2}, planar.edges[0]);
        QVERIFY(SavedCase::save(planar.database, path("fewer")));
        QCOMPARE(run(path("fewer"), path("fewer.vtp")), QByteArray());
        const auto edges = readBy<vtkXMLPolyDataReader, vtkPolyData>(path("fewer.vtp"));
        QCOMPARE(edges->GetNumberOfVerts(), 1);
        QCOMPARE(edges->GetCell(0)->GetNumberOfPoints(), 1);
        QCOMPARE(edges->GetNumberOfLines(), 5);
    }

    void hasTheSameBytesInEveryRun()
    {
        QVERIFY(KindsCase().save(path("same")));
        for (const char* name : {"a.vtm", "b.vtm"}) {
            QCOMPARE(run(path("same"), path(name)), QByteArray());
        }
        const QByteArray first = contentOf(path("a/region_2.vtu"));
        QVERIFY(!first.isEmpty());
        QCOMPARE(contentOf(path("b/region_2.vtu")), first);
        QCOMPARE(contentOf(path("b.vtm")), contentOf(path("a.vtm")).replace("\"a/", "\"b/"));
    }

    void leavesNoFolderBehindWhereItFails()
    {
        QVERIFY(TinyCase().save(path("tiny")));
        const ToolRun run =
            runTool({"export", path("tiny"), "-o", path("full.vtm")}, QString(), [] {
                const rlimit limit = {1024, 1024};
                setrlimit(RLIMIT_FSIZE, &limit);
            });
        QCOMPARE(run.exitCode, 5);
        QVERIFY(run.errors.endsWith(": File too large\n"));
        QVERIFY(!QFile::exists(path("full.vtm")));
        QVERIFY(!QFile::exists(path("full")));
    }

    void writesMoreFilesThanItCanHaveOpen()
    {
        TinyCase many;
        addFaces(many);
        QVERIFY(many.save(path("many")));
        const ToolRun run =
            runTool({"export", path("many"), "-o", path("many.vtm")}, QString(), letFewBeOpen);
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(filesIn(path("many")).size(), 102); // of a region and of faces
        const auto root =
            readBy<vtkXMLMultiBlockDataReader, vtkMultiBlockDataSet>(path("many.vtm"));
        QCOMPARE(blocksOf(*root).size(), 102);
    }

    /// The blocks fit, the file that refers to them does not.
    void leavesNoneOfManyFilesWhereItFails()
    {
        TinyCase many;
        addFaces(many);
        QVERIFY(many.save(path("many")));
        QVERIFY(QDir(directory_.path()).mkdir("failed"));
        const ToolRun run =
            runTool({"export", path("many"), "-o", path("failed/many.vtm")}, QString(), [] {
                letFewBeOpen();
                const rlimit size = {7000, 7000};
                setrlimit(RLIMIT_FSIZE, &size);
            });
        QCOMPARE(run.errors, "ovrageo: error: cannot write " + path("failed/many.vtm").toUtf8() +
                                 ": File too large\n");
        QCOMPARE(run.exitCode, 5);
        QVERIFY(
            QDir(path("failed")).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    }

private:
    QString path(const char* name) const { return directory_.filePath(QLatin1String(name)); }

    static void prepare(GridMesh& grid)
    {
        QCOMPARE(PreparationCase::prepareAll(*grid.database()).refusal, QString());
    }

    static void move(GridMesh& grid)
    {
        grid.region(2)->attributes().insert(AttributeType::MotionType, 1);
        prepare(grid);
    }

    static void tieAcross(GridMesh& grid)
    {
        grid.face(1, 2)->attributes().insert(AttributeType::NewShellFace, grid.face(2, 3)->id());
    }

    static void letFewBeOpen()
    {
        const rlimit limit = {60, 60};
        setrlimit(RLIMIT_NOFILE, &limit);
    }

    static void addFaces(TinyCase& tiny)
    {
        for (int i = 0; i < 100; ++i) {
            auto* const face = new ModelFace;
            face->setId(100 + i);
            tiny.model()->add(face);
        }
    }

    static void setAttributes(TinyCase& tiny)
    {
        AttributeMap& element = tiny.tetrahedron->attributes();
        element.insert(AttributeType::InBL, true);
        element.insert(AttributeType::MaterialId, 9);
        element.insert(AttributeType::CircleRadius, 0.5);
        element.insert(AttributeType::SplitEnergy, QStringLiteral("two"));
        AttributeMap& region = tiny.region->attributes();
        region.insert(AttributeType::SplitEnergy, 2);
        region.insert(AttributeType::HotFaces, QVariantList{3, 1});
        region.insert(AttributeType::Layers, QVariantList{1, 2, 3, 4, 5, 6, 7, 8, 9});
        region.insert(AttributeType::MeshOffset, Vector(1, 2, 3));
        AttributeMap& vertex = tiny.vertices[1]->attributes();
        vertex.insert(AttributeType::PeriodicEntityType, 2);
        vertex.insert(AttributeType::PeriodicEntityId, 1);
        vertex.insert(AttributeType::PeriodicWeights, QVariantList{0.25, 0.5, 0.25});
        vertex.insert(AttributeType::ShellVertex, 3);
        Matrix matrix;
        matrix.setIdentity();
        tiny.model()->attributes().insert(AttributeType::PeriodicMatrix, matrix);
        tiny.mesh()->attributes().insert(AttributeType::MeshSize, 0.125);
    }

    static void checkPoints(vtkPointData& points)
    {
        QCOMPARE(namesIn(points),
                 "mesh_id model_id model_dimension periodic_entity_id periodic_entity_id_given "
                 "periodic_entity_type periodic_entity_type_given periodic_weights "
                 "periodic_weights_given periodic_weights_count periodic_weights_sum shell_vertex "
                 "shell_vertex_given");
        QCOMPARE(textOf(points, "periodic_weights", 0), "nan nan nan");
        QCOMPARE(textOf(points, "periodic_weights", 1), "0.25 0.5 0.25");
        QCOMPARE(textOf(points, "periodic_weights_count", 1), "3");
        QCOMPARE(textOf(points, "periodic_weights_sum", 1), "1");
        QCOMPARE(textOf(points, "shell_vertex", 1), "3");
        QCOMPARE(textOf(points, "shell_vertex_given", 0), "0");
    }

    static void checkFieldData(vtkFieldData& data)
    {
        QCOMPARE(textOf(data, "model_periodic_matrix", 0), "1 0 0 0 1 0 0 0 1");
        QCOMPARE(textOf(data, "mesh_mesh_size", 0), "0.125");
        QCOMPARE(textOf(data, "region_id", 0), "2");
        QCOMPARE(textOf(data, "region_name", 0), "box");
        QCOMPARE(textOf(data, "region_hot_faces", 0), "3 1");
        QCOMPARE(textOf(data, "region_material_type", 0), "fluid");
    }

    static void addUnmeshedRegion(TinyCase& tiny)
    {
        auto* const region = new ModelRegion;
        region->setId(5);
        region->attributes().insert(AttributeType::MaterialId, 4);
        tiny.model()->add(region);
    }

    static QMap<QString, vtkSmartPointer<vtkDataSet>> blocksOf(vtkMultiBlockDataSet& root)
    {
        QMap<QString, vtkSmartPointer<vtkDataSet>> blocks;
        for (unsigned i = 0; i < root.GetNumberOfBlocks(); ++i) {
            auto* const group = vtkMultiBlockDataSet::SafeDownCast(root.GetBlock(i));
            for (unsigned j = 0; group && j < group->GetNumberOfBlocks(); ++j) {
                blocks.insert(nameOf(root, i) + QLatin1Char('/') + nameOf(*group, j),
                              vtkDataSet::SafeDownCast(group->GetBlock(j)));
            }
        }
        return blocks;
    }

    static QString nameOf(vtkMultiBlockDataSet& group, unsigned block)
    {
        return QString::fromUtf8(group.GetMetaData(block)->Get(vtkCompositeDataSet::NAME()));
    }

    QTemporaryDir directory_;
};

QTEST_GUILESS_MAIN(VtkExportTest)
#include "tst_VtkExport.moc"
