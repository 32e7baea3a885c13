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
    file.open(QIODevice::ReadOnly); // part of this program
    return file.readAll();
}

} // namespace Ovra::GeoTool
