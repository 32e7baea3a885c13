#include "AbaqusSets.h"

namespace Ovra::GeoTool
{

AbaqusSets::Set& AbaqusSets::named(const QByteArray& written)
{
    const AbaqusLabel name = AbaqusLabel::of(written);
    const int position = positionOf(name.key);
    if (position >= 0) {
        return sets_[static_cast<std::size_t>(position)];
    }
    positions_.insert(name.key, static_cast<int>(sets_.size()));
    sets_.emplace_back();
    sets_.back().name = name;
    return sets_.back();
}

void AbaqusSets::addNumber(Block& block, int number)
{
    if (!block.ranges.empty() && block.ranges.back().step == 1 &&
        block.ranges.back().last == number - 1) {
        block.ranges.back().last = number;
        return;
    }
    block.ranges.push_back({number, number, 1});
}

} // namespace Ovra::GeoTool
