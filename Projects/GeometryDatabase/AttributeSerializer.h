#pragma once

#include "GeometryDatabaseExport.h"

#include <QString>

class QDataStream;
class QTextStream;

namespace Ovra::Geo
{

class AttributeMap;
class InputBlock;

/// \brief The stream forms of an AttributeMap, which all model and mesh formats share.
///
/// Binary attribute record, at the stream's version and byte order:
///
/// | item                | form                                                        |
/// |---------------------|-------------------------------------------------------------|
/// | count               | signed 32-bit integer                                       |
/// | count times: tag    | QByteArray: 32-bit length, then the tag in Latin-1          |
/// | count times: value  | QVariant by Qt's own operator                               |
///
/// Attributes stand in the order of AttributeMap::types(). The text block is for people and has no
/// reader.
class OVRA_GEO_EXPORT AttributeSerializer
{
public:
    /// \brief Replaces the content of \p attributes by what the record at \p stream holds.
    ///
    /// Tags may be aliases; the values of unknown tags go under the invalid type, so that the last
    /// one stays. A count of 0 or less means none.
    ///
    /// \p attributes is cleared in any case. Reads only while the status of \p stream is Ok: when
    /// the record breaks off, \p attributes holds what came before. Values are read by
    /// VariantReader.
    static void read(AttributeMap& attributes, QDataStream& stream);

    /// \brief Reads a record from the stream behind \p block.
    static void read(AttributeMap& attributes, InputBlock& block);

    /// \brief Writes the binary record.
    static void write(const AttributeMap& attributes, QDataStream& stream);

    /// \brief Writes the text block: a marker line, one entry for each attribute, a marker line.
    ///
    /// An entry is a line with tag, type name and value; for a QVariantList, a line with tag and
    /// type name, then one line for each item.
    static void write(const AttributeMap& attributes, QTextStream& stream);

    /// \brief Reads a tag as the binary record has it: up to the first NUL.
    static QString readTag(QDataStream& stream);

    /// \brief Writes a tag as the binary record has it.
    static void writeTag(const QString& tag, QDataStream& stream);
};

} // namespace Ovra::Geo
