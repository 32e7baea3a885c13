#include "InputFileCheck.h"

#include "ToolError.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QtEndian>

namespace Ovra::GeoTool
{

namespace
{

[[noreturn]] void damaged(const QString& path, const QString& what)
{
    throw ToolError(ExitCode::InputDamaged, QStringLiteral("%1: %2").arg(path, what));
}

[[noreturn]] void cutOff(const QFile& file, const QString& missing)
{
    damaged(file.fileName(),
            QStringLiteral("the file is cut off at byte %1: %2").arg(file.size()).arg(missing));
}

QByteArray tail(QFile& file, qint64 size)
{
    file.seek(qMax<qint64>(0, file.size() - size));
    return file.readAll();
}

QByteArray lastLine(QFile& file)
{
    return tail(file, 400).trimmed().split('\n').last().trimmed();
}

void checkSections(QFile& file)
{
    bool found = false;
    QByteArray open;
    constexpr qint64 longestLine = 200;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine(longestLine).trimmed().toLower();
        if (!line.startsWith('$') || line.startsWith("$comment"))
            continue;
        found = true;
        if (open.isEmpty() && !line.startsWith("$end"))
            open = line.mid(1);
        else if (line == "$end" + open)
            open.clear();
    }
    if (!found)
        damaged(file.fileName(), QStringLiteral("not a Gmsh mesh file: no section begins in it"));
    if (!open.isEmpty())
        cutOff(file, QStringLiteral("section $%1 is not closed").arg(QString::fromLatin1(open)));
}

void checkStep(QFile& file)
{
    if (!tail(file, 400).contains("END-ISO-10303-21"))
        cutOff(file, QStringLiteral("there is no END-ISO-10303-21"));
}

void checkIges(QFile& file)
{
    const QByteArray line = tail(file, 400).trimmed().split('\n').last();
    constexpr qsizetype sectionColumn = 72;
    if (line.size() <= sectionColumn || line.at(sectionColumn) != 'T')
        cutOff(file, QStringLiteral("there is no terminate section"));
}

void checkUniversal(QFile& file)
{
    int delimiters = 0;
    while (!file.atEnd())
        delimiters += file.readLine().trimmed() == "-1" ? 1 : 0;
    if (delimiters == 0)
        damaged(file.fileName(), QStringLiteral("not a universal file: no data set begins in it"));
    if (delimiters % 2 != 0)
        cutOff(file, QStringLiteral("the last data set is not closed by -1"));
}

void checkNastran(QFile& file)
{
    while (!file.atEnd()) {
        if (file.readLine().trimmed().toUpper().startsWith("ENDDATA"))
            return;
    }
    cutOff(file, QStringLiteral("there is no ENDDATA"));
}

void checkMedit(QFile& file)
{
    static const QSet<QByteArray> Misread{"EdgesP2",      "TrianglesP2", "QuadrilateralsQ2",
                                          "TetrahedraP2", "HexahedraQ2", "PrismsP2",
                                          "PyramidsP2"};
    bool ended = false;
    while (!file.atEnd()) {
        const QByteArray word = file.readLine().trimmed();
        if (Misread.contains(word))
            damaged(file.fileName(),
                    QStringLiteral("holds second-order elements (%1), which Gmsh misreads in Medit "
                                   "files; save the mesh in first order or as .msh")
                        .arg(QString::fromLatin1(word)));
        ended = ended || word == "End";
    }
    if (!ended)
        cutOff(file, QStringLiteral("there is no End"));
}

void checkStl(QFile& file)
{
    const QByteArray header = file.read(84);
    constexpr qint64 headerSize = 84;
    constexpr qint64 triangleSize = 50;
    if (header.size() == headerSize) {
        const qint64 count = qFromLittleEndian<quint32>(header.constData() + 80);
        if (file.size() == headerSize + triangleSize * count)
            return;
    }
    if (!header.trimmed().startsWith("solid"))
        cutOff(file,
               QStringLiteral("neither text nor as long as its count of triangles calls for"));
    if (!lastLine(file).startsWith("endsolid"))
        cutOff(file, QStringLiteral("there is no endsolid"));
}

void checkLastLineEnded(QFile& file)
{
    if (!tail(file, 1).endsWith('\n'))
        cutOff(file, QStringLiteral("the last line is not ended"));
}

using Check = void (*)(QFile&);

Check checkFor(const QString& suffix)
{
    static const QHash<QString, Check> Checks{
        {QStringLiteral("msh"), checkSections},      {QStringLiteral("step"), checkStep},
        {QStringLiteral("stp"), checkStep},          {QStringLiteral("iges"), checkIges},
        {QStringLiteral("igs"), checkIges},          {QStringLiteral("unv"), checkUniversal},
        {QStringLiteral("bdf"), checkNastran},       {QStringLiteral("nas"), checkNastran},
        {QStringLiteral("stl"), checkStl},           {QStringLiteral("mesh"), checkMedit},
        {QStringLiteral("vtk"), checkLastLineEnded}, {QStringLiteral("inp"), checkLastLineEnded}};
    return Checks.value(suffix, nullptr);
}

} // namespace

QString InputFileCheck::suffix(const QString& path)
{
    return QFileInfo(path).suffix().toLower();
}

void InputFileCheck::check(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists())
        throw ToolError(ExitCode::InputMissing, QStringLiteral("%1: no such file").arg(path));
    QFile file(path);
    if (info.isDir() || !file.open(QIODevice::ReadOnly))
        throw ToolError(ExitCode::InputMissing,
                        QStringLiteral("%1: %2").arg(path, info.isDir()
                                                               ? QStringLiteral("is a directory")
                                                               : file.errorString()));
    if (file.size() == 0)
        damaged(path, QStringLiteral("the file is empty"));
    if (const Check check = checkFor(suffix(path)))
        check(file);
}

} // namespace Ovra::GeoTool
