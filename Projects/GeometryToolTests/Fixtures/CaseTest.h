#pragma once

#include "CaseLines.h"
#include "CgnsChecker.h"
#include "GmshFixture.h"
#include "GmshFormat.h"
#include "Places.h"
#include "PreparedChecks.h"
#include "Programs.h"
#include "ReturningFormats.h"
#include "Su2File.h"
#include "ToolRun.h"
#include "VtkContent.h"
#include "VtkFields.h"

#include <QMap>
#include <QObject>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// \brief One of the cases that go with the tool, on its whole road: import, verify, prepare,
/// verify, solver input; what comes out is held against Gmsh, its geometry kernel, and rules.
///
/// A test of a case is a class with this base; it says in its constructor what is special about the
/// case, and adds checks of its own.
class CaseTest : public QObject
{
    Q_OBJECT

protected:
    explicit CaseTest(const QString& caseName)
        : caseName_(caseName)
    {
    }

    /// What the checks have to know; regions go by their names.
    struct Facts
    {
        QMap<QString, double> volumeTolerance; ///< relative, of curved regions; others 1e-9
        QMap<QString, double> volumes;         ///< where the geometry kernel has none
        double meshSize = 0;                   ///< of the import; 0 leaves it to the case
        QSet<QString> unmeshed;
        QSet<QString> wedges; ///< regions of wedges; all others are of tetrahedra
    };

    Facts facts_;

    /// \brief Of a region's boundary: 2 for each closed piece, less 2 for each hole through it.
    virtual int expectedEulerCharacteristic(Ovra::Geo::ModelEntity*) const { return 2; }

    PreparedCase& imported() { return *imported_; }
    PreparedCase& prepared() { return *prepared_; }
    QString importedName() const { return directory_.filePath(caseName_); }
    QString preparedName() const { return importedName() + QStringLiteral("-prepared"); }

    QStringList importArguments(const QString& name) const
    {
        QStringList arguments{"import", input(".geo"), "-o", name, "--attributes", input(".json")};
        if (facts_.meshSize > 0) {
            arguments += {"--mesh-size", QString::number(facts_.meshSize)};
        }
        return arguments;
    }

    /// \brief One section of the solver input of the prepared case, line by line; what the tool
    /// complains of if it does not write it.
    QList<QByteArray> sectionLines(const QString& section) const
    {
        const QString path = directory_.filePath(section);
        const ToolRun run =
            runTool({"solver-input", preparedName(), "-o", path, "--sections", section});
        return (run.exitCode == 0 ? contentOf(path) : run.errors).split('\n');
    }

private slots:
    void initTestCase()
    {
        QVERIFY(directory_.isValid());
        const ToolRun run = runTool(importArguments(importedName()));
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        imported_ = std::make_unique<PreparedCase>(importedName());
        QVERIFY(imported_->isOpen());
        gmsh_ = std::make_unique<GmshFixture>();
        if (facts_.meshSize > 0) {
            GmshFixture::openAndMesh(input(".geo"), facts_.meshSize);
        } else {
            gmsh::open(input(".geo").toStdString());
            gmsh::model::mesh::generate(3);
        }
    }

    void cleanupTestCase()
    {
        prepared_.reset();
        imported_.reset();
        gmsh_.reset();
    }

    void hasTheCountsOfGmsh()
    {
        int nodes = GmshFixture::nodeCount();
        int elements = GmshFixture::elementCount(3);
        for (ModelEntity* region : imported_->entities(3)) {
            const int expected = GmshFixture::elementCount(3, region->id());
            const bool unmeshed = facts_.unmeshed.contains(region->name());
            QCOMPARE(region->childCount(), unmeshed ? 0 : expected);
            nodes -= unmeshed ? nodesWithin(region->id()) : 0;
            elements -= unmeshed ? expected : 0;
        }
        QCOMPARE(imported_->mesh()->count(0), nodes);
        QCOMPARE(imported_->mesh()->count(3), elements);
        for (int d = 0; d <= 3; ++d) {
            QCOMPARE(imported_->model()->count(d), GmshFixture::entityCount(d));
        }
        for (int d = 1; d <= 2; ++d) {
            for (ModelEntity* entity : imported_->entities(d)) {
                QCOMPARE(entity->childCount(), GmshFixture::elementCount(d, entity->id()));
            }
        }
    }

