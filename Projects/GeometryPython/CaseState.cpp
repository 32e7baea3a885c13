#include "CaseState.h"

#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"

#include <unistd.h>
#include <utility>
#include <vector>

namespace Ovra::GeoPython
{

using namespace Ovra::Geo;

namespace
{

/// After a renumbering the table of children has the former ids as keys, under which alone a child is
/// found to be taken out.
void keyAnew(ModelEntity& entity)
{
    std::vector<std::pair<int, MeshEntity*>> children;
    for (auto walk = entity.childIterator(); walk.hasNext();) {
        walk.next();
        children.emplace_back(walk.key(), walk.value());
    }
    for (const auto& [key, child] : children) {
        const int id = child->id();
        child->setId(key);
        entity.removeChild(child);
        child->setId(id);
    }
    for (const auto& [key, child] : children) {
        entity.addChild(child);
    }
}

bool hasFormerKeys(const ModelEntity& entity)
{
    for (auto walk = entity.childIterator(); walk.hasNext();) {
        walk.next();
        if (walk.key() != walk.value()->id()) {
            return true;
        }
    }
    return false;
}

} // namespace

CaseState::CaseState()
    : database_(std::make_unique<GeoTool::CaseDatabase>())
{
}

Database& CaseState::database()
{
    if (isClosed()) {
        throw Gone(reason_);
    }
    if (busy_) {
        throw Busy("another thread works on the case");
    }
    return *database_;
}

void CaseState::meshWillChange()
{
    while (!unsettled_.empty()) {
        (*unsettled_.begin())->settle(); // which takes itself out
    }
}

Mesh& CaseState::linkedMesh()
{
    link(database());
    return mesh();
}

void CaseState::link(Database& database)
{
    if (!linked_) {
        database.mesh()->clearUpwardAdjacencies();
        database.mesh()->setUpwardAdjacencies();
        linked_ = true;
    }
}

void CaseState::keyChildrenAnew(const Database& database)
{
    for (int dimension = 0; dimension < 4; ++dimension) {
        for (auto walk = database.model()->iterator(dimension); walk.hasNext();) {
            ModelEntity& entity = *walk.next().value();
            if (hasFormerKeys(entity)) {
                keyAnew(entity);
            }
        }
    }
}

CaseState::Unlocked::~Unlocked()
{
    try {
        PyEval_RestoreThread(thread_);
    } catch (...) { // the unwinding, which is no exception with a type
        for (;;) {
            pause();
        }
    }
}

void CaseState::giveUp(const std::string& reason)
{
    if (isClosed()) {
        return;
    }
    database(); // not while it is worked on
    database_.reset();
    unsettled_.clear();
    reason_ = reason;
}

} // namespace Ovra::GeoPython
