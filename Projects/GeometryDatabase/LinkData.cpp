#include "LinkData.h"

#include <QHashFunctions>

#include <utility>

namespace Ovra::Geo
{

bool LinkData::operator==(const LinkData& other) const
{
    return nodeId_ == other.nodeId_;
}

bool LinkData::operator<(const LinkData& other) const
{
    return nodeId_ < other.nodeId_;
}

void LinkData::sort()
{
    const auto count = static_cast<size_t>(qMax(linkCount_, 0));
    for (size_t i = 1; i < count; ++i) {
        for (size_t j = i; j > 0 && linkIds_[j - 1] > linkIds_[j]; --j) {
            std::swap(linkIds_[j - 1], linkIds_[j]);
            std::swap(linkWeights_[j - 1], linkWeights_[j]);
        }
    }
}

uint qHash(const LinkData& data)
{
    return static_cast<uint>(::qHash(qint64{data.nodeId_}, 0));
}

} // namespace Ovra::Geo