    void hasTheVolumesOfTheKernel()
    {
        for (ModelEntity* region : imported_->entities(3)) {
            if (facts_.unmeshed.contains(region->name())) {
                continue;
            }
            double expected = facts_.volumes.value(region->name());
            if (expected == 0) {
                gmsh::model::occ::getMass(3, region->id(), expected);
            }
            const double tolerance = facts_.volumeTolerance.value(region->name(), 1e-9);
            const double found = ImportedCase::volume(region);
            QVERIFY2(qAbs(found / expected - 1.0) < tolerance,
                     qPrintable(QStringLiteral("%1: %2, not %3")
                                    .arg(region->name())
                                    .arg(found, 0, 'g', 15)
                                    .arg(expected, 0, 'g', 15)));
        }
    }

    void isSound() { QCOMPARE(imported_->faults(), QString()); }

    void hasBoundariesAsEulerHasThem()
    {
        for (ModelEntity* region : imported_->entities(3)) {
            QCOMPARE(ImportedCase::eulerCharacteristic(region),
                     expectedEulerCharacteristic(region));
        }
    }

    void hasTheKindsOfElements()
    {
        for (ModelEntity* region : imported_->entities(3)) {
            const int corners = facts_.wedges.contains(region->name()) ? 6 : 4;
            for (auto* element : ImportedCase::children(region)) {
                QCOMPARE(element->adjacencyCount(0), corners);
            }
        }
    }

    void verifiesAsImported() { verify(importedName()); }

    void preparesAll()
    {
        const ToolRun run = runTool({"prepare", importedName(), "-o", preparedName(), "--all"});
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        prepared_ = std::make_unique<PreparedCase>(preparedName());
        QVERIFY(prepared_->isOpen());
    }

    void verifiesAsPrepared() { verify(preparedName()); }

    void keepsItsVolumes() { QCOMPARE(prepared_->volumeFaults(*imported_), QString()); }

    void keepsItsSurfaces() { QCOMPARE(prepared_->meshFaults(), QString()); }

    void keepsItsElements()
    {
        for (ModelEntity* region : imported_->entities(3)) {
            const int perElement = facts_.wedges.contains(region->name()) ? 3 : 1;
            QCOMPARE(prepared_->model()->entity(3, region->id())->childCount(),
                     perElement * region->childCount());
        }
    }

    void writesAllNodesAndElements()
    {
        const QString path = directory_.filePath("all");
        const ToolRun run = runTool({"solver-input", preparedName(), "-o", path});
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        QVERIFY(contentOf(path).startsWith(sectionLines("nodes").join('\n')));
        QCOMPARE(sectionLines("nodes").size(), prepared_->mesh()->count(0) + 2);
        qsizetype expected = 2;
        for (ModelEntity* region : prepared_->entities(3)) {
            if (!region->attributes().contains(Ovra::Geo::AttributeType::IsShell)) {
                expected += region->childCount();
            }
        }
        QCOMPARE(sectionLines("elements").size(), expected);
    }

    void comesBackFromAnExport_data()
    {
        ReturningFormats::addColumns();
        for (ReturningFormats::Row row : ReturningFormats::all()) {
            const QString suffix = QLatin1String(row.suffix);
            if (isWritable(suffix) && suffix != QLatin1String("nas")) { // .bdf by another name
                row.parts.exact = suffix != QLatin1String("bdf");       // fields of 16 columns
                ReturningFormats::addRow(row);
            }
        }
    }

    /// By the formats that an import finds entities in, and the attributes file beside.
    void comesBackFromAnExport()
    {
        QFETCH(QString, suffix);
        QFETCH(CaseLines::Parts, parts);
        const QString back = importBack(suffix, {"--attributes", exported(suffix) + ".json"});
        QCOMPARE(importWarnings_, QByteArray());
        ImportedCase returned(back);
        QCOMPARE(CaseLines::meshOf(returned), CaseLines::meshOf(*imported_));
        QCOMPARE(CaseLines::of(returned, parts), CaseLines::of(*imported_, parts));
        verify(back);
    }

