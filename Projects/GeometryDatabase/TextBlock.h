#pragma once

#include "GeometryDatabaseExport.h"

#include <QTextStream>

#include <array>
#include <charconv>

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
/// as ever. As the text is ASCII, it goes past the stream to a device that would get the same bytes.
///
/// The stream, or its device, has everything when the block goes, in the order in which it was put;
/// who writes to the stream beside a block calls flush() first. Settings are looked at when the
/// block is made. What an exception leaves in a block goes with it.
class OVRA_GEO_EXPORT TextBlock
{
public:
    /// \brief A block ahead of \p stream, which must outlive it.
    explicit TextBlock(QTextStream& stream);
    ~TextBlock() noexcept(false);

    TextBlock(const TextBlock&) = delete;
    TextBlock& operator=(const TextBlock&) = delete;
    /// \brief Puts a character.
    TextBlock& operator<<(char c)
    {
        if (!isPlain_) {
            stream_ << c;
            return *this;
        }
        makeRoom();
        *end_++ = c;
        return *this;
    }
    /// \brief Puts an integer.
    TextBlock& operator<<(int value)
    {
        if (!isPlain_) {
            stream_ << value;
            return *this;
        }
        return putNumber(value);
    }

    TextBlock& operator<<(double value); ///< puts a real, of the precision of the stream

    /// \brief Hands over what has been gathered.
    void flush();

private:
    static constexpr int Size =
        32768; // above what a file gathers by itself, which it then does not
    static constexpr int LongestField = 32; // 17 digits with sign, point, zeros and exponent are 25

    TextBlock& putText(const QByteArray& text);

    template <typename... Format>
    TextBlock& putNumber(Format... format)
    {
        makeRoom();
        end_ = std::to_chars(end_, text_.data() + Size, format...).ptr;
        return *this;
    }

    void makeRoom()
    {
        if (text_.data() + Size - end_ < LongestField) {
            flush();
        }
    }

    QTextStream& stream_;
    bool isPlain_;
    bool isDirect_;
    bool streamHasText_ = false;
    int exceptions_;
    int precision_;
    std::array<char, Size> text_;
    char* end_;
};

} // namespace Ovra::Geo
