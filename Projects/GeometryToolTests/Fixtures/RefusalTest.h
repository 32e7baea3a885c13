#pragma once

#include "ToolRun.h"

#include <QObject>
#include <QTemporaryDir>
#include <QTest>

/// \brief A test of imports to "case", where there is something already that must stay as it was if
/// they fail.
class RefusalTest : public QObject
{
protected:
    QString path(const QString& name) const { return directory_.filePath(name); }
    QString path(const char* name) const { return path(QString::fromLatin1(name)); }
    QString folder() const { return directory_.path(); }

    void putWhatStays() const
    {
        QVERIFY(writeContent(path("case.geo_model"), "model as it was"));
        QVERIFY(writeContent(path("case.geo_mesh"), "mesh as it was"));
    }

    ToolRun import(const QString& file, const QStringList& options = {}) const
    {
        return runTool(QStringList{"import", file, "-o", path("case")} + options);
    }

    /// \brief Checks for an error line in the end that holds some words, and that what stood there
    /// stays.
    void checkRefused(const ToolRun& run, int exitCode,
                      const QByteArray& words = QByteArray()) const
    {
        QVERIFY2(run.exitCode == exitCode, run.errors.constData());
        const QByteArray lastLine = run.errors.trimmed().split('\n').last() + '\n';
        QVERIFY2(isOneErrorLine(lastLine), run.errors.constData());
        QVERIFY2(lastLine.contains(words), run.errors.constData());
        QCOMPARE(run.output, QByteArray());
        QCOMPARE(contentOf(path("case.geo_model")), QByteArray("model as it was"));
        QCOMPARE(contentOf(path("case.geo_mesh")), QByteArray("mesh as it was"));
    }

private:
    QTemporaryDir directory_;
};