    void bringsItsElementsBackByLegacyVtk()
    {
        ImportedCase returned(importBack(QStringLiteral("vtk")));
        QCOMPARE(CaseLines::meshOf(returned), CaseLines::meshOf(*imported_));
    }

    void bringsItsSurfacesBackByStl()
    {
        ImportedCase returned(importBack(QStringLiteral("stl"), {"--dimension", "2"}));
        int triangles = 0;
        for (MeshEntity* face : imported_->meshEntities(2)) {
            triangles += face->adjacencyCount(0) - 2;
        }
        QCOMPARE(returned.mesh()->count(2), triangles);
    }

    /// Which no import reads.
    void hasItsElementsAndBoundariesInSu2()
    {
        QCOMPARE(runTool({"export", importedName(), "-o", exported("su2"), "-q"}).exitCode, 0);
        const Su2File file(contentOf(exported("su2")));
        QCOMPARE(file.elements, imported_->mesh()->count(3));
        double volume = 0;
        for (ModelEntity* region : imported_->entities(3)) {
            volume += ImportedCase::volume(region);
        }
        QVERIFY2(qAbs(file.volume / volume - 1) < 1e-9,
                 qPrintable(QString::number(file.volume / volume - 1)));
        QMap<QString, int> expected;
        for (ModelEntity* face : imported_->entities(2)) {
            const QString unnamed = QStringLiteral("PhysicalSurface%1").arg(face->id());
            expected[face->name().isEmpty() ? unnamed : face->name()] += face->childCount();
        }
        QCOMPARE(file.markers, expected);
    }

    void isReadByVtk_data() { addBoth(); }

    /// All elements and mesh faces, under the names and attributes of what they stand on.
    void isReadByVtk()
    {
        QFETCH(QString, name);
        const ToolRun run = runTool({"export", name, "-o", name + ".vtu"});
        if (run.errors.contains("was built without VTK")) {
            QSKIP("this build has no VTK");
        }
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(runTool({"export", name, "-o", name + ".vtm"}).errors, QByteArray());
        ImportedCase original(name);
        QCOMPARE(VtkFields(original).faultOf(VtkContent::gridOf(name + ".vtu"), 3), QString());
        const auto blocks = VtkContent::blocksOf(name + ".vtm");
        QCOMPARE(blockFaults(original, 3, blocks.value("regions")), QString());
        QCOMPARE(blockFaults(original, 2, blocks.value("faces")), QString());
    }

    void hasItsSurfacesInVtk_data() { addBoth(); }

    void hasItsSurfacesInVtk()
    {
        QFETCH(QString, name);
        const ToolRun run = runTool({"export", name, "-o", name + ".vtp"});
        if (run.errors.contains("was built without VTK")) {
            QSKIP("this build has no VTK");
        }
        QCOMPARE(run.errors, QByteArray());
        ImportedCase original(name);
        QCOMPARE(VtkFields(original).faultOf(VtkContent::gridOf(name + ".vtp"), 2), QString());
    }

    void hasAllPartsInVtk_data() { addBoth(); }

    void hasAllPartsInVtk()
    {
        QFETCH(QString, name);
        const ToolRun run = runTool({"export", name, "-o", name + ".pvtu", "--parts", "3", "-q"});
        if (run.errors.contains("was built without")) {
            QSKIP("this build has no VTK, or no METIS");
        }
        QCOMPARE(run.errors, QByteArray());
        ImportedCase original(name);
        QCOMPARE(VtkFields(original).faultOf(VtkContent::gridOf(name + ".pvtu"), 3), QString());
    }

    void isSoundAsCgns_data() { addBoth(); }

    void isSoundAsCgns()
    {
        if (Programs::isMissing("cgnscheck")) {
            QSKIP("there is no cgnscheck here (Debian's package cgns-convert)");
        }
        QFETCH(QString, name);
        const ToolRun run = runTool({"export", name, "-o", name + ".cgns", "-q"});
        if (run.errors.contains("was built without CGNS")) {
            QSKIP("this build has no CGNS");
        }
        QCOMPARE(run.errors, QByteArray());
        const QByteArray faults = CgnsChecker::faultsOf(name + ".cgns");
        QVERIFY2(faults.isEmpty(), faults.constData());
    }

private:
    using GmshFormat = Ovra::GeoTool::GmshFormat;
    using MeshEntity = Ovra::Geo::MeshEntity;
    using ModelEntity = Ovra::Geo::ModelEntity;

