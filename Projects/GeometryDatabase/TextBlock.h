#pragma once

#include "GeometryDatabaseExport.h"

#include <QTextStream>

#include <array>

/// \file
/// \brief How the long sections of the solver input reach their stream. Not for hosts.

namespace Ovra::Geo
{

/// \brief Gathers the text of many short fields and hands it to a stream in blocks.
///
/// A QTextStream looks at all of its settings for each field that it takes, and converts each
/// number through a string of its own: of a section of a million lines that is most of the time.
/// Where the settings are those that a stream is made with, apart from the precision, the fields
/// are formatted here, by std::to_chars, to the same text; where they are not, the stream does it
/// as ever.
///
/// The stream has everything when the block goes, in the order in which it was put; who writes to
/// the stream beside a block calls flush() first. Settings are looked at when the block is made.
class OVRA_GEO_EXPORT TextBlock
{
public:
    /// \brief A block ahead of \p stream, which must outlive it.
    explicit TextBlock(QTextStream& stream);
    ~TextBlock();

    TextBlock(const TextBlock&) = delete;
    TextBlock& operator=(const TextBlock&) = delete;

    TextBlock& operator<<(char c);
    TextBlock& operator<<(int value);
    TextBlock& operator<<(double value);

    /// \brief Hands over what has been gathered.
    void flush();

private:
    static constexpr int Size = 16384;
    static constexpr int LongestField = 32; // 17 digits with sign, point, zeros and exponent are 25

    template <typename... Format>
    TextBlock& putNumber(Format... format);

    void makeRoom();

    QTextStream& stream_;
    bool isPlain_;
    int precision_;
    std::array<char, Size> text_;
    char* end_;
};

} // namespace Ovra::Geo
