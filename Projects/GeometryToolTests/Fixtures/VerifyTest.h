#pragma once

#include "ClosedCase.h"
#include "ToolRun.h"

#include <QObject>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// \brief A test that runs `ovrageo verify` on cases that it saves as "case".
class VerifyTest : public QObject
{
protected:
    /// \brief Begins with an empty folder.
    void begin()
    {
        directory_ = std::make_unique<QTemporaryDir>();
        QVERIFY(directory_->isValid());
    }

    QString path(const QString& name) const { return directory_->filePath(name); }

    ToolRun verify(TinyCase& tiny, const QStringList& options = {})
    {
        return tiny.save(path("case")) ? runTool(QStringList{"verify", path("case")} + options)
                                       : ToolRun();
    }

    static QStringList linesOf(const ToolRun& run)
    {
        return QString::fromUtf8(run.output).trimmed().split('\n');
    }

    static QStringList errorsOf(const ToolRun& run) { return linesOf(run).filter("error "); }

    /// \brief A tetrahedron below the bottom of the box, on a new vertex, in a region of its own.
    static Ovra::Geo::ModelRegion* addBelow(ClosedCase& c)
    {
        Ovra::Geo::ModelRegion* const below = c.addRegion();
        c.addVertex(Ovra::Geo::Vector(0, 0, -1));
        c.addElement(3, {1, 3, 2, 5}, below);
        return below;
    }

private:
    std::unique_ptr<QTemporaryDir> directory_;
};
