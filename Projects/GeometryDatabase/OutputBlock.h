#pragma once

#include "BlockBytes.h"
#include "GeometryDatabaseExport.h"

#include <QDataStream>

#include <vector>

/// \file
/// \brief How the numbers of a mesh's many short records reach their stream. Not for hosts.

namespace Ovra::Geo
{

/// \brief Gathers numbers and hands them to a stream in blocks, which then holds the same bytes as
///        if it had taken them one by one.
///
/// A QDataStream hands each number to its device by itself, which takes most of the time of writing
/// a mesh. Where the form of numbers is not the one that a stream is made with, the stream does it.
/// The stream has everything after stream(), and when the block goes, unless an exception does away
/// with it.
class OVRA_GEO_EXPORT OutputBlock
{
public:
    /// \brief A block ahead of \p stream, which must outlive it.
    explicit OutputBlock(QDataStream& stream);
    ~OutputBlock() noexcept(false);

    OutputBlock(const OutputBlock&) = delete;
    OutputBlock& operator=(const OutputBlock&) = delete;

    /// \brief The stream, which has all that was put.
    QDataStream& stream();

    /// \brief Puts a number in the form that the stream operators of Qt give it.
    template <typename Number>
    OutputBlock& operator<<(Number number)
    {
        if (limit_ - end_ < static_cast<std::ptrdiff_t>(sizeof(Number)) && !makeRoom()) {
            stream_ << number;
            return *this;
        }
        toBigEndian(number, end_);
        end_ += sizeof(Number);
        return *this;
    }

private:
    static constexpr int Size = 65536;

    bool makeRoom();
    void flush();

    QDataStream& stream_;
    const int exceptions_;
    std::vector<char> bytes_;
    char* end_ = nullptr; // of what was put; null, as is the next, while the stream takes its turn
    char* limit_ = nullptr;
};

} // namespace Ovra::Geo
