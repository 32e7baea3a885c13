#include "FaceChoice.h"

#include "CaseView.h"
#include "EntityTitle.h"
#include "ModelEntity.h"
#include "ToolError.h"

#include <QRegularExpression>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// Of a name in which * stands for any characters, slashes too, and ? for any one.
QRegularExpression patternOf(const QString& name)
{
    QString pattern = QRegularExpression::escape(name);
    pattern.replace(QLatin1String("\\*"), QLatin1String(".*"));
    pattern.replace(QLatin1String("\\?"), QLatin1String("."));
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern),
                              QRegularExpression::DotMatchesEverythingOption);
}

} // namespace

FaceChoice::FaceChoice(const CaseView& view, const QStringList& names)
    : takesAll_(names.isEmpty())
{
    for (const QString& name : names) {
        choose(view, name);
    }
}

void FaceChoice::choose(const CaseView& view, const QString& name)
{
    const QRegularExpression pattern = patternOf(name);
    bool isKnown = false;
    for (const int dimension : {view.faceDimension(), view.elementDimension()}) {
        for (const ModelEntity* entity : view.modelEntities(dimension)) {
            if (pattern.match(entityTitle(*entity)).hasMatch() ||
                pattern.match(entity->tag()).hasMatch()) {
                isKnown = true;
                add(*entity, view.faceDimension());
            }
        }
    }
    if (!isKnown) {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("--faces: no face or region is called \"%1\"").arg(name));
    }
}

void FaceChoice::add(const ModelEntity& entity, int faceDimension)
{
    chosen_.insert(&entity);
    if (entity.dimension() > faceDimension) {
        for (int i = 0; i < entity.adjacencyCount(faceDimension); ++i) {
            chosen_.insert(entity.adjacencyAt(faceDimension, i));
        }
    }
}

} // namespace Ovra::GeoTool
