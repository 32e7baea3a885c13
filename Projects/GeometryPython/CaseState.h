#pragma once

#include "CaseFiles.h"

#include <memory>
#include <optional>
#include <pybind11/pybind11.h>
#include <stdexcept>
#include <string>

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

    /// \brief Tells that elements were added, whose vertices do not list them yet.
    void meshGrew() { linked_ = false; }

    /// \brief Tells that mesh entities may have new ids, under which their parents do not have them.
    void keysAreFormer();

    /// \brief How often mesh entities may have got new ids.
    int numbering() const { return numbering_; }

    /// \brief Frees the database; whatever stood for a part of it throws Gone from now on.
    void close() { giveUp("the case is closed"); }

    /// \brief As close(), for \p reason, which Gone tells.
    void giveUp(const std::string& reason);

    bool isClosed() const { return database_ == nullptr; }

    /// \brief The files of the case, if it was read from or written to any.
    std::optional<GeoTool::CaseFiles> files;

    /// \brief Does \p work with the database and without the interpreter's lock, so that other
    ///        threads of Python go on; those that come for this case meanwhile get Busy.
    template <typename Work>
    auto aside(Work work)
    {
        Geo::Database& itself = database();
        const Occupation occupation(busy_); // ends with the lock held again
        const pybind11::gil_scoped_release released;
        return work(itself);
    }

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

    std::unique_ptr<GeoTool::CaseDatabase> database_;
    std::string reason_;
    bool busy_ = false;
    bool linked_ = true;
    int numbering_ = 0;
};

using CasePointer = std::shared_ptr<CaseState>;

} // namespace Ovra::GeoPython
