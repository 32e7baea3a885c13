#include "ImportRemarks.h"

#include "AttributeCheck.h"
#include "AttributeRule.h"
#include "Counted.h"
#include "EntityName.h"
#include "EntityNames.h"
#include "IdOrder.h"
#include "LooseBodies.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Progress.h"

#include <QLocale>
#include <QSet>
#include <QVariant>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <utility>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

QString idAndName(const ModelEntity& entity)
{
    const QString id = QString::number(entity.id());
    return entity.name().isEmpty() ? id : QStringLiteral("%1 (%2)").arg(id, entity.name());
}

QString both(const ModelEntity& a, const ModelEntity& b)
{
    return QStringLiteral("%1 and %2").arg(idAndName(a), idAndName(b));
}

/// \brief Two bodies and what they have in common.
struct BodyPair
{
    const ModelEntity* first;
    const ModelEntity* second;
    double size;
};

/// \brief Whether an attribute of a face names the other.
bool names(const ModelEntity& face, const ModelEntity& other)
{
    const auto& rules = AttributeRule::naming();
    return std::any_of(rules.begin(), rules.end(), [&](const AttributeRule& rule) {
        return rule.names == AttributeRule::Names::ModelFace &&
               face.attributes().contains(rule.type) &&
               face.attributes().value(rule.type, QVariant()).toInt() == other.id();
    });
}

/// \brief The contacts of faces that are not tied, put together by the bodies that they bound,
/// ascending by id.
std::vector<BodyPair> byBodies(const Model& model, const std::vector<BodyContact>& contacts)
{
    const int faces = model.faceDimension();
    std::map<std::pair<int, int>, BodyPair> pairs;
    for (const BodyContact& contact : contacts) {
        const ModelEntity* face = model.entity(faces, contact.face);
        const ModelEntity* other = model.entity(faces, contact.other);
        if (face == nullptr || other == nullptr || names(*face, *other) || names(*other, *face)) {
            continue;
        }
        const ModelEntity* a = face->adjacencyAt(faces + 1, 0);
        const ModelEntity* b = other->adjacencyAt(faces + 1, 0);
        const auto [low, high] = std::minmax(
            a, b, [](const auto* left, const auto* right) { return left->id() < right->id(); });
        pairs.try_emplace({low->id(), high->id()}, BodyPair{low, high, 0}).first->second.size +=
            contact.size;
    }
    std::vector<BodyPair> list;
    list.reserve(pairs.size());
    for (const auto& entry : pairs) {
        list.push_back(entry.second);
    }
    return list;
}

/// \brief The first ten, and how many more.
QString shortened(const QStringList& texts)
{
    constexpr qsizetype shown = 10;
    const QString first = texts.mid(0, shown).join(QStringLiteral(", "));
    return texts.size() > shown
               ? QStringLiteral("%1, and %2 more").arg(first, QString::number(texts.size() - shown))
               : first;
}

/// \brief "1 (board) and 2 (chip) over an area of 9, ..."
/// \param words "over an area of"
QString listed(const std::vector<BodyPair>& pairs, const QString& words, double factor)
{
    QStringList texts;
    for (const BodyPair& pair : pairs) {
        texts.append(QStringLiteral("%1 %2 %3")
                         .arg(both(*pair.first, *pair.second), words,
                              QString::number(factor * pair.size, 'g', 6)));
    }
    return shortened(texts);
}

/// \brief "faces", "regions".
QString pluralOf(int dimension)
{
    static const std::array<const char*, 4> names = {"vertices", "edges", "faces", "regions"};
    return QLatin1String(names[static_cast<std::size_t>(dimension)]);
}

/// \brief "1 (board), 2, 7"
QString listed(const std::vector<const ModelEntity*>& entities)
{
    QStringList texts;
    for (const ModelEntity* entity : entities) {
        texts.append(idAndName(*entity));
    }
    return shortened(texts);
}

QString materialOf(const ModelEntity& entity)
{
    return entity.attributes().value(AttributeType::MaterialType, QVariant()).toString();
}

/// \brief "--join" with the tolerance that it takes.
QString joinOption(const LooseBodies& loose)
{
    const QString option = QStringLiteral("--join");
    if (loose.wideTolerance > loose.tolerance) {
        return option + QStringLiteral(" --join-tolerance %1").arg(loose.wideTolerance);
    }
    return loose.givenTolerance
               ? option + QStringLiteral(" --join-tolerance ") +
                     QString::number(*loose.givenTolerance, 'g', QLocale::FloatingPointShortest)
               : option;
}

/// \brief What helps.
/// \param effect of joining, "cuts them along one another"
/// \param otherwise what is to be done where joining fails, "join them"
QString adviceOn(const LooseBodies& loose, const QString& effect, const QString& otherwise)
{
    const QString joining = joinOption(loose) + ' ' + effect;
    switch (loose.remedy) {
    case LooseBodies::Remedy::Join:
        return loose.wideTolerance > 0
                   ? joining
                   : QStringLiteral("--join fails over them, %1 in the program that the file "
                                    "comes from")
                         .arg(otherwise);
    case LooseBodies::Remedy::JoinUnmeshed:
        return joining + QStringLiteral(" if the script leaves out its Mesh command");
    case LooseBodies::Remedy::OtherKernel:
        return joining + QStringLiteral(" if the script begins with SetFactory(\"OpenCASCADE\")");
    case LooseBodies::Remedy::OtherKernelUnmeshed:
        return joining + QStringLiteral(" if the script begins with SetFactory(\"OpenCASCADE\") "
                                        "and leaves out its Mesh command");
    case LooseBodies::Remedy::OtherGeometry:
        break;
    }
    return QStringLiteral("a mesh cannot be cut: mesh them together in the program that the file "
                          "comes from, or import their geometry (STEP, IGES, BREP) with --join");
}

