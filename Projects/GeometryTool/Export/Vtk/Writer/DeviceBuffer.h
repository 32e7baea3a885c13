#pragma once

#include <streambuf>

class QIODevice;

namespace Ovra::GeoTool
{

/// \brief Lets a standard stream write to a device of Qt's, and go back in it.
class DeviceBuffer : public std::streambuf
{
public:
    /// \param device open for writing; must outlive this
    explicit DeviceBuffer(QIODevice& device)
        : device_(device)
    {
    }

protected:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(const char* data, std::streamsize size) override;
    pos_type seekoff(off_type offset, std::ios_base::seekdir direction,
                     std::ios_base::openmode which) override;
    pos_type seekpos(pos_type position, std::ios_base::openmode which) override;

private:
    QIODevice& device_;
};

} // namespace Ovra::GeoTool
