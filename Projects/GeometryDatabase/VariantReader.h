#pragma once

#include "GeometryDatabaseExport.h"

#include <QList>
#include <QMetaType>
#include <QVariant>

class QDataStream;

namespace Ovra::Geo
{

/// \brief Reads QVariant values from a stream that may be damaged.
///
/// For what `operator<<(QDataStream&, const QVariant&)` has written, at any version of the stream,
/// the result equals that of Qt's own operator: value, type and null flag. Beyond that operator,
/// the reader
///
/// - lets lists and maps grow with what has been read, whatever count the stream announces,
/// - limits the nesting of lists, maps, pairs and variants to MaximumDepth,
/// - prints nothing: a type that is not registered, that has no stream operators, or whose value Qt
///   would comment on is QDataStream::ReadCorruptData.
///
/// Refused altogether is QEasingCurve, whose stream form carries the address of a function. Types
/// that a host registers are read by the host's stream operator.
class OVRA_GEO_EXPORT VariantReader
{
public:
    /// \brief How deep values may be nested; a plain value has depth 1.
    static constexpr int MaximumDepth = 64;

    /// \brief A reader on \p stream, which must outlive it; version and byte order are the
    /// stream's.
    explicit VariantReader(QDataStream& stream)
        : stream_(stream)
    {
    }

    /// \brief Reads one value.
    /// \param value left invalid when the stream breaks, which its status tells, and also if the
    ///              stream was not Ok before, in which case nothing is read
    /// \return whether the stream is still Ok
    bool read(QVariant& value);

private:
    void refuse();
    void readTypeAndContent(QVariant& value);
    QMetaType typeOf(quint32 number);
    QMetaType readNamedType();
    void readInvalid();
    void readContent(QMetaType type, void* content);
    void readPair(QVariantPair& pair);
    template <typename Item>
    void readList(QList<Item>& items);
    void readItem(QVariant& item);
    template <typename Item>
    void readItem(Item& item);
    template <typename Map>
    void readMap(Map& map);
    void readPlain(QMetaType type, void* content);
    bool isReadSilently(QMetaType type) const;
    bool hasKnownTimeSpec() const;

    QDataStream& stream_;
    int depth_ = 0;
};

} // namespace Ovra::Geo
