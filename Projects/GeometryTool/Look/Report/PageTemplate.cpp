#include "PageTemplate.h"

#include <QFile>

// Outside of all namespaces, where the resource's own functions stand.
static void initialiseResource()
{
    Q_INIT_RESOURCE(report);
}

namespace Ovra::GeoTool
{

QByteArray pageTemplate()
{
    initialiseResource();
    QFile file(QStringLiteral(":/report/page.html"));
    const bool isOpen = file.open(QIODevice::ReadOnly); // as part of this program
    Q_ASSERT(isOpen);
    return isOpen ? file.readAll() : QByteArray();
}

} // namespace Ovra::GeoTool