    /// Whether a format holds its kinds of solids.
    bool isWritable(const QString& suffix) const
    {
        const std::vector<int>& missing = GmshFormat::ofSuffix(suffix).missingKinds;
        return facts_.wedges.isEmpty() ||
               std::find(missing.begin(), missing.end(), 6) == missing.end();
    }

    QString exported(const QString& suffix) const { return importedName() + '.' + suffix; }

    /// The name of the case that an import makes of an export.
    QString importBack(const QString& suffix, const QStringList& options = {})
    {
        const QString back = importedName() + QStringLiteral("-back-") + suffix;
        const ToolRun out = runTool({"export", importedName(), "-o", exported(suffix), "-q"});
        const ToolRun in = runTool(QStringList{"import", exported(suffix), "-o", back} + options);
        importWarnings_ = in.errors;
        if (out.exitCode != 0 || in.exitCode != 0) {
            qWarning("%s%s", out.errors.constData(), in.errors.constData());
        }
        return back;
    }

    void addBoth() const
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("imported") << importedName();
        QTest::newRow("prepared") << preparedName();
    }

    /// What the blocks of model regions, or faces, do not hold of them; they stand by ids.
    static QString blockFaults(ImportedCase& original, int dimension,
                               const QList<VtkContent::Piece>& blocks)
    {
        const std::vector<ModelEntity*> entities = original.entities(dimension);
        if (blocks.size() != static_cast<qsizetype>(entities.size())) {
            return QStringLiteral("%1 blocks of %2").arg(blocks.size()).arg(entities.size());
        }
        for (qsizetype i = 0; i < blocks.size(); ++i) {
            const QString fault = blockFault(*entities[static_cast<std::size_t>(i)], blocks.at(i));
            if (!fault.isEmpty()) {
                return blocks.at(i).name + QStringLiteral(": ") + fault;
            }
        }
        return QString();
    }

    static QString blockFault(ModelEntity& entity, const VtkContent::Piece& block)
    {
        const QString kind =
            entity.dimension() == 3 ? QStringLiteral("region_") : QStringLiteral("face_");
        const QString id = QString::number(entity.id());
        const QString name = entity.name().isEmpty() ? kind + id : entity.name();
        if (block.name != name || block.facts.value(kind + "id") != id ||
            block.facts.value(kind + "name") != entity.name()) {
            return "it is no block of " + name;
        }
        if (block.cells != entity.childCount()) {
            return QStringLiteral("%1 of %2 cells").arg(block.cells).arg(entity.childCount());
        }
        for (const Ovra::Geo::AttributeType& type : entity.attributes().types()) {
            const QString tag = type.toString();
            const QVariant value = entity.attributes().value(type, {});
            const QString text = VtkFields::textOf(value);
            const QString row = block.facts.value(kind + tag);
            const bool isList = value.typeId() == QMetaType::QVariantList; // others may be longer
            if (!block.facts.contains(kind + tag) ||
                (block.cells > 0 && !block.cellFields.contains(tag)) ||
                (isList ? !(row + ' ').startsWith(text + ' ') : row != text)) {
                return "it has no " + tag + ' ' + text;
            }
        }
        return QString();
    }

    QString input(const char* suffix) const
    {
        return QStringLiteral("%1/%2/%2").arg(Places::cases(), caseName_) + QLatin1String(suffix);
    }

    static int nodesWithin(int region)
    {
        std::vector<std::size_t> tags;
        std::vector<double> coordinates;
        std::vector<double> parameters;
        gmsh::model::mesh::getNodes(tags, coordinates, parameters, 3, region);
        return static_cast<int>(tags.size());
    }

    static void verify(const QString& name)
    {
        const ToolRun run = runTool({"verify", name});
        QCOMPARE(run.errors, QByteArray());
        QVERIFY2(run.exitCode == 0, run.output.constData());
    }

    QString caseName_;
    QTemporaryDir directory_;
    std::unique_ptr<GmshFixture> gmsh_;
    std::unique_ptr<PreparedCase> imported_;
    QByteArray importWarnings_; ///< of the last importBack()
    std::unique_ptr<PreparedCase> prepared_;
};
