#pragma once

#include <cstddef>
#include <vector>

namespace Ovra::GeoTool
{

class CaseView;

/// \brief Numbers the vertices of one data set after the other, of which a case may have hundreds.
///
/// What it takes to look a vertex up is as large as the mesh, and stays from one to the next.
class PointNumbers
{
public:
    /// \param view must outlive this
    explicit PointNumbers(const CaseView& view);

    /// \brief The vertices of some mesh entities, ascending: positions in CaseView::meshEntities(0).
    /// \param selection positions in CaseView::meshEntities(dimension)
    std::vector<int> verticesOf(int dimension, const std::vector<std::size_t>& selection);

    /// \brief Gives these the numbers from 0 on.
    void number(const std::vector<int>& vertices);

    /// \brief The number of one of those that were given one last.
    int of(int vertex) const { return numbers_[static_cast<std::size_t>(vertex)]; }

private:
    void sort(std::vector<int>& vertices) const;
    bool isMarked(int vertex) const { return marks_[static_cast<std::size_t>(vertex)] == mark_; }

    const CaseView& view_;
    std::vector<int> numbers_;
    std::vector<int> marks_; ///< the last that a vertex got
    int mark_ = 0;
};

} // namespace Ovra::GeoTool
