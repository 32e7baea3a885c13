#include "MeditTokens.h"

#include <algorithm>

namespace Ovra::GeoTool
{

namespace
{

constexpr std::string_view Blanks = " \t\r\n\f\v";
constexpr std::string_view BlanksOrComment = " \t\r\n\f\v#";

} // namespace

MeditTokens::MeditTokens(const QByteArray& text)
    : text_(text.constData(), static_cast<std::size_t>(text.size()))
{
}

std::string_view MeditTokens::next()
{
    skipBlanks();
    tokenLine_ = line_;
    const std::size_t end = endOfToken();
    const std::string_view token = text_.substr(position_, end - position_);
    line_ += static_cast<int>(std::count(token.begin(), token.end(), '\n'));
    position_ = end;
    return token;
}

MeditTokens::Ahead MeditTokens::ahead() const
{
    MeditTokens rest = *this;
    Ahead ahead;
    std::string_view token = rest.next();
    for (; !token.empty() && !isWord(token); token = rest.next()) {
        ++ahead.numbers;
    }
    ahead.isLast = token.empty();
    return ahead;
}

bool MeditTokens::isWord(std::string_view token)
{
    return !token.empty() &&
           ((token[0] >= 'A' && token[0] <= 'Z') || (token[0] >= 'a' && token[0] <= 'z'));
}

void MeditTokens::skipBlanks()
{
    while (position_ < text_.size()) {
        const char c = text_[position_];
        if (c == '#') {
            position_ = std::min(text_.find('\n', position_), text_.size());
        } else if (Blanks.find(c) != std::string_view::npos) {
            line_ += c == '\n' ? 1 : 0;
            ++position_;
        } else {
            return;
        }
    }
}

std::size_t MeditTokens::endOfToken() const
{
    const bool quoted = position_ < text_.size() && text_[position_] == '"';
    const std::size_t end =
        quoted ? text_.find('"', position_ + 1) : text_.find_first_of(BlanksOrComment, position_);
    return std::min(end, text_.size()) + (quoted && end < text_.size() ? 1 : 0);
}

} // namespace Ovra::GeoTool
