#pragma once

namespace Ovra::GeoPython
{

/// \brief While it lives, what the library logs in this thread for its host to read is dropped.
///
/// Warnings and what other threads log go where they went before.
class QuietLibrary
{
public:
    QuietLibrary();
    ~QuietLibrary();
    QuietLibrary(const QuietLibrary&) = delete;
    QuietLibrary& operator=(const QuietLibrary&) = delete;
};

} // namespace Ovra::GeoPython
