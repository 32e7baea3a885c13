#include "Partition.h"

#include "CaseView.h"
#include "Counted.h"
#include "ElementGraph.h"
#include "GraphCut.h"
#include "KeptInterfaces.h"
#include "Progress.h"
#include "StandardOutput.h"
#include "ToolError.h"

#include <algorithm>
#include <numeric>

namespace Ovra::GeoTool
{

namespace
{

/// \brief The node of each element in the graph that is cut.
std::vector<int> nodesOf(const CaseView& view, bool keepInterfaces)
{
    if (keepInterfaces) {
        return KeptInterfaces(view).clusters();
    }
    std::vector<int> nodes(view.meshEntities(view.elementDimension()).size());
    std::iota(nodes.begin(), nodes.end(), 0);
    return nodes;
}

void requireEnough(std::size_t nodeCount, const ExportOptions& options)
{
    if (nodeCount >= static_cast<std::size_t>(options.parts)) {
        return;
    }
    throw ToolError(ExitCode::Unsuitable,
                    QStringLiteral("cannot cut %1 in %2")
                        .arg(counted(static_cast<qint64>(nodeCount),
                                     options.keepInterfaces
                                         ? QStringLiteral("group of elements that stays together")
                                         : QStringLiteral("element"),
                                     options.keepInterfaces
                                         ? QStringLiteral("groups of elements that stay together")
                                         : QString()),
                             counted(options.parts, QStringLiteral("part"))));
}

/// \brief The parts that have a vertex, of those vertices that several have.
class SharedVertices
{
public:
    SharedVertices(const VertexLists& lists, const std::vector<int>& partOf,
                   std::size_t vertexCount)
        : partOfVertex_(vertexCount, nobody)
    {
        for (std::size_t element = 0; element < lists.size(); ++element) {
            for (const int vertex : lists.of(element)) {
                int& part = partOfVertex_[static_cast<std::size_t>(vertex)];
                part = part == nobody || part == partOf[element] ? partOf[element] : several;
            }
        }
        for (std::size_t element = 0; element < lists.size(); ++element) {
            for (const int vertex : lists.of(element)) {
                if (isShared(vertex)) {
                    uses_.emplace_back(vertex, partOf[element]);
                }
            }
        }
        std::sort(uses_.begin(), uses_.end());
        uses_.erase(std::unique(uses_.begin(), uses_.end()), uses_.end());
    }

    bool isShared(int vertex) const
    {
        return partOfVertex_[static_cast<std::size_t>(vertex)] == several;
    }

    /// \brief The lowest part that has the vertex.
    int ownerOf(int vertex) const
    {
        return isShared(vertex) ? firstUse(vertex)->second
                                : partOfVertex_[static_cast<std::size_t>(vertex)];
    }

    template <typename Action>
    void forEachPart(int vertex, Action action) const
    {
        for (auto use = firstUse(vertex); use != uses_.end() && use->first == vertex; ++use) {
            action(use->second);
        }
    }

private:
    static constexpr int nobody = -1;
    static constexpr int several = -2;

    using Uses = std::vector<std::pair<int, int>>;

    Uses::const_iterator firstUse(int vertex) const
    {
        return std::lower_bound(uses_.begin(), uses_.end(), std::pair(vertex, nobody));
    }

    std::vector<int> partOfVertex_;
    Uses uses_; ///< shared vertices and their parts, ascending
};

} // namespace

Partition::Partition(const CaseView& view, const ExportOptions& options, Progress& progress)
    : count_(options.parts)
{
    progress.phase(QStringLiteral("cutting the elements in parts"));
    const ElementGraph graph(view);
    partOf_ = nodesOf(view, options.keepInterfaces);
    const auto nodeCount = static_cast<std::size_t>(
        partOf_.empty() ? 0 : *std::max_element(partOf_.begin(), partOf_.end()) + 1);
    requireEnough(nodeCount, options);
    CutGraph cutGraph(graph, partOf_, nodeCount);
    const std::vector<int> partOfNode =
        count_ == 1 ? std::vector<int>(nodeCount, 0) : Ovra::GeoTool::cutGraph(cutGraph, count_);
    for (int& part : partOf_) {
        part = partOfNode[static_cast<std::size_t>(part)];
    }
    countCut(graph);
    listElements();
    findGhosts(view);
    progress.finish();
}

const std::vector<std::size_t>& Partition::elementsOf(int part) const
{
    return elements_.at(static_cast<std::size_t>(part));
}

const std::vector<std::size_t>& Partition::ghostsOf(int part) const
{
    return ghosts_.at(static_cast<std::size_t>(part));
}

QString Partition::text() const
{
    const auto [least, most] =
        std::minmax_element(elements_.begin(), elements_.end(),
                            [](const auto& a, const auto& b) { return a.size() < b.size(); });
    const QString parts = counted(count_, QStringLiteral("part"));
    const QString elements = counted(static_cast<qint64>(most->size()), QStringLiteral("element"));
    if (count_ == 1) {
        return QStringLiteral("%1 of %2").arg(parts, elements);
    }
    const QString sizes = least->size() == most->size()
                              ? elements + QStringLiteral(" each")
                              : QStringLiteral("%1 to %2").arg(least->size()).arg(elements);
    return QStringLiteral("%1 of %2, %3 between them")
        .arg(parts, sizes, counted(cut_, QStringLiteral("side")));
}

void Partition::tell(const ExportJob& job) const
{
    job.progress.finish();
    printToStandardOutput(QStringLiteral("%1: %2\n").arg(job.path, text()).toUtf8());
}

void Partition::countCut(const ElementGraph& graph)
{
    cut_ = std::count_if(graph.links().begin(), graph.links().end(), [this](const auto& link) {
        return partOf(static_cast<std::size_t>(link.first)) !=
               partOf(static_cast<std::size_t>(link.second));
    });
}

void Partition::listElements()
{
    elements_.resize(static_cast<std::size_t>(count_));
    for (std::size_t element = 0; element < partOf_.size(); ++element) {
        elements_[static_cast<std::size_t>(partOf_[element])].push_back(element);
    }
}

void Partition::findGhosts(const CaseView& view)
{
    const VertexLists& lists = view.vertexLists(view.elementDimension());
    const SharedVertices shared(lists, partOf_, view.meshEntities(0).size());
    ghosts_.resize(static_cast<std::size_t>(count_));
    for (std::size_t element = 0; element < partOf_.size(); ++element) {
        for (const int vertex : lists.of(element)) {
            if (!shared.isShared(vertex)) {
                continue;
            }
            shared.forEachPart(vertex, [&](int part) {
                std::vector<std::size_t>& ghosts = ghosts_[static_cast<std::size_t>(part)];
                const bool isNew = ghosts.empty() || ghosts.back() != element;
                if (part != partOf_[element] && isNew) {
                    ghosts.push_back(element);
                }
            });
        }
    }
    for (std::size_t vertex = 0; vertex < view.meshEntities(0).size(); ++vertex) {
        owners_.push_back(shared.ownerOf(static_cast<int>(vertex)));
    }
}

} // namespace Ovra::GeoTool
