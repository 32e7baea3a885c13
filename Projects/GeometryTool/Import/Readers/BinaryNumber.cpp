#include "BinaryNumber.h"

#include <QHash>
#include <QtEndian>

namespace Ovra::GeoTool
{

namespace
{

template <typename Number>
double numberAt(const QByteArray& bytes, bool isBigEndian)
{
    return static_cast<double>(isBigEndian ? qFromBigEndian<Number>(bytes.constData())
                                           : qFromLittleEndian<Number>(bytes.constData()));
}

double integerOf(const QByteArray& bytes, bool isSigned, bool isBigEndian)
{
    switch (bytes.size()) {
    case 1:
        return isSigned ? numberAt<qint8>(bytes, isBigEndian)
                        : numberAt<quint8>(bytes, isBigEndian);
    case 2:
        return isSigned ? numberAt<qint16>(bytes, isBigEndian)
                        : numberAt<quint16>(bytes, isBigEndian);
    default:
        return isSigned ? numberAt<qint32>(bytes, isBigEndian)
                        : numberAt<quint32>(bytes, isBigEndian);
    }
}

double realOf(const QByteArray& bytes, bool isBigEndian)
{
    return bytes.size() == 4 ? numberAt<float>(bytes, isBigEndian)
                             : numberAt<double>(bytes, isBigEndian);
}

} // namespace

int BinaryNumber::sizeOf(const QByteArray& type)
{
    static const QHash<QByteArray, int> sizes{
        {"char", 1},   {"int8", 1},    {"uchar", 1},  {"uint8", 1},  {"short", 2}, {"int16", 2},
        {"ushort", 2}, {"uint16", 2},  {"int", 4},    {"int32", 4},  {"uint", 4},  {"uint32", 4},
        {"float", 4},  {"float32", 4}, {"double", 8}, {"float64", 8}};
    return sizes.value(type, 0);
}

bool BinaryNumber::isReal(const QByteArray& type)
{
    return type.startsWith("float") || type.startsWith("double");
}

double BinaryNumber::of(const QByteArray& bytes, const QByteArray& type, bool isBigEndian)
{
    return isReal(type) ? realOf(bytes, isBigEndian)
                        : integerOf(bytes, !type.startsWith('u'), isBigEndian);
}

} // namespace Ovra::GeoTool
