#include "Places.h"

QString Places::tool()
{
    return QStringLiteral(OVRAGEO_PATH);
}

QString Places::cases()
{
    return QStringLiteral(OVRA_CASES_DIRECTORY);
}

QString Places::documentation()
{
    return QStringLiteral(OVRA_DOCUMENTATION_DIRECTORY);
}

QString Places::toolSources()
{
    return QStringLiteral(OVRA_TOOL_DIRECTORY);
}

QString Places::browserDriver()
{
    return QStringLiteral(OVRA_BROWSER_DIRECTORY);
}
