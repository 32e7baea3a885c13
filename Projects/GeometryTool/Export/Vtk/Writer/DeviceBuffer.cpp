#include "DeviceBuffer.h"

#include <QIODevice>

namespace Ovra::GeoTool
{

DeviceBuffer::int_type DeviceBuffer::overflow(int_type character)
{
    if (traits_type::eq_int_type(character, traits_type::eof())) {
        return traits_type::not_eof(character);
    }
    return device_.putChar(traits_type::to_char_type(character)) ? character : traits_type::eof();
}

std::streamsize DeviceBuffer::xsputn(const char* data, std::streamsize size)
{
    return std::max<std::streamsize>(0, device_.write(data, size));
}

DeviceBuffer::pos_type DeviceBuffer::seekoff(off_type offset, std::ios_base::seekdir direction,
                                             std::ios_base::openmode which)
{
    const qint64 from = direction == std::ios_base::beg   ? 0
                        : direction == std::ios_base::cur ? device_.pos()
                                                          : device_.size();
    return seekpos(from + offset, which);
}

DeviceBuffer::pos_type DeviceBuffer::seekpos(pos_type position, std::ios_base::openmode)
{
    const bool isThere = device_.pos() == position || device_.seek(position);
    return isThere ? position : pos_type(off_type(-1));
}

} // namespace Ovra::GeoTool
