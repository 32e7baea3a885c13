#include "Completion.h"

#include "AttributeType.h"
#include "ExportFormat.h"
#include "InputFileCheck.h"
#include "LengthUnit.h"
#include "SolverInput.h"

#include <QHash>

namespace Ovra::GeoTool
{

namespace
{

using Maker = Completion (*)(const QString& command);

Completion nothing(const QString& /*command*/)
{
    return {};
}

/// `info` takes inputs too, if they state their unit.
Completion cases(const QString& command)
{
    Completion found{Completion::Kind::Cases, {}};
    if (command == QLatin1String("info")) {
        for (const QString& suffix : InputFileCheck::knownSuffixes()) {
            if (LengthUnit::isStatedBy(QStringLiteral("x.") + suffix)) {
                found.words.append(suffix);
            }
        }
    }
    return found;
}

Completion inputs(const QString& /*command*/)
{
    return {Completion::Kind::Files, InputFileCheck::knownSuffixes()};
}

QStringList exportSuffixes()
{
    QStringList suffixes;
    for (const ExportFormat& format : ExportFormat::all()) {
        suffixes.append(format.suffix);
    }
    return suffixes;
}

Completion suffixes(const QString& /*command*/)
{
    return {Completion::Kind::Words, exportSuffixes()};
}

Completion files(const QString& command)
{
    return {Completion::Kind::Files,
            command == QLatin1String("export") ? exportSuffixes() : QStringList()};
}

Completion directories(const QString& /*command*/)
{
    return {Completion::Kind::Directories, {}};
}

Completion sections(const QString& /*command*/)
{
    return {Completion::Kind::Words, SolverInput::sectionNames()};
}

Completion colours(const QString& /*command*/)
{
    return {Completion::Kind::Words, QStringList{QStringLiteral("region"), QStringLiteral("face"),
                                                 QStringLiteral("material")} +
                                         Geo::AttributeType::tags()};
}

const QHash<QString, Maker>& makers()
{
    static const QHash<QString, Maker> table{
        {QStringLiteral("NAME"), cases},      {QStringLiteral("NAME0"), cases},
        {QStringLiteral("NAME2"), cases},     {QStringLiteral("A"), cases},
        {QStringLiteral("B"), cases},         {QStringLiteral("INPUT"), inputs},
        {QStringLiteral("FILE"), files},      {QStringLiteral("DIR"), directories},
        {QStringLiteral("SUFFIX"), suffixes}, {QStringLiteral("LIST"), sections},
        {QStringLiteral("TAG"), colours},     {QStringLiteral("NAMES"), nothing},
        {QStringLiteral("TEXT"), nothing},    {QStringLiteral("FACTOR"), nothing},
        {QStringLiteral("x|y|z=V"), nothing}, {QStringLiteral("X0,Y0,Z0,X1,Y1,Z1"), nothing},
        {QStringLiteral("WxH"), nothing},     {QStringLiteral("F"), nothing},
        {QStringLiteral("H"), nothing},       {QStringLiteral("N"), nothing},
        {QStringLiteral("S"), nothing},       {QStringLiteral("T"), nothing},
    };
    return table;
}

/// "2013|2014" is a choice of what stands there itself.
bool isChoice(const QString& placeholder)
{
    return placeholder.contains(QLatin1Char('|')) && !makers().contains(placeholder);
}

/// "FILE.png".
bool hasSuffix(const QString& placeholder)
{
    return placeholder.startsWith(QLatin1String("FILE."));
}

} // namespace

Completion Completion::of(const QString& command, const QString& placeholder)
{
    if (isChoice(placeholder)) {
        return {Kind::Words, placeholder.split(QLatin1Char('|'))};
    }
    if (hasSuffix(placeholder)) {
        return {Kind::Files, {placeholder.section(QLatin1Char('.'), 1)}};
    }
    return makers().value(placeholder, nothing)(command);
}

bool Completion::isKnown(const QString& placeholder)
{
    return isChoice(placeholder) || hasSuffix(placeholder) || makers().contains(placeholder);
}

} // namespace Ovra::GeoTool
