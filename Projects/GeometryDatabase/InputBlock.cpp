#include "InputBlock.h"

#include <QIODevice>

#include <algorithm>

namespace Ovra::Geo
{

namespace
{

bool isDirect(const QDataStream& stream)
{
    const QIODevice* const device = stream.device();
    return device != nullptr && !device->isSequential() && !device->isTextModeEnabled() &&
           !device->isTransactionStarted() && stream.byteOrder() == QDataStream::BigEndian &&
           stream.version() >= QDataStream::Qt_4_6 &&
           stream.floatingPointPrecision() == QDataStream::DoublePrecision;
}

} // namespace

InputBlock::InputBlock(QDataStream& stream)
    : stream_(stream)
    , isDirect_(isDirect(stream))
{
}

InputBlock::~InputBlock()
{
    stepOver();
}

QDataStream& InputBlock::stream()
{
    stepOver();
    bytes_.clear();
    return stream_;
}

bool InputBlock::look(std::ptrdiff_t bytes)
{
    if (!isDirect_) {
        return false;
    }
    stepOver();
    bytes_.resize(static_cast<std::size_t>(
        std::clamp<qsizetype>(4 * static_cast<qsizetype>(bytes_.size()), Least, Most)));
    const qint64 shown = stream_.device()->peek(bytes_.data(), static_cast<qint64>(bytes_.size()));
    taken_ = next_ = bytes_.data();
    end_ = next_ + std::max<qint64>(shown, 0);
    return end_ - next_ >= bytes;
}

void InputBlock::stepOver()
{
    if (next_ != taken_) {
        stream_.device()->skip(next_ - taken_);
    }
    taken_ = next_ = end_ = nullptr;
}

} // namespace Ovra::Geo
