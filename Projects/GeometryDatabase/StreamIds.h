#pragma once

#include <QDataStream>
#include <QList>
#include <QSet>

namespace Ovra::Geo
{

/// \brief The ids of one dimension that have occurred in the stream being read. Not for hosts.
///
/// Writers emit ascending ids, mostly without gaps, which costs constant time for each id and one
/// entry for each run; any other order is right too, and costs a set entry for each id out of
/// order.
class StreamIds
{
public:
    /// \brief Takes \p id in.
    /// \return false if it has occurred before
    bool insert(int id);

    /// \brief Takes the id of a record of \p stream in; 0, which is no id, or one that has occurred
    ///        before sets the status QDataStream::ReadCorruptData.
    template <typename Stream>
    void check(int id, Stream& stream)
    {
        if (id == 0 || !insert(id)) {
            stream.setStatus(QDataStream::ReadCorruptData);
        }
    }

private:
    struct Run
    {
        int first;
        int last;
    };

    bool isInRun(int id) const;

    QList<Run> runs_; // ascending
    QSet<int> others_;
};

} // namespace Ovra::Geo
