#pragma once

namespace Ovra::GeoTool
{

/// \brief Sends standard output and standard error nowhere for as long as it lives.
///
/// Some libraries print to the streams of the process. If the streams cannot be turned away, they
/// stay as they are.
class QuietStreams
{
public:
    QuietStreams();
    ~QuietStreams();
    QuietStreams(const QuietStreams&) = delete;
    QuietStreams& operator=(const QuietStreams&) = delete;

private:
    int output_ = -1;
    int error_ = -1;
};

} // namespace Ovra::GeoTool
