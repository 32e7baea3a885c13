#include "OutputBlock.h"

namespace Ovra::Geo
{

namespace
{

bool isDirect(const QDataStream& stream)
{
    return stream.byteOrder() == QDataStream::BigEndian &&
           stream.version() >= QDataStream::Qt_4_6 &&
           stream.floatingPointPrecision() == QDataStream::DoublePrecision;
}

} // namespace

OutputBlock::OutputBlock(QDataStream& stream)
    : stream_(stream)
    , isDirect_(isDirect(stream))
    , bytes_(Size)
    , end_(bytes_.data())
{
}

OutputBlock::~OutputBlock()
{
    flush();
}

QDataStream& OutputBlock::stream()
{
    flush();
    return stream_;
}

void OutputBlock::flush()
{
    if (end_ != bytes_.data()) {
        stream_.writeRawData(bytes_.data(), static_cast<int>(end_ - bytes_.data()));
        end_ = bytes_.data();
    }
}

} // namespace Ovra::Geo
