#pragma once

#include <QByteArray>

namespace Ovra::GeoTool
{

/// \brief Numbers as bytes, by the names that polygon files have for their types.
///
/// | Size | Types |
/// |---|---|
/// | 1 | char, int8, uchar, uint8 |
/// | 2 | short, int16, ushort, uint16 |
/// | 4 | int, int32, uint, uint32, float, float32 |
/// | 8 | double, float64 |
class BinaryNumber
{
public:
    /// \brief Bytes of a number of \p type; 0 for a type that is none.
    static int sizeOf(const QByteArray& type);

    /// \brief Whether \p type has numbers with a fraction.
    static bool isReal(const QByteArray& type);

    /// \param bytes as many as sizeOf() has
    static double of(const QByteArray& bytes, const QByteArray& type, bool isBigEndian);
};

} // namespace Ovra::GeoTool
