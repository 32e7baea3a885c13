#include "ImportRemarks.h"

#include "AttributeCheck.h"
#include "Counted.h"
#include "EntityName.h"
#include "EntityNames.h"
#include "IdOrder.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Progress.h"

#include <QSet>
#include <QVariant>

#include <algorithm>
#include <array>
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

/// \brief Two bodies that touch.
struct Contact
{
    const ModelEntity* first;
    const ModelEntity* second;
    double size;
};

/// \brief The faces put together by the bodies that they bound, ascending by id.
std::vector<Contact> byBodies(const std::vector<CoincidentFaces::Pair>& pairs)
{
    std::map<std::pair<int, int>, Contact> contacts;
    for (const CoincidentFaces::Pair& pair : pairs) {
        const int bodies = pair.first->dimension() + 1;
        const ModelEntity* a = pair.first->adjacencyAt(bodies, 0);
        const ModelEntity* b = pair.second->adjacencyAt(bodies, 0);
        const auto [low, high] = std::minmax(
            a, b, [](const auto* left, const auto* right) { return left->id() < right->id(); });
        contacts.try_emplace({low->id(), high->id()}, Contact{low, high, 0}).first->second.size +=
            pair.size;
    }
    std::vector<Contact> list;
    for (const auto& entry : contacts) {
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
QString listed(const std::vector<Contact>& contacts)
{
    QStringList texts;
    for (const Contact& contact : contacts) {
        texts.append(QStringLiteral("%1 over %2 of %3")
                         .arg(both(*contact.first, *contact.second),
                              contact.first->dimension() == 3 ? QStringLiteral("an area")
                                                              : QStringLiteral("a length"),
                              QString::number(contact.size, 'g', 6)));
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

std::vector<CoincidentFaces::Pair>
ImportRemarks::loosePairs(const std::vector<CadContacts::Contact>& contacts) const
{
    const int dimension = model_.faceDimension();
    std::vector<CoincidentFaces::Pair> pairs;
    for (const CadContacts::Contact& contact : contacts) {
        const ModelEntity* face = model_.entity(dimension, contact.face);
        const ModelEntity* other = model_.entity(dimension, contact.other);
        const bool known = face != nullptr && other != nullptr;
        if (known && !CoincidentFaces::areTied(*face, *other)) {
            pairs.push_back({face, other, contact.size});
        }
    }
    return pairs;
}

void ImportRemarks::warnOfLooseBodies(const QString& input,
                                      const std::vector<CadContacts::Contact>* contacts) const
{
    const std::vector<Contact> found =
        byBodies(contacts == nullptr ? CoincidentFaces::in(model_) : loosePairs(*contacts));
    if (found.empty()) {
        return;
    }
    const int bodies = found.front().first->dimension();
    const QString advice =
        contacts == nullptr
            ? QStringLiteral("join them in the program that the file comes from, or in a script")
            : QStringLiteral("--join cuts them along one another");
    progress_.warning(
        QStringLiteral("%1: %2 without being joined: %3; nothing passes between them; %4, see "
                       "Import.md")
            .arg(input,
                 counted(static_cast<qint64>(found.size()),
                         QStringLiteral("pair of %1 touches").arg(pluralOf(bodies)),
                         QStringLiteral("pairs of %1 touch").arg(pluralOf(bodies))),
                 listed(found), advice));
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
