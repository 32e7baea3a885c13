#pragma once

#include "DeviceBuffer.h"

#include <locale>
#include <ostream>
#include <vtkObjectFactory.h>

namespace Ovra::GeoTool
{

/// \brief A writer of VTK's XML formats that writes to a device of Qt's in place of a file of its
/// own, so that the device tells of what fails.
template <typename Writer>
class StreamedWriter : public Writer
{
public:
    static StreamedWriter* New() { VTK_STANDARD_NEW_BODY(StreamedWriter); }

    /// \brief Writes the input.
    /// \param device open for writing, and one that can be gone back in
    /// \return false if it did not succeed
    bool writeTo(QIODevice& device)
    {
        DeviceBuffer buffer(device);
        std::ostream stream(&buffer);
        stream_ = &stream;
        this->SetFileName("/dev/null"); // opened, and not written to
        const bool isWritten = this->Write() == 1 && stream.flush().good();
        stream_ = nullptr;
        return isWritten;
    }

protected:
    int StartFile() override
    {
        stream_->imbue(std::locale::classic());
        this->Stream = stream_;
        return Writer::StartFile();
    }

private:
    std::ostream* stream_ = nullptr;
};

} // namespace Ovra::GeoTool
