#include "Counted.h"

namespace Ovra::GeoTool
{

namespace
{

QString pluralOf(const QString& noun)
{
    static const QString irregular = QStringLiteral("vertex");
    return noun.endsWith(irregular) ? noun.chopped(irregular.size()) + QStringLiteral("vertices")
                                    : noun + QLatin1Char('s');
}

} // namespace

QString counted(qint64 count, const QString& singular, const QString& plural)
{
    const QString several = plural.isEmpty() ? pluralOf(singular) : plural;
    return QStringLiteral("%1 %2").arg(QString::number(count), count == 1 ? singular : several);
}

} // namespace Ovra::GeoTool
