#pragma once

#include "GeometryDatabaseExport.h"

#include <QMetaType>
#include <QString>
#include <QVarLengthArray>
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
/// - limits the nesting of lists, maps, pairs and variants to MaximumDepth, without recursion,
/// - prints nothing: a type that is not registered, that has no stream operators, or whose value Qt
///   would comment on is QDataStream::ReadCorruptData,
/// - takes no address of a function from the stream, see readEasingCurve().
///
/// Types that a host registers are read by the host's stream operator.
class OVRA_GEO_EXPORT VariantReader
{
public:
    /// \brief How deep values may be nested; a plain value has depth 1.
    ///
    /// Qt's own writing takes about 300 bytes of the stack for each level, so that a host with the
    /// usual stack of 8 MB writes little more than 27000 levels; destruction takes less than 100.
    /// So what is read can be written again.
    static constexpr int MaximumDepth = 20000;

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
    /// A value, and how many of the values in it are still to come.
    struct Container
    {
        QVariant value;
        quint32 missing = 0;
        QString key; ///< of the next one, in a map
    };

    /// Each in the one before.
    using Containers = QVarLengthArray<Container, 4>;

    void refuse();
    Container readHead();
    QMetaType typeOf(quint32 number);
    QMetaType readNamedType();
    void readInvalid();
    quint32 readContent(QMetaType type, void* content);
    void readPlain(QMetaType type, void* content);
    void readKey(Container& container);
    void putInto(Containers& open, QVariant& value);

    QDataStream& stream_;
};

} // namespace Ovra::Geo
