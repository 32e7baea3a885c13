#include "FiniteBuffer.h"

#include <stdexcept>

namespace Ovra::GeoTool
{

FiniteBuffer::FiniteBuffer(const QByteArray& bytes)
    : bytes_(bytes)
{
    char* const first = bytes_.data();
    setg(first, first, first + bytes_.size());
}

FiniteBuffer::int_type FiniteBuffer::underflow()
{
    overrun_ = true;
    throw std::runtime_error("read on behind the end");
}

FiniteBuffer::pos_type FiniteBuffer::seekoff(off_type offset, std::ios::seekdir from,
                                             std::ios::openmode which)
{
    const off_type start = from == std::ios::beg   ? 0
                           : from == std::ios::cur ? gptr() - eback()
                                                   : egptr() - eback();
    return seekpos(start + offset, which);
}

FiniteBuffer::pos_type FiniteBuffer::seekpos(pos_type position, std::ios::openmode /*which*/)
{
    const off_type offset = position;
    if (offset < 0 || offset > egptr() - eback()) {
        return pos_type(off_type(-1));
    }
    setg(eback(), eback() + offset, egptr());
    return position;
}

} // namespace Ovra::GeoTool
