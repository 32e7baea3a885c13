#include "GmshFixture.h"
#include "ImportTest.h"

#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BinTools.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>
#include <sstream>

/// BREP files as the kernel, its test harness and other programs write them: whatever the kernel
/// reads is whole, and nothing else.
class TestImportBrep : public ImportTest
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const GmshFixture gmsh;
        GmshFixture::makeTwoBoxes(1.0);
        GmshFixture::write(path("plain.brep"));
        QVERIFY(BRepTools::Read(shape_, path("plain.brep").toStdString().c_str(), BRep_Builder()));
        QCOMPARE(importFile("plain.brep", {"--mesh-size", "1"}).errors, QByteArray());
        plain_ = contentOf(path("case.geo_mesh"));
        QVERIFY(!plain_.isEmpty());
    }

    void readsWhateverTheKernelReads_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("content");
        const QByteArray text = this->text(1);
        const auto row = [](const char* name, const QByteArray& content) {
            QTest::newRow(name) << QStringLiteral("variant.brep") << content;
        };
        row("text 1", text);
        row("text 2", this->text(2));
        row("text 3", this->text(3));
        for (int version = 1; version <= 4; ++version) {
            row(qPrintable(QStringLiteral("binary %1").arg(version)), binary(version));
        }
        row("test harness", "DBRep_DrawableShape\n\n" + text.trimmed() + "\n0\n\n");
        row("blank lines behind", text + "\n\n  \n");
        row("text behind", text + "\nwritten by an exporter, 12 faces\n");
        row("binary, text behind", binary(3) + "and more\n");
        row("last line not ended", text.trimmed());
        row("line breaks of another system", QByteArray(text).replace('\n', "\r\n"));
        row("triangulated", triangulated());
        QTest::newRow("suffix of another program") << QStringLiteral("variant.brp") << text;
    }

    void readsWhateverTheKernelReads()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, content);
        const ToolRun run = import(file, content);
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(contentOf(path("case.geo_mesh")), plain_);
        ImportedCase imported(path("case"));
        QCOMPARE(imported.modelCounts(), (std::vector<int>{12, 20, 11, 2}));
        QCOMPARE(imported.faults(), QString());
    }

    // The kernel itself reads on for ever in some of these.
    void refusesWhatIsCutOff_data()
    {
        QTest::addColumn<QByteArray>("cut");
        const QByteArray harness = "DBRep_DrawableShape\n\n" + text(1);
        const std::vector<std::pair<const char*, QByteArray>> files{
            {"text 1", text(1)},       {"text 3", text(3)},
            {"test harness", harness}, {"triangulated", triangulated()},
            {"binary 1", binary(1)},   {"binary 4", binary(4)}};
        for (const auto& [name, whole] : files) {
            const qsizetype size = whole.trimmed().size();
            for (const int percent : {1, 12, 45, 80, 97}) {
                QTest::addRow("%s, %d %%", name, percent) << whole.left(size * percent / 100);
            }
            for (const int bytes : {2, 4}) {
                QTest::addRow("%s, %d bytes", name, bytes) << whole.left(size - bytes);
            }
        }
    }

    void refusesWhatIsCutOff()
    {
        QFETCH(QByteArray, cut);
        const ToolRun run = import("cut.brep", cut);
        checkRefused(run, 4, "cut off");
    }

    void namesThePlaceOfADamage()
    {
        const ToolRun run = import("damaged.brep", text(1).replace("\nCurves ", "\nCurves x"));
        const qsizetype line = text(1).left(text(1).indexOf("\nCurves ") + 1).count('\n') + 1;
        checkRefused(run, 4, "the geometry kernel gives up at line " + QByteArray::number(line));
    }

    void refusesAVersionThatTheKernelDoesNotKnow()
    {
        const ToolRun run = import("new.brep", text(1).replace("Topology V1,", "Topology V9,"));
        checkRefused(run, 6, "does not know the version \"CASCADE Topology V9,");
    }

    void refusesFacesWithoutASurface()
    {
        TopoDS_Face face;
        BRep_Builder().MakeFace(face, triangles());
        std::ostringstream stream;
        BRepTools::Write(face, stream);
        const ToolRun run = import("bare.brep", QByteArray::fromStdString(stream.str()));
        checkRefused(run, 6, "triangles alone");
    }

private:
    ToolRun import(const QString& file, const QByteArray& content) const
    {
        return importContent(file, content, {"--mesh-size", "1"});
    }

    QByteArray text(int version) const
    {
        std::ostringstream stream;
        BRepTools::Write(shape_, stream, true, false, static_cast<TopTools_FormatVersion>(version));
        return QByteArray::fromStdString(stream.str());
    }

    QByteArray binary(int version) const
    {
        std::ostringstream stream;
        BinTools::Write(shape_, stream, true, false, static_cast<BinTools_FormatVersion>(version));
        return QByteArray::fromStdString(stream.str());
    }

    static Handle(Poly_Triangulation) triangles()
    {
        Handle(Poly_Triangulation) triangulation = new Poly_Triangulation(4, 2, false);
        triangulation->SetNode(1, gp_Pnt(0, 0, 0));
        triangulation->SetNode(2, gp_Pnt(1, 0, 0));
        triangulation->SetNode(3, gp_Pnt(1, 1, 0));
        triangulation->SetNode(4, gp_Pnt(0, 1, 0));
        triangulation->SetTriangle(1, Poly_Triangle(1, 2, 3));
        triangulation->SetTriangle(2, Poly_Triangle(1, 3, 4));
        return triangulation;
    }

    /// The triangles need not lie on the face for a reader.
    QByteArray triangulated() const
    {
        std::istringstream in(text(1).toStdString());
        TopoDS_Shape copy;
        BRepTools::Read(copy, in, BRep_Builder());
        const TopExp_Explorer faces(copy, TopAbs_FACE);
        BRep_Builder().UpdateFace(TopoDS::Face(faces.Current()), triangles());
        std::ostringstream out;
        BRepTools::Write(copy, out);
        return QByteArray::fromStdString(out.str());
    }

    TopoDS_Shape shape_;
    QByteArray plain_;
};

QTEST_APPLESS_MAIN(TestImportBrep)
#include "tst_ImportBrep.moc"
