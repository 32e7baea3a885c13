#include "PointerCheck.h"

#include "AddressSet.h"
#include "CaseView.h"
#include "Counted.h"
#include "FindingSink.h"
#include "MeshEntity.h"
#include "ModelEntity.h"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

using Alive = std::array<AddressSet, 4>; ///< by dimension

QString dimensionName(std::size_t dimension)
{
    static const std::array<const char*, 4> names = {"vertices", "edges", "faces", "regions"};
    return QLatin1String(names.at(dimension));
}

class Run
{
public:
    Run(const CaseView& view, FindingSink& sink);
    bool check();

private:
    template <typename Entity>
    void checkLists(const Entity& entity, const Alive& alive);
    bool isAliveInModel(const ModelEntity* entity) const;
    void checkParent(const MeshEntity& entity);
    void checkChildren(const ModelEntity& entity);
    void checkChildCounts();

    /// The place is left out: it might be read through a dead pointer.
    template <typename Entity>
    void report(FindingKind kind, const Entity& entity, const FindingSink::Text& text)
    {
        sink_.add(kind, EntityName(entity), std::nullopt, text);
        sound_ = sound_ && kind != FindingKind::DeadPointer;
    }

    const CaseView& view_;
    FindingSink& sink_;
    Alive model_;
    Alive mesh_;
    const ModelEntity* lastParent_ = nullptr; ///< that was found alive; many stand on the same
    bool sound_ = true;
};

Run::Run(const CaseView& view, FindingSink& sink)
    : view_(view)
    , sink_(sink)
{
    for (std::size_t dimension = 0; dimension < 4; ++dimension) {
        for (const ModelEntity* entity : view.modelEntities(static_cast<int>(dimension))) {
            model_[dimension].insert(entity);
        }
        for (const MeshEntity* entity : view.meshEntities(static_cast<int>(dimension))) {
            mesh_[dimension].insert(entity);
        }
    }
}

bool Run::check()
{
    for (int dimension = 0; dimension < 4; ++dimension) {
        for (const ModelEntity* entity : view_.modelEntities(dimension)) {
            checkLists(*entity, model_);
            checkChildren(*entity);
        }
        for (const MeshEntity* entity : view_.meshEntities(dimension)) {
            checkLists(*entity, mesh_);
            checkParent(*entity);
        }
    }
    if (sound_) {
        checkChildCounts();
    }
    return sound_;
}

template <typename Entity>
void Run::checkLists(const Entity& entity, const Alive& alive)
{
    for (std::size_t dimension = 0; dimension < 4; ++dimension) {
        const int count = entity.adjacencyCount(static_cast<int>(dimension));
        for (int i = 0; i < count; ++i) {
            if (!alive[dimension].contains(entity.adjacencyAt(static_cast<int>(dimension), i))) {
                report(FindingKind::DeadPointer, entity, [=] {
                    return QStringLiteral("lists among its %1 one that is no longer there")
                        .arg(dimensionName(dimension));
                });
            }
        }
    }
}

bool Run::isAliveInModel(const ModelEntity* entity) const
{
    return std::any_of(model_.begin(), model_.end(),
                       [entity](const AddressSet& alive) { return alive.contains(entity); });
}

void Run::checkParent(const MeshEntity& entity)
{
    const ModelEntity* const parent = entity.parent();
    if (parent == lastParent_) {
        return;
    }
    if (!parent || isAliveInModel(parent)) {
        lastParent_ = parent;
    } else {
        report(FindingKind::DeadPointer, entity,
               [] { return QStringLiteral("stands on a model entity that is no longer there"); });
    }
}

void Run::checkChildren(const ModelEntity& entity)
{
    const auto& alive = mesh_[static_cast<std::size_t>(entity.dimension())];
    auto children = entity.childIterator();
    while (children.hasNext()) {
        children.next();
        if (!alive.contains(children.value())) {
            report(FindingKind::DeadPointer, entity,
                   [] { return QStringLiteral("has a mesh child that is no longer there"); });
        } else if (children.value()->parent() != &entity) {
            report(FindingKind::LostChild, entity, [id = children.value()->id()] {
                return QStringLiteral("has the child %1, which stands elsewhere").arg(id);
            });
        }
    }
}

void Run::checkChildCounts()
{
    for (int dimension = 0; dimension < 4; ++dimension) {
        std::unordered_map<const ModelEntity*, int> counts;
        const ModelEntity* last = nullptr;
        int* count = &counts[last];
        for (const MeshEntity* entity : view_.meshEntities(dimension)) {
            if (entity->parent() != last) { // runs of entities stand on the same
                last = entity->parent();
                count = &counts[last];
            }
            ++*count;
        }
        for (const ModelEntity* entity : view_.modelEntities(dimension)) {
            if (counts[entity] != entity->childCount()) {
                report(FindingKind::LostChild, *entity, [=, standing = counts[entity]] {
                    return QStringLiteral("has %1 in its table, where %2 on it")
                        .arg(counted(entity->childCount(), QStringLiteral("child"),
                                     QStringLiteral("children")),
                             counted(standing,
                                     QStringLiteral("mesh entity of its dimension stands"),
                                     QStringLiteral("mesh entities of its dimension stand")));
                });
            }
        }
    }
}

} // namespace

bool PointerCheck::run(const CaseView& view, FindingSink& sink)
{
    return Run(view, sink).check();
}

} // namespace Ovra::GeoTool
