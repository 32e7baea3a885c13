#pragma once

#include "BlockBytes.h"
#include "GeometryDatabaseExport.h"

#include <QDataStream>

#include <vector>

/// \file
/// \brief How the numbers of a mesh's many short records come from their stream. Not for hosts.

namespace Ovra::Geo
{

/// \brief Reads numbers from a stream, in blocks where that cannot be told from reading one by one.
///
/// A QDataStream asks its device for each number by itself, which for a mesh of a million elements
/// takes as long as making the elements. Here they are taken from what the device shows of its
/// next bytes, and the device then steps over those that were taken. That needs a device that can
/// show bytes without waiting for them, and a stream whose numbers have the form that it is made
/// with; from all others numbers are read one by one.
///
/// The stream stands behind the last number that was read after stream(), and when the block goes;
/// not if an exception does away with the block.
class OVRA_GEO_EXPORT InputBlock
{
public:
    /// \brief A block ahead of \p stream, which must outlive it.
    explicit InputBlock(QDataStream& stream);
    ~InputBlock() noexcept(false);

    InputBlock(const InputBlock&) = delete;
    InputBlock& operator=(const InputBlock&) = delete;

    /// \brief The stream, behind the last number that was read.
    QDataStream& stream();

    /// \brief The status of the stream.
    QDataStream::Status status() const { return stream_.status(); }

    /// \brief Sets the status of the stream, as that does: a failure before stays.
    void setStatus(QDataStream::Status status) { stream_.setStatus(status); }

    /// \brief Reads a number of the form that the stream operators of Qt give it.
    /// \return 0 if the stream ends ahead of it, which then has the status for that
    template <typename Number>
    Number read()
    {
        constexpr auto size = static_cast<std::ptrdiff_t>(sizeof(Number));
        if (end_ - next_ < size && !look(size)) {
            Number number{};
            stream() >> number;
            return number;
        }
        const auto number = fromBigEndian<Number>(next_);
        next_ += size;
        return number;
    }

private:
    static constexpr qsizetype Least = 256; // a record or two between values of other kinds
    static constexpr qsizetype Most = 65536;

    bool look(std::ptrdiff_t bytes);
    void stepOver();

    QDataStream& stream_;
    const int exceptions_;
    std::vector<char> bytes_;
    const char* taken_ = nullptr; // where the device stands
    const char* next_ = nullptr;
    const char* end_ = nullptr;
};

} // namespace Ovra::Geo
