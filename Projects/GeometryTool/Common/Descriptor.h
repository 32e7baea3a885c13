#pragma once

#include <unistd.h>
#include <utility>

namespace Ovra::GeoTool
{

/// \brief Owns an open file descriptor of the system's, or none.
class Descriptor
{
public:
    /// \param number what open() and its like have answered; negative for none
    explicit Descriptor(int number = -1)
        : number_(number)
    {
    }
    ~Descriptor()
    {
        if (isOpen()) {
            close(number_);
        }
    }
    Descriptor(Descriptor&& other) noexcept
        : number_(other.release())
    {
    }
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(number_, other.number_);
        return *this;
    }

    bool isOpen() const { return number_ >= 0; }
    int number() const { return number_; }

    /// \brief Leaves the descriptor to the caller.
    int release() { return std::exchange(number_, -1); }

private:
    int number_;
};

} // namespace Ovra::GeoTool
