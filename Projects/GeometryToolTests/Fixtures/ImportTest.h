#pragma once

#include "ImportChecks.h"
#include "ToolRun.h"

#include <QObject>
#include <QTemporaryDir>
#include <QTest>

/// \brief A test that imports files in a folder of its own to the case "case" beside them.
class ImportTest : public QObject
{
protected:
    QString path(const QString& name) const { return directory_.filePath(name); }
    QString path(const char* name) const { return path(QString::fromLatin1(name)); }
    QString folder() const { return directory_.path(); }

    /// \brief Imports a file of the folder, where no case is left of another import.
    ToolRun importFile(const QString& file, const QStringList& options = {}) const
    {
        QFile::remove(path("case.geo_model"));
        QFile::remove(path("case.geo_mesh"));
        return runTool(QStringList{"import", path(file), "-o", path("case")} + options);
    }

    /// \brief Writes the file first; a run without exit code if that fails.
    ToolRun importContent(const QString& file, const QByteArray& content,
                          const QStringList& options = {}) const
    {
        return writeContent(path(file), content) ? importFile(file, options) : ToolRun();
    }

    /// \brief Warnings as the tool prints them of a file of the folder.
    QByteArray warningOf(const QString& file, const QByteArray& text) const
    {
        return "ovrageo: warning: " + path(file).toUtf8() + ": " + text + '\n';
    }

    /// \brief Checks for one error line that holds some words, and that no case is left.
    void checkRefused(const ToolRun& run, int exitCode, const QByteArray& words) const
    {
        QVERIFY2(run.exitCode == exitCode, run.errors.constData());
        QVERIFY2(isOneErrorLine(run.errors), run.errors.constData());
        QVERIFY2(run.errors.contains(words), run.errors.constData());
        QVERIFY(!QFile::exists(path("case.geo_model")));
    }

    /// \brief Checks for a case of one region, a unit cube, with two triangles on each side.
    void checkFilledCube(const ToolRun& run) const
    {
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        QCOMPARE(run.errors, QByteArray());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.modelCounts(), (std::vector<int>{0, 0, 1, 1}));
        QCOMPARE(imported.mesh()->count(2), 12);
        QCOMPARE(imported.faults(), QString());
        QVERIFY(qAbs(ImportedCase::volume(imported.entities(3)[0]) - 1.0) < 1e-9);
    }

    /// \brief Columns of a table of contents that are refused.
    static void addRefusalColumns()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("words");
    }

    static void addRefusal(const char* name, const QByteArray& content, int exitCode,
                           const char* words)
    {
        QTest::newRow(name) << content << exitCode << QByteArray(words);
    }

    /// \brief Imports the content of a row of that table as \p file.
    void checkRefusal(const QString& file) const
    {
        QFETCH(QByteArray, content);
        QFETCH(int, exitCode);
        QFETCH(QByteArray, words);
        checkRefused(importContent(file, content), exitCode, words);
    }

private:
    QTemporaryDir directory_;
};
