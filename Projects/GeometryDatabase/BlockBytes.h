#pragma once

#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

#include <cstring>

/// \file
/// \brief What InputBlock, OutputBlock and TextBlock share. Not for hosts.

namespace Ovra::Geo
{

/// \brief Whether numbers of \p stream have the form that a stream is made with, which is that of
///        fromBigEndian() and toBigEndian().
inline bool hasPlainNumbers(const QDataStream& stream)
{
    return stream.byteOrder() == QDataStream::BigEndian &&
           stream.version() >= QDataStream::Qt_4_6 &&
           stream.floatingPointPrecision() == QDataStream::DoublePrecision;
}

/// \brief The bits of a number. A byte-swapped double is no double: a processor that has it in its
///        hands as one may change it.
template <typename Number>
using Bits = typename QIntegerForSize<sizeof(Number)>::Unsigned;

/// \brief The number at \p bytes, the most significant byte first.
template <typename Number>
Number fromBigEndian(const char* bytes)
{
    const auto bits = qFromBigEndian<Bits<Number>>(bytes);
    Number number{};
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

/// \brief Puts \p number at \p bytes, the most significant byte first.
template <typename Number>
void toBigEndian(Number number, char* bytes)
{
    Bits<Number> bits{};
    std::memcpy(&bits, &number, sizeof bits);
    qToBigEndian(bits, bytes);
}

/// \brief Writes all \p size bytes, also to a device that takes a part of them at a time, as that may
///        be small enough for numbers one by one.
/// \return whether the device took all
inline bool writeWhole(QIODevice& device, const char* bytes, qint64 size)
{
    while (size > 0) {
        const qint64 taken = device.write(bytes, size);
        if (taken <= 0) {
            return false;
        }
        bytes += taken;
        size -= taken;
    }
    return true;
}

} // namespace Ovra::Geo