QString contactAdvice(const LooseBodies& loose)
{
    return adviceOn(loose, QStringLiteral("cuts them along one another"),
                    QStringLiteral("join them"));
}

QString overlapAdvice(const LooseBodies& loose)
{
    return adviceOn(loose, QStringLiteral("gives it to the smaller one"),
                    QStringLiteral("part them"));
}

/// \brief Whether a body lacks the material that it would take part with.
bool needsMaterial(const ModelEntity& body)
{
    const AttributeMap& attributes = body.attributes();
    return !attributes.contains(AttributeType::MaterialType) &&
           !attributes.value(AttributeType::IsSuppressed, QVariant()).toBool();
}

} // namespace

ImportRemarks::ImportRemarks(const Model& model, Progress& progress)
    : model_(model)
    , progress_(progress)
{
}

void ImportRemarks::warnOfLooseBodies(const QString& input, const LooseBodies& loose,
                                      double scale) const
{
    warnOfContacts(input, loose, scale);
    warnOfOverlaps(input, loose, scale);
}

void ImportRemarks::warnOfContacts(const QString& input, const LooseBodies& loose,
                                   double scale) const
{
    const int faces = model_.faceDimension();
    const std::vector<BodyPair> found = byBodies(model_, loose.contacts);
    if (found.empty()) {
        return;
    }
    const QString words =
        faces == 2 ? QStringLiteral("over an area of") : QStringLiteral("over a length of");
    const QString bodies = pluralOf(faces + 1);
    progress_.warning(QStringLiteral("%1: %2 without being joined: %3; nothing passes between "
                                     "them; %4, see Import.md")
                          .arg(input,
                               counted(static_cast<qint64>(found.size()),
                                       QStringLiteral("pair of %1 touches").arg(bodies),
                                       QStringLiteral("pairs of %1 touch").arg(bodies)),
                               listed(found, words, std::pow(scale, faces)), contactAdvice(loose)));
}

void ImportRemarks::warnOfOverlaps(const QString& input, const LooseBodies& loose,
                                   double scale) const
{
    const int dimension = model_.faceDimension() + 1;
    std::vector<BodyPair> found;
    for (const LooseBodies::Overlap& overlap : loose.overlaps) {
        found.push_back({model_.entity(dimension, overlap.body),
                         model_.entity(dimension, overlap.other), overlap.size});
    }
    if (found.empty()) {
        return;
    }
    const QString words =
        dimension == 3 ? QStringLiteral("by a volume of") : QStringLiteral("by an area of");
    const QString bodies = pluralOf(dimension);
    progress_.warning(QStringLiteral("%1: %2: %3; what they have in common is meshed for each of "
                                     "them; %4, see Import.md")
                          .arg(input,
                               counted(static_cast<qint64>(found.size()),
                                       QStringLiteral("pair of %1 overlaps").arg(bodies),
                                       QStringLiteral("pairs of %1 overlap").arg(bodies)),
                               listed(found, words, std::pow(scale, dimension)),
                               overlapAdvice(loose)));
}

void ImportRemarks::warnOfMaterials(const QString& attributes) const
{
    warnOfUnknownMaterials(attributes);
    warnOfMissingMaterials(attributes);
}

void ImportRemarks::warnOfUnknownMaterials(const QString& attributes) const
{
    QSet<QString> told;
    for (int d = model_.faceDimension() + 1; d >= 0; --d) {
        for (const ModelEntity* entity : inIdOrder(model_.iterator(d))) {
            if (!entity->attributes().contains(AttributeType::MaterialType)) {
                continue;
            }
            const QString fault = AttributeCheck::materialFault(materialOf(*entity));
            if (!fault.isEmpty() && !told.contains(materialOf(*entity))) {
                progress_.warning(
                    QStringLiteral("%1: %2 %3").arg(attributes, EntityName(*entity).text(), fault));
            }
            told.insert(materialOf(*entity));
        }
    }
}

void ImportRemarks::warnOfMissingMaterials(const QString& attributes) const
{
    const int bodies = model_.faceDimension() + 1;
    std::vector<const ModelEntity*> without;
    bool isAnyGiven = false;
    for (const ModelEntity* body : inIdOrder(model_.iterator(bodies))) {
        isAnyGiven = isAnyGiven || body->attributes().contains(AttributeType::MaterialType);
        if (needsMaterial(*body)) {
            without.push_back(body);
        }
    }
    if (!isAnyGiven) {
        progress_.warning(QStringLiteral("%1: gives a material_type to none of the %2, so that "
                                         "nothing can be prepared or solved")
                              .arg(attributes, pluralOf(bodies)));
    } else if (!without.empty()) {
        const auto count = static_cast<qint64>(without.size());
        progress_.warning(QStringLiteral("%1: gives no material_type to %2: %3; without one, a %4 "
                                         "counts as neither fluid nor solid")
                              .arg(attributes, counted(count, kindName(bodies)), listed(without),
                                   kindName(bodies)));
    }
}

} // namespace Ovra::GeoTool
