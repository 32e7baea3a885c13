#include "ImportRemarks.h"

#include "AttributeCheck.h"
#include "Counted.h"
#include "EntityName.h"
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

/// \brief "1 (board) and 2 (chip) over an area of 9, ..."; the first ten, and how many more.
QString listed(const std::vector<Contact>& contacts)
{
    constexpr std::size_t shown = 10;
    QStringList texts;
    for (std::size_t i = 0; i < std::min(shown, contacts.size()); ++i) {
        const Contact& contact = contacts[i];
        texts.append(QStringLiteral("%1 over %2 of %3")
                         .arg(both(*contact.first, *contact.second),
                              contact.first->dimension() == 3 ? QStringLiteral("an area")
                                                              : QStringLiteral("a length"),
                              QString::number(contact.size, 'g', 6)));
    }
    if (contacts.size() > shown) {
        texts.append(QStringLiteral("and %1 more").arg(contacts.size() - shown));
    }
    return texts.join(QStringLiteral(", "));
}

/// \brief "faces", "regions".
QString pluralOf(int dimension)
{
    static const std::array<const char*, 4> names = {"vertices", "edges", "faces", "regions"};
    return QLatin1String(names[static_cast<std::size_t>(dimension)]);
}

QString materialOf(const ModelEntity& entity)
{
    return entity.attributes().value(AttributeType::MaterialType, QVariant()).toString();
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
    const int bodies = model_.faceDimension() + 1;
    QSet<QString> told;
    bool isAnyGiven = false;
    for (int d = bodies; d >= 0; --d) {
        for (const ModelEntity* entity : inIdOrder(model_.iterator(d))) {
            if (!entity->attributes().contains(AttributeType::MaterialType)) {
                continue;
            }
            isAnyGiven = isAnyGiven || d == bodies;
            const QString fault = AttributeCheck::materialFault(materialOf(*entity));
            if (!fault.isEmpty() && !told.contains(materialOf(*entity))) {
                progress_.warning(
                    QStringLiteral("%1: %2 %3").arg(attributes, EntityName(*entity).text(), fault));
            }
            told.insert(materialOf(*entity));
        }
    }
    if (!isAnyGiven) {
        progress_.warning(QStringLiteral("%1: gives a material_type to none of the %2, so that "
                                         "nothing can be prepared or solved")
                              .arg(attributes, pluralOf(bodies)));
    }
}

} // namespace Ovra::GeoTool
