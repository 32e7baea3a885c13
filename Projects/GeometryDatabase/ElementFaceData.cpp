#include "ElementFaceData.h"

#include <QHashFunctions>

#include <tuple>

namespace Ovra::Geo
{

bool ElementFaceData::operator==(const ElementFaceData& other) const
{
    return elementId_ == other.elementId_ && localFace_ == other.localFace_;
}

bool ElementFaceData::operator<(const ElementFaceData& other) const
{
    return std::tie(elementId_, localFace_) < std::tie(other.elementId_, other.localFace_);
}

uint qHash(const ElementFaceData& data)
{
    // Computed without sign, since an overflow must wrap.
    const uint key = static_cast<uint>(data.elementId_) * 8U + static_cast<uint>(data.localFace_);
    return static_cast<uint>(::qHash(qint64{static_cast<int>(key)}, 0));
}

} // namespace Ovra::Geo
