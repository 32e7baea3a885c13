#pragma once

#include "Version.h"

class QDataStream;

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
    int format = 0;
    Version version;

    /// \brief Reads the head and sets the stream to QDataStream version 12, that of everything
    ///        behind it.
    /// \param[out] header meaningful only if the stream did not break
    /// \param stream      stands at the head; if its status is not Ok, nothing is read
    /// \return whether the status of \p stream is Ok afterwards
    static bool read(StreamHeader& header, QDataStream& stream);
};

} // namespace Ovra::Geo
