#include "Closeness.h"

#include "Box.h"
#include "Matrix.h"
#include "StreamHeader.h"

#include <QDataStream>
#include <QIODevice>

#include <cmath>
#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// Values that are yet to be compared.
using Open = std::vector<std::pair<QVariant, QVariant>>;

template <typename Value>
bool isOf(const QVariant& value)
{
    return value.metaType() == QMetaType::fromType<Value>();
}

bool addItems(const QVariantList& a, const QVariantList& b, Open& open)
{
    for (qsizetype i = 0; i < a.size() && a.size() == b.size(); ++i) {
        open.emplace_back(a[i], b[i]);
    }
    return a.size() == b.size();
}

template <typename Map>
bool addEntries(const Map& a, const Map& b, Open& open)
{
    for (auto each = a.begin(); each != a.end(); ++each) {
        const auto other = b.find(each.key());
        if (other == b.end()) {
            return false;
        }
        open.emplace_back(each.value(), other.value());
    }
    return a.size() == b.size();
}

/// \return false if the containers differ, whatever they hold
bool addWhatIsWithin(const QVariant& a, const QVariant& b, Open& open)
{
    if (isOf<QVariantList>(a)) {
        return addItems(a.toList(), b.toList(), open);
    }
    return isOf<QVariantMap>(a) ? addEntries(a.toMap(), b.toMap(), open)
                                : addEntries(a.toHash(), b.toHash(), open);
}

bool isContainer(const QVariant& value)
{
    return isOf<QVariantList>(value) || isOf<QVariantMap>(value) || isOf<QVariantHash>(value);
}

bool areAlike(const QVariant& a, const QVariant& b)
{
    return a.metaType() == b.metaType() && a.isNull() == b.isNull();
}

/// Of the types that most attributes have, in no time.
bool isPlain(const QVariant& value)
{
    return isOf<int>(value) || isOf<bool>(value) || isOf<QString>(value);
}

} // namespace

bool Closeness::areClose(double a, double b) const
{
    return a == b || std::abs(a - b) <= tolerance_ || (std::isnan(a) && std::isnan(b));
}

bool Closeness::areClose(const Vector& a, const Vector& b) const
{
    return areClose(a.x(), b.x()) && areClose(a.y(), b.y()) && areClose(a.z(), b.z());
}

// Without recursion: values may be nested as deep as the reader of files allows.
bool Closeness::areClose(const QVariant& a, const QVariant& b) const
{
    Open open{{a, b}};
    while (!open.empty()) {
        const auto [oneA, oneB] = std::move(open.back());
        open.pop_back();
        const bool close =
            areAlike(oneA, oneB) &&
            (isContainer(oneA) ? addWhatIsWithin(oneA, oneB, open) : areScalarsClose(oneA, oneB));
        if (!close) {
            return false;
        }
    }
    return true;
}

/// \pre both are of the same type, and none is a container
bool Closeness::areScalarsClose(const QVariant& a, const QVariant& b) const
{
    if (isPlain(a)) {
        return a == b;
    }
    if (isOf<double>(a) || isOf<float>(a)) {
        return areClose(a.toDouble(), b.toDouble());
    }
    if (isOf<Vector>(a)) {
        return areClose(a.value<Vector>(), b.value<Vector>());
    }
    if (isOf<Box>(a)) {
        return areClose(a.value<Box>().minimum(), b.value<Box>().minimum()) &&
               areClose(a.value<Box>().maximum(), b.value<Box>().maximum());
    }
    if (isOf<Matrix>(a)) {
        bool close = true;
        for (int i = 0; i < 9; ++i) {
            close &= areClose(a.value<Matrix>()(i / 3, i % 3), b.value<Matrix>()(i / 3, i % 3));
        }
        return close;
    }
    return bytesOf(a) == bytesOf(b);
}

QByteArray bytesOf(const QVariant& value)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(StreamHeader::StreamVersion);
    stream << value;
    return bytes;
}

} // namespace Ovra::GeoTool
