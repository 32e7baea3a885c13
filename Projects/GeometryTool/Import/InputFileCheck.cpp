#include "InputFileCheck.h"

#include "EndMarkCheck.h"
#include "GmshMeshCheck.h"
#include "InputDamage.h"
#include "ScriptCheck.h"
#include "StlCheck.h"
#include "ToolError.h"
#include "VtkCheck.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QStringList>

namespace Ovra::GeoTool
{

namespace
{

using Check = void (*)(QFile&);

const QHash<QString, Check>& checks()
{
    static const QHash<QString, Check> table{{QStringLiteral("geo"), ScriptCheck::check},
                                             {QStringLiteral("geo_unrolled"), ScriptCheck::check},
                                             {QStringLiteral("msh"), GmshMeshCheck::check},
                                             {QStringLiteral("msh2"), GmshMeshCheck::check},
                                             {QStringLiteral("step"), EndMarkCheck::step},
                                             {QStringLiteral("stp"), EndMarkCheck::step},
                                             {QStringLiteral("iges"), EndMarkCheck::iges},
                                             {QStringLiteral("igs"), EndMarkCheck::iges},
                                             {QStringLiteral("unv"), EndMarkCheck::universal},
                                             {QStringLiteral("stl"), StlCheck::check},
                                             {QStringLiteral("vtk"), VtkCheck::check},
                                             {QStringLiteral("inp"), EndMarkCheck::abaqus}};
    return table;
}

void requireKnownSuffix(const QString& path)
{
    const QString suffix = InputFileCheck::suffix(path);
    if (suffix == QLatin1String("geo_model") || suffix == QLatin1String("geo_mesh")) {
        throw ToolError(
            ExitCode::Usage,
            QStringLiteral("%1: this is a case already, not an input to import").arg(path));
    }
    if (suffix == QLatin1String("meshb")) {
        throw ToolError(
            ExitCode::Unsuitable,
            QStringLiteral("%1: binary Medit files cannot be imported; save the mesh as "
                           "text, with the suffix .mesh")
                .arg(path));
    }
    const QStringList known = InputFileCheck::knownSuffixes();
    if (!known.contains(suffix)) {
        InputDamage::damaged(
            path, QStringLiteral("its suffix tells no known format; can be imported: .") +
                      known.join(QStringLiteral(", .")));
    }
}

} // namespace

QString InputFileCheck::suffix(const QString& path)
{
    return QFileInfo(path).suffix().toLower();
}

QStringList InputFileCheck::knownSuffixes()
{
    QStringList suffixes =
        checks().keys() + QStringList{"bdf", "brep", "brp", "cgns", "med",  "mesh", "mmed",
                                      "nas", "off",  "p3d", "ply",  "rmed", "vrml", "wrl"};
    suffixes.sort();
    return suffixes;
}

bool InputFileCheck::isScript(const QString& path)
{
    return checks().value(suffix(path), nullptr) == ScriptCheck::check;
}

void InputFileCheck::check(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        throw ToolError(ExitCode::InputMissing, QStringLiteral("%1: no such file").arg(path));
    }
    QFile file(path);
    if (info.isDir() || !file.open(QIODevice::ReadOnly)) {
        throw ToolError(ExitCode::InputMissing,
                        QStringLiteral("%1: %2").arg(path, info.isDir()
                                                               ? QStringLiteral("is a directory")
                                                               : file.errorString()));
    }
    requireKnownSuffix(path);
    if (file.size() == 0) {
        InputDamage::damaged(path, QStringLiteral("the file is empty"));
    }
    if (const Check check = checks().value(suffix(path), nullptr)) {
        check(file);
    }
}

} // namespace Ovra::GeoTool
