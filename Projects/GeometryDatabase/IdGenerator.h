#pragma once

#include "GeometryDatabaseExport.h"

#include <QList>

namespace Ovra::Geo
{

/// \brief Hands out the integer ids of the entities of one dimension of a container.
///
/// Ids start at 1; 0 marks an entity that has no id yet. A container tells the generator of ids
/// that arrive from elsewhere, a file for instance, with setMaxId(). A copy hands out ids of its
/// own.
class OVRA_GEO_EXPORT IdGenerator
{
public:
    /// \brief The next id: the id that was returned first and not yet given out again, or else the
    ///        one above maxId(), which maxId() then becomes.
    /// \pre a returned id is left, or maxId() is below the highest value of an int
    int getId();

    /// \brief Makes \p id available to getId() again.
    /// \param id an id that is out of use; neither its range nor whether it was returned before is
    ///           tested, so that an id that is returned twice is given out twice
    void returnId(int id);

    /// \brief The highest id handed out or declared.
    int maxId() const { return maxId_; }

    /// \brief Declares \p id the highest id in use, downwards too; returned ids stay available.
    void setMaxId(int id) { maxId_ = id; }

    /// \brief Number of ids in use, provided that every id up to maxId() has been handed out.
    int count() const;

    /// \brief Starts again: no returned ids, and the next id is 1.
    void reset();

private:
    int maxId_ = 0;
    QList<int> freeIds_;
};

} // namespace Ovra::Geo
