#pragma once

#include "GeometryDatabaseExport.h"

#include <QDataStream>
#include <QtEndian>

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
/// The stream has everything after stream(), and when the block goes.
class OVRA_GEO_EXPORT OutputBlock
{
public:
    /// \brief A block ahead of \p stream, which must outlive it.
    explicit OutputBlock(QDataStream& stream);
    ~OutputBlock();

    OutputBlock(const OutputBlock&) = delete;
    OutputBlock& operator=(const OutputBlock&) = delete;

    /// \brief The stream, which has all that was put.
    QDataStream& stream();

    /// \brief Puts a number in the form that the stream operators of Qt give it.
    template <typename Number>
    OutputBlock& operator<<(Number number)
    {
        if (!isDirect_) {
            stream_ << number;
            return *this;
        }
        if (bytes_.data() + Size - end_ < static_cast<std::ptrdiff_t>(sizeof(Number))) {
            flush();
        }
        qToBigEndian(number, end_);
        end_ += sizeof(Number);
        return *this;
    }

private:
    static constexpr int Size = 65536;

    void flush();

    QDataStream& stream_;
    const bool isDirect_;
    std::vector<char> bytes_;
    char* end_;
};

} // namespace Ovra::Geo
