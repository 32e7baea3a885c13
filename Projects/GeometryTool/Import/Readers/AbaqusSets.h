#pragma once

#include "AbaqusLabel.h"

#include <QHash>
#include <QList>
#include <QString>

#include <vector>

namespace Ovra::GeoTool
{

/// \brief The sets of elements, or of nodes, of a part, an instance or a whole Abaqus model.
class AbaqusSets
{
public:
    /// \brief The numbers first, first + step, ... up to last.
    struct Range
    {
        int first = 0;
        int last = 0;
        int step = 1;
    };

    /// \brief The name of another set among the members of a set, or "INSTANCE.number".
    struct Reference
    {
        QByteArray written;
        QString where; ///< place in the file, for messages
    };

    /// \brief What one *ELSET or *NSET gives to a set.
    struct Block
    {
        QByteArray instance; ///< as written; empty when the members belong where the set does
        QString where;
        std::vector<Range> ranges;
        QList<Reference> references;
    };

    struct Set
    {
        AbaqusLabel name;
        bool isListed = false;   ///< by *ELSET or *NSET, not only by *ELEMENT or *NODE
        bool isInternal = false; ///< made by a preprocessor for itself
        QList<Block> blocks;
    };

    /// \brief The set with a name as it is written; made if there is none.
    Set& named(const QByteArray& written);

    /// \brief Position in all() of the set with the key of a name; -1 if there is none.
    int positionOf(const QByteArray& key) const { return positions_.value(key, -1); }

    /// \brief All sets in order of appearance.
    const std::vector<Set>& all() const { return sets_; }

    /// \brief Adds a number to a block, to its last range where it goes on.
    static void addNumber(Block& block, int number);

private:
    std::vector<Set> sets_;
    QHash<QByteArray, int> positions_;
};

} // namespace Ovra::GeoTool
