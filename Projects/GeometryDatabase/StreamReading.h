#pragma once

#include "InputBlock.h"

#include <QDataStream>
#include <QFile>
#include <QIODevice>
#include <QString>

/// \file
/// \brief Reading from streams that may be damaged. Not for hosts.

namespace Ovra::Geo
{

/// \brief Whether everything that was read from \p stream, a QDataStream or an InputBlock, so far
///        was there and made sense.
template <typename Stream>
bool isOk(const Stream& stream)
{
    return stream.status() == QDataStream::Ok;
}

/// \brief Reads a value by its stream operator.
/// \return what that operator leaves when the stream breaks, numbers being 0
template <typename Value>
Value readValue(QDataStream& stream)
{
    Value value{};
    stream >> value;
    return value;
}

/// \brief Reads a number, as from the stream behind \p block.
template <typename Value>
Value readValue(InputBlock& block)
{
    return block.read<Value>();
}

/// \brief Reads the signed 32-bit count that heads records.
///
/// The count is what the stream claims: who loops over it tests the stream in every round, and
/// makes no room ahead.
/// \return 0 for a negative count, and if the stream has failed, before or here
template <typename Stream>
qint32 readCount(Stream& stream)
{
    const qint32 count = isOk(stream) ? readValue<qint32>(stream) : 0;
    return isOk(stream) && count > 0 ? count : 0;
}

/// \brief Calls read(stream) for a stream on the file of that name; one that does not open is
///        passed over without a word.
/// \param fileName,read the name is NUL-terminated
template <typename Read>
void readFile(const wchar_t* fileName, Read read)
{
    QFile file(QString::fromWCharArray(fileName));
    // Qt warns of an empty name.
    if (!file.fileName().isEmpty() && file.open(QIODevice::ReadOnly)) {
        QDataStream stream(&file);
        read(stream);
    }
}

} // namespace Ovra::Geo
