#include "OutputBlock.h"

#include <exception>

namespace Ovra::Geo
{

namespace
{

bool isDirect(const QDataStream& stream)
{
    return stream.device() != nullptr && hasPlainNumbers(stream);
}

} // namespace

OutputBlock::OutputBlock(QDataStream& stream)
    : stream_(stream)
    , exceptions_(std::uncaught_exceptions())
    , bytes_(Size)
{
}

OutputBlock::~OutputBlock() noexcept(false)
{
    if (std::uncaught_exceptions() == exceptions_) {
        flush();
    }
}

QDataStream& OutputBlock::stream()
{
    flush();
    return stream_;
}

bool OutputBlock::makeRoom()
{
    flush();
    if (!isDirect(stream_)) {
        return false;
    }
    end_ = bytes_.data();
    limit_ = end_ + Size;
    return true;
}

void OutputBlock::flush()
{
    const qint64 size = end_ == nullptr ? 0 : end_ - bytes_.data();
    end_ = limit_ = nullptr;
    // As the stream does, which writes no more after a failure.
    if (size > 0 && stream_.status() == QDataStream::Ok &&
        !writeWhole(*stream_.device(), bytes_.data(), size)) {
        stream_.setStatus(QDataStream::WriteFailed);
    }
}

} // namespace Ovra::Geo
