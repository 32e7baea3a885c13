#include "AbaqusSetGraph.h"

#include "ToolError.h"

#include <QSet>

#include <utility>

namespace Ovra::GeoTool
{

namespace
{

[[noreturn]] void fail(const QString& where, const QString& what)
{
    throw ToolError(ExitCode::InputDamaged, where + QStringLiteral(": ") + what);
}

QString shown(const QByteArray& name)
{
    return QLatin1Char('"') + QString::fromUtf8(AbaqusLabel::of(name).text) + QLatin1Char('"');
}

} // namespace

AbaqusSetGraph::AbaqusSetGraph(const std::vector<AbaqusPart>& bodies, AbaqusSets AbaqusPart::*kind)
    : bodies_(bodies)
    , kind_(kind)
{
    int count = 0;
    for (std::size_t body = 0; body < bodies.size(); ++body) {
        bodyByKey_.insert(bodies[body].name.key, static_cast<int>(body));
        firstNode_.push_back(count);
        count += static_cast<int>((bodies[body].*kind).all().size());
    }
    nodes_.reserve(static_cast<std::size_t>(count));
    for (int body = 0; body < static_cast<int>(bodies.size()); ++body) {
        for (const AbaqusSets::Set& set : setsOf(body).all()) {
            nodes_.emplace_back();
            nodes_.back().set = &set;
            for (const AbaqusSets::Block& block : set.blocks) {
                resolve(body, block, nodes_.back());
            }
        }
    }
    requireNoCycle();
}

int AbaqusSetGraph::bodyOf(const AbaqusSets::Block& block, int body) const
{
    if (block.instance.isEmpty()) {
        return body;
    }
    const int named = bodyByKey_.value(AbaqusLabel::of(block.instance).key, -1);
    if (named < 0) {
        fail(block.where, QStringLiteral("there is no instance %1").arg(shown(block.instance)));
    }
    return named;
}

void AbaqusSetGraph::resolve(int body, const AbaqusSets::Block& block, Node& node) const
{
    const int owner = bodyOf(block, body);
    for (const AbaqusSets::Range& range : block.ranges) {
        node.numbers.push_back({owner, range});
    }
    for (const AbaqusSets::Reference& reference : block.references) {
        std::optional<int> part = find(owner, reference.written);
        if (!part) {
            part = find(body, reference.written);
        }
        if (part) {
            node.parts.push_back(*part);
        } else if (!resolveOfInstance(reference.written, node)) {
            fail(reference.where, QStringLiteral("the set %1 names %2, which does not exist")
                                      .arg(shown(node.set->name.text), shown(reference.written)));
        }
    }
}

std::optional<int> AbaqusSetGraph::find(int body, const QByteArray& written) const
{
    const int set = setsOf(body).positionOf(AbaqusLabel::of(written).key);
    return set < 0 ? std::nullopt : std::optional<int>(nodeOf(body, set));
}

/// \brief Adds what "INSTANCE.SET" or "INSTANCE.number" means; false if it means nothing.
bool AbaqusSetGraph::resolveOfInstance(const QByteArray& written, Node& node) const
{
    const qsizetype stop = written.indexOf('.');
    const int body = bodyByKey_.value(AbaqusLabel::of(written.left(stop)).key, -1);
    if (stop <= 0 || body < 0) {
        return false;
    }
    const QByteArray rest = written.mid(stop + 1);
    if (const std::optional<int> part = find(body, rest)) {
        node.parts.push_back(*part);
        return true;
    }
    bool isNumber = false;
    const int number = rest.toInt(&isNumber);
    if (isNumber && number > 0) {
        node.numbers.push_back({body, {number, number, 1}});
    }
    return isNumber && number > 0;
}

void AbaqusSetGraph::requireNoCycle() const
{
    std::vector<char> state(nodes_.size(), 0);
    for (int node = 0; node < static_cast<int>(nodes_.size()); ++node) {
        requireNoCycleFrom(node, state);
    }
}

// Without recursion, as sets may be nested as deep as a file is long.
void AbaqusSetGraph::requireNoCycleFrom(int start, std::vector<char>& state) const
{
    enum : char
    {
        New,
        Open,
        Done
    };
    std::vector<std::pair<int, std::size_t>> way{{start, 0}};
    while (!way.empty()) {
        const int node = way.back().first;
        char& own = state[static_cast<std::size_t>(node)];
        const Node& present = nodes_[static_cast<std::size_t>(node)];
        if (own == Done || way.back().second == present.parts.size()) {
            own = Done;
            way.pop_back();
            continue;
        }
        own = Open;
        const int next = present.parts[way.back().second++];
        const Node& part = nodes_[static_cast<std::size_t>(next)];
        if (state[static_cast<std::size_t>(next)] == Open) {
            fail(present.set->blocks.back().where,
                 QStringLiteral("the set %1 contains itself, by way of %2")
                     .arg(shown(part.set->name.text), shown(present.set->name.text)));
        }
        way.emplace_back(next, 0);
    }
}

void AbaqusSetGraph::visit(int body, int set,
                           const std::function<void(int, const AbaqusSets::Range&)>& action) const
{
    std::vector<int> open{nodeOf(body, set)};
    QSet<int> seen{open.front()};
    while (!open.empty()) {
        const Node& node = nodes_[static_cast<std::size_t>(open.back())];
        open.pop_back();
        for (const Numbers& numbers : node.numbers) {
            action(numbers.body, numbers.range);
        }
        for (const int part : node.parts) {
            if (!seen.contains(part)) {
                seen.insert(part);
                open.push_back(part);
            }
        }
    }
}

int AbaqusSetGraph::sectionSet(int body, const AbaqusSets::Reference& reference) const
{
    const int set = setsOf(body).positionOf(AbaqusLabel::of(reference.written).key);
    if (set < 0) {
        fail(reference.where, QStringLiteral("the section names the set %1, which does not exist")
                                  .arg(shown(reference.written)));
    }
    return set;
}

} // namespace Ovra::GeoTool
