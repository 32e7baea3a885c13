#pragma once

#include <QByteArray>

#include <string_view>

namespace Ovra::GeoTool
{

/// \brief The words and numbers of a Medit file, which line breaks part no more than spaces do.
///
/// Comments run from '#' to the end of the line; a text in quotes is one token.
class MeditTokens
{
public:
    /// \pre \p text outlives this and what it gives
    explicit MeditTokens(const QByteArray& text);

    /// \brief The next token; empty at the end.
    std::string_view next();

    /// \brief Line of the token that came last, counted from 1.
    int line() const { return tokenLine_; }

    /// \brief What stands between the last token and the next word.
    struct Ahead
    {
        qint64 numbers = 0;
        bool isLast = false; ///< no word follows, the file ends behind them
    };
    Ahead ahead() const;

    /// \brief Whether \p token is a word rather than a number or a text.
    static bool isWord(std::string_view token);

private:
    void skipBlanks();
    std::size_t endOfToken() const;

    std::string_view text_;
    std::size_t position_ = 0;
    int line_ = 1;
    int tokenLine_ = 1;
};

} // namespace Ovra::GeoTool
