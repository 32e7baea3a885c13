#include "InputBlock.h"

#include <QBuffer>
#include <QFileDevice>

#include <algorithm>
#include <exception>

namespace Ovra::Geo
{

namespace
{

// Whether the device gives back what it shows. Others than Qt's may do without a buffer and seek().
bool canShow(const QIODevice& device)
{
    return !device.isSequential() && !device.isTextModeEnabled() &&
           !device.isTransactionStarted() &&
           (!device.openMode().testFlag(QIODevice::Unbuffered) ||
            qobject_cast<const QBuffer*>(&device) != nullptr ||
            qobject_cast<const QFileDevice*>(&device) != nullptr);
}

bool isDirect(const QDataStream& stream)
{
    return stream.device() != nullptr && canShow(*stream.device()) && hasPlainNumbers(stream);
}

} // namespace

InputBlock::InputBlock(QDataStream& stream)
    : stream_(stream)
    , exceptions_(std::uncaught_exceptions())
{
}

InputBlock::~InputBlock() noexcept(false)
{
    if (std::uncaught_exceptions() == exceptions_) {
        stepOver();
    }
}

QDataStream& InputBlock::stream()
{
    stepOver();
    bytes_.clear();
    return stream_;
}

bool InputBlock::look(std::ptrdiff_t bytes)
{
    stepOver();
    if (!isDirect(stream_)) {
        return false;
    }
    bytes_.resize(static_cast<std::size_t>(
        std::clamp<qsizetype>(4 * static_cast<qsizetype>(bytes_.size()), Least, Most)));
    const qint64 shown = stream_.device()->peek(bytes_.data(), static_cast<qint64>(bytes_.size()));
    taken_ = next_ = bytes_.data();
    end_ = next_ + std::max<qint64>(shown, 0);
    return end_ - next_ >= bytes;
}

void InputBlock::stepOver()
{
    const std::ptrdiff_t taken = next_ - taken_;
    taken_ = next_ = end_ = nullptr;
    if (taken > 0) {
        stream_.device()->skip(taken);
    }
}

} // namespace Ovra::Geo
