#include "TextBlock.h"

#include "BlockBytes.h"

#include <QLocale>
#include <QtAlgorithms>

#include <algorithm>
#include <cmath>
#include <exception>

namespace Ovra::Geo
{

namespace
{

// More digits than this change nothing in a double; Qt pads them in a way of its own.
constexpr int MostDigits = 17;

bool isPlain(const QTextStream& stream)
{
    return stream.fieldWidth() == 0 && (stream.integerBase() == 0 || stream.integerBase() == 10) &&
           stream.numberFlags() == QTextStream::NumberFlags() &&
           stream.realNumberNotation() == QTextStream::SmartNotation &&
           stream.realNumberPrecision() > 0 && stream.realNumberPrecision() <= MostDigits &&
           stream.locale() == QLocale::c();
}

bool isDirect(const QTextStream& stream)
{
    return stream.device() != nullptr && !stream.device()->isTextModeEnabled() &&
           stream.encoding() == QStringConverter::Utf8 && !stream.generateByteOrderMark();
}

// Whether a double may have just so many digits: few powers of two behind the point, or a whole
// number of that size.
bool mayHaveDigits(double value, int digits)
{
    int exponent = 0;
    const auto mantissa = static_cast<qint64>(std::ldexp(std::frexp(value, &exponent), 53));
    exponent += static_cast<int>(qCountTrailingZeroBits(static_cast<quint64>(mantissa))) - 53;
    // Behind the point stand as many digits as powers of two, of the size of that power of five.
    constexpr double digitsOfFive = 0.69;
    return exponent < 0 ? -exponent * digitsOfFive <= digits
                        : std::fabs(value) >= std::pow(10.0, digits - 1);
}

/// \brief Whether \p value lies in the middle between two decimals of that many digits: the stream
///        rounds such ties away from zero and std::to_chars to the even one.
bool isTie(double value, int digits)
{
    if (!mayHaveDigits(value, digits + 1)) {
        return false;
    }
    constexpr int moreThanItHas = 60;
    std::array<char, 100> text{};
    char* const begin =
        text.data() + (value < 0 ? 1 : 0); // of the digits, with a point behind the first
    const char* const end = std::to_chars(text.data(), text.data() + text.size(), value,
                                          std::chars_format::scientific, moreThanItHas)
                                .ptr;
    const char* const behind = begin + 1 + digits;
    return *behind == '5' && std::all_of(behind + 1, std::find(behind, end, 'e'),
                                         [](char digit) { return digit == '0'; });
}

} // namespace

TextBlock::TextBlock(QTextStream& stream)
    : stream_(stream)
    , isPlain_(isPlain(stream))
    , isDirect_(isDirect(stream))
    , exceptions_(std::uncaught_exceptions())
    , precision_(stream.realNumberPrecision())
    , end_(text_.data())
{
}

TextBlock::~TextBlock() noexcept(false)
{
    if (std::uncaught_exceptions() == exceptions_) {
        flush();
    }
}

TextBlock& TextBlock::operator<<(double value)
{
    if (!isPlain_) {
        stream_ << value;
        return *this;
    }
    if (!std::isfinite(value) || isTie(value, precision_)) {
        return putText(QByteArray::number(value, 'g', precision_)); // as the stream has it
    }
    const double unsignedZero = value == 0.0 ? 0.0 : value; // the stream shows no sign on it
    return putNumber(unsignedZero, std::chars_format::general, precision_);
}

TextBlock& TextBlock::putText(const QByteArray& text)
{
    makeRoom();
    end_ = std::copy(text.begin(), text.end(), end_);
    return *this;
}

void TextBlock::flush()
{
    if (end_ == text_.data()) {
        return; // an empty string is a field too, and a stream with a field width pads it
    }
    QLatin1String text(text_.data(), static_cast<qsizetype>(end_ - text_.data()));
    end_ = text_.data();
    // A stream that is not as it should be keeps text for later.
    if (!isDirect_ || stream_.status() != QTextStream::Ok) {
        stream_ << text;
        return;
    }
    if (!streamHasText_) { // it is to know that it has been written to
        stream_ << text.first(1);
        text = text.sliced(1);
        streamHasText_ = true;
    }
    stream_.flush();
    if (stream_.status() == QTextStream::Ok &&
        !writeWhole(*stream_.device(), text.data(), text.size())) {
        stream_.setStatus(QTextStream::WriteFailed);
    }
}

} // namespace Ovra::Geo
