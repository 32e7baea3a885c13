#pragma once

#include "CaseFiles.h"

#include <memory>
#include <optional>
#include <pybind11/pybind11.h>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace Ovra::GeoPython
{

/// \brief What was asked for is not there any more; GoneError in Python.
class Gone : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// \brief Another thread works on the case; BusyError in Python.
class Busy : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// \brief What has yet to look at the mesh, and has to before that changes.
class Unsettled
{
public:
    virtual void settle() = 0;

protected:
    ~Unsettled() = default;
};

/// \brief A case in memory, and who may touch it.
///
/// Every object of Python that stands for a part of the case shares it, so that it lives as long as
/// the last of them. All functions are called with the interpreter's lock held.
class CaseState
{
public:
    CaseState();

    /// \brief The database; throws Gone after close() or giveUp(), Busy during aside().
    Geo::Database& database();
    Geo::Model& model() { return *database().model(); }
    Geo::Mesh& mesh() { return *database().mesh(); }

    /// \brief The mesh with all upward lists as its elements have them.
    Geo::Mesh& linkedMesh();

    /// \brief Takes in who wants to be settled ahead of a change.
    void enter(Unsettled& one) { unsettled_.insert(&one); }

    /// \brief Forgets who was settled, or is about to be no more.
    void leave(Unsettled& one) { unsettled_.erase(&one); }

    /// \brief To be called ahead of adding mesh entities, or removing one. Settles all that wait for it; where
    ///        that fails, nothing else has changed.
    void meshWillChange();

    /// \brief Tells that elements were added, whose vertices do not list them yet.
    void meshGrew() { linked_ = false; }

    /// \brief Changes with asideOrGiveUp().
    int meshEpoch() const { return meshEpoch_; }

    /// \brief Tells that an entity is about to be removed. Another of its id may come to lie at the
    ///        same address.
    void noteRemoval(const void* entity) { ++removals_[entity]; }

    /// \brief How many entities at that address were removed.
    int removalsAt(const void* entity) const
    {
        const auto found = removals_.find(entity);
        return found == removals_.end() ? 0 : found->second;
    }

    /// \brief Frees the database; whatever stood for a part of it throws Gone from now on.
    void close() { giveUp("the case is closed"); }

    /// \brief As close(), for \p reason, which Gone tells.
    void giveUp(const std::string& reason);

    bool isClosed() const { return database_ == nullptr; }

    /// \brief Whether another thread is in aside().
    bool isBusy() const { return busy_; }

    /// \brief The files of the case, if it was read from or written to any.
    std::optional<GeoTool::CaseFiles> files;

    /// \brief Does \p work with the database, all upward lists set, and without the interpreter's
    ///        lock, so that other threads of Python go on; those that come for this case meanwhile get
    ///        Busy.
    template <typename Work>
    auto aside(Work work)
    {
        Geo::Database& itself = database();
        const Occupation occupation(busy_); // ends with the lock held again
        const Unlocked unlocked;
        link(itself);
        return work(itself);
    }

    /// \brief As aside(), for \p work that gives mesh entities new ids, so that whatever stands for one is
    ///        void, and that cannot be taken back where it throws: the case is given up for \p reason then.
    template <typename Work>
    auto asideOrGiveUp(Work work, const std::string& reason)
    {
        database(); // Gone and Busy come ahead of any change
        try {
            auto done = aside(work);
            ++meshEpoch_;
            unsettled_.clear();
            return done;
        } catch (...) {
            giveUp(reason);
            throw;
        }
    }

    /// \brief Enters the mesh entities of \p database with their parents by their present ids.
    static void keyChildrenAnew(const Geo::Database& database);

private:
    class Occupation
    {
    public:
        explicit Occupation(bool& busy)
            : busy_(busy)
        {
            busy_ = true;
        }
        ~Occupation() { busy_ = false; }
        Occupation(const Occupation&) = delete;
        Occupation& operator=(const Occupation&) = delete;

    private:
        bool& busy_;
    };

    /// Without the interpreter's lock. A thread that cannot have it back, as the interpreter ends, waits
    /// for the end of the process: Python would unwind it, through frames that need the lock.
    class Unlocked
    {
    public:
        Unlocked()
            : thread_(PyEval_SaveThread())
        {
        }
        ~Unlocked();
        Unlocked(const Unlocked&) = delete;
        Unlocked& operator=(const Unlocked&) = delete;

    private:
        PyThreadState* thread_;
    };

    void link(Geo::Database& database);

    std::unique_ptr<GeoTool::CaseDatabase> database_;
    std::string reason_;
    bool busy_ = false;
    bool linked_ = true;
    int meshEpoch_ = 0;
    std::unordered_map<const void*, int> removals_;
    std::unordered_set<Unsettled*> unsettled_;
};

using CasePointer = std::shared_ptr<CaseState>;

} // namespace Ovra::GeoPython
