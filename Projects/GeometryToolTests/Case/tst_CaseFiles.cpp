#include "CaseFiles.h"
#include "MeshEntity.h"
#include "Progress.h"
#include "TinyCase.h"
#include "ToolError.h"
#include "ToolRun.h"

#include <QDataStream>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

using namespace Ovra::Geo;
using namespace Ovra::GeoTool;

using UpwardLists = CaseFiles::UpwardLists;

Q_DECLARE_METATYPE(MeshSerializer::Format)

namespace
{

QByteArray meshBytes(Database& database)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(12);
    const std::unique_ptr<MeshSerializer> serializer(
        MeshSerializer::create(MeshSerializer::Format2013, database.model(), database.mesh()));
    serializer->write(stream);
    return bytes;
}

/// What the tool says of a case; nothing if it reads it.
std::optional<QString> complaint(const QString& name, UpwardLists lists)
{
    CaseDatabase database;
    Progress progress([](const QString&) {});
    try {
        CaseFiles(name).load(database, progress, lists);
    } catch (const ToolError& error) {
        return error.text();
    }
    return std::nullopt;
}

} // namespace

/// To read a case with and without what uses a vertex and what lies at a face.
class TestCaseFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(directory_.isValid()); }

    void leavesNothingElseOut_data()
    {
        QTest::addColumn<MeshSerializer::Format>("format");
        QTest::addColumn<bool>("hasOldHeader");
        QTest::newRow("2013") << MeshSerializer::Format2013 << false;
        QTest::newRow("2013, old header") << MeshSerializer::Format2013 << true;
        QTest::newRow("2014") << MeshSerializer::Format2014 << false;
        QTest::newRow("2014a") << MeshSerializer::Format2014a << false;
    }

    void leavesNothingElseOut()
    {
        QFETCH(MeshSerializer::Format, format);
        QFETCH(bool, hasOldHeader);
        save(format, hasOldHeader);
        CaseDatabase whole;
        CaseDatabase lean;
        Progress progress;
        CaseFiles(path()).load(whole, progress);
        CaseFiles files(path());
        files.load(lean, progress, UpwardLists::LeftOut);
        QCOMPARE(files.meshFacts().format, static_cast<int>(format));
        QCOMPARE(files.meshFacts().trailingBytes, qint64(0));
        QCOMPARE(lean.mesh()->count(3), 1);
        // The version stands in the header, which is not the mesh's here.
        QCOMPARE(meshBytes(lean).mid(16), meshBytes(whole).mid(16));
        QCOMPARE(whole.mesh()->entity(0, 1)->adjacencyCount(3), 1);
        QCOMPARE(lean.mesh()->entity(0, 1)->adjacencyCount(3), 0);
        QCOMPARE(whole.mesh()->entity(2, 1)->adjacencyCount(3), 1);
        QCOMPARE(lean.mesh()->entity(2, 1)->adjacencyCount(3), 0);
    }

    /// Wherever a file is cut or damaged, a command that needs no upward lists says the same.
    void complainsAlike()
    {
        save(MeshSerializer::Format2014a, false);
        const QByteArray content = contentOf(path() + ".geo_mesh");
        int complaints = 0;
        for (qsizetype size = 0; size < content.size(); ++size) {
            QVERIFY(writeContent(path() + ".geo_mesh", content.left(size)));
            complaints += complainsAlikeOf("cut", size);
            QByteArray damaged = content;
            damaged[size] = static_cast<char>(damaged[size] ^ 0x55);
            QVERIFY(writeContent(path() + ".geo_mesh", damaged));
            complaints += complainsAlikeOf("damaged", size);
        }
        QVERIFY(complaints > content.size());
    }

private:
    QString path() const { return directory_.filePath("tiny"); }

    void save(MeshSerializer::Format format, bool hasOldHeader)
    {
        TinyCase tiny;
        tiny.tetrahedron->attributes().insert(AttributeType::InBL, true);
        Progress progress;
        CaseFiles(path()).save(tiny.database, progress, format);
        if (hasOldHeader) {
            const QByteArray content = contentOf(path() + ".geo_mesh");
            QVERIFY(writeContent(path() + ".geo_mesh",
                                 QByteArray("\0\0\0\15\0\0\0\0\0\0\0\5", 12) + content.mid(16)));
        }
    }

    /// 1 if there is something to complain of.
    int complainsAlikeOf(const char* what, qsizetype place)
    {
        const auto whole = complaint(path(), UpwardLists::Made);
        const auto lean = complaint(path(), UpwardLists::LeftOut);
        const QString both = QStringLiteral("%1 at %2: %3 / %4")
                                 .arg(what)
                                 .arg(place)
                                 .arg(whole.value_or("none"), lean.value_or("none"));
        [&] { QVERIFY2(whole == lean, qPrintable(both)); }();
        return whole ? 1 : 0;
    }

    QTemporaryDir directory_;
};

QTEST_APPLESS_MAIN(TestCaseFiles)
#include "tst_CaseFiles.moc"
