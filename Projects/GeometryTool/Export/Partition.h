#pragma once

#include "ExportJob.h"

#include <QString>

#include <cstddef>
#include <vector>

namespace Ovra::GeoTool
{

class CaseView;
class ElementGraph;

/// \brief The elements of a case in parts, for programs that read each part in a process of its own.
///
/// The parts have about as many elements each, and few sides between them. Each part has one layer of
/// ghosts: the elements of other parts that share a vertex with it. The same case gives the same
/// parts.
class Partition
{
public:
    /// \brief Cuts the case as \p options say; throws ToolError Unsuitable if there are fewer
    /// elements, or groups of elements that stay together, than parts.
    Partition(const CaseView& view, const ExportOptions& options, Progress& progress);

    int count() const { return count_; }

    /// \brief The part of an element, by its position in CaseView::meshEntities().
    int partOf(std::size_t element) const { return partOf_[element]; }

    /// \brief The elements of a part, ascending.
    const std::vector<std::size_t>& elementsOf(int part) const;

    /// \brief Its ghosts, ascending.
    const std::vector<std::size_t>& ghostsOf(int part) const;

    /// \brief The lowest part with an element that has the vertex at this position; -1 if no element
    /// has it.
    int ownerOf(int vertex) const { return owners_[static_cast<std::size_t>(vertex)]; }

    /// \brief Number of sides between elements of different parts.
    qint64 cut() const { return cut_; }

    /// \brief "4 parts of 1893 to 1894 elements, 812 sides between them".
    QString text() const;

    /// \brief Prints that, behind the path of the job.
    void tell(const ExportJob& job) const;

private:
    void countCut(const ElementGraph& graph);
    void listElements();
    void findGhosts(const CaseView& view);

    int count_;
    qint64 cut_ = 0;
    std::vector<int> partOf_;
    std::vector<int> owners_; ///< by vertex
    std::vector<std::vector<std::size_t>> elements_;
    std::vector<std::vector<std::size_t>> ghosts_;
};

} // namespace Ovra::GeoTool
