#include "StreamHeader.h"

#include "StreamReading.h"

namespace Ovra::Geo
{

namespace
{

constexpr qint32 OldestMajor = 10;
constexpr qint32 NewestMajor = 14;
constexpr int OldFormat = 1;

} // namespace

bool StreamHeader::read(StreamHeader& header, QDataStream& stream)
{
    if (!isOk(stream)) {
        return false;
    }
    const auto first = readValue<qint32>(stream);
    const bool old = first >= OldestMajor && first <= NewestMajor;
    const auto major = old ? first : readValue<qint32>(stream);
    const auto minor = readValue<qint32>(stream);
    const auto build = readValue<qint32>(stream);
    stream.setVersion(StreamVersion);
    header = {old ? OldFormat : first, Version(major, minor, build)};
    return isOk(stream);
}

void StreamHeader::write(const StreamHeader& header, QDataStream& stream)
{
    stream << static_cast<qint32>(header.format) << header.version;
}

} // namespace Ovra::Geo
