#pragma once

#include "Version.h"

#include <QDataStream>

namespace Ovra::Geo
{

/// \brief The head of model and mesh streams.
///
/// | item    | form                                 |
/// |---------|--------------------------------------|
/// | format  | signed 32-bit integer                |
/// | version | Version: 3 signed 32-bit integers    |
///
/// Old streams start with the version, whose major number lies between 10 and 14; they are of
/// format 1, and no format has a number in that range.
struct StreamHeader
{
    /// \brief The version of the QDataStream that holds all that stands behind the head: 12.
    static constexpr int StreamVersion = QDataStream::Qt_4_6;

    int format = 0;  ///< number of the format
    Version version; ///< of the host that wrote the stream

    /// \brief Reads the head and sets the stream to StreamVersion.
    /// \param[out] header meaningful only if the stream did not break
    /// \param stream      stands at the head; if its status is not Ok, nothing is read
    /// \return whether the status of \p stream is Ok afterwards
    static bool read(StreamHeader& header, QDataStream& stream);

    /// \brief Writes the head; the version of the stream stays.
    static void write(const StreamHeader& header, QDataStream& stream);
};

} // namespace Ovra::Geo
