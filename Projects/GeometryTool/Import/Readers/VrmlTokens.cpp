#include "VrmlTokens.h"

#include "OpenInput.h"

#include <QFile>

namespace Ovra::GeoTool
{

namespace
{

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == ',';
}

bool isBracket(char c)
{
    return c == '{' || c == '}' || c == '[' || c == ']';
}

} // namespace

VrmlTokens::VrmlTokens(const QString& path)
{
    QFile file(path);
    openInput(file);
    text_ = file.readAll();
}

QByteArray VrmlTokens::next()
{
    skipBlanks();
    const qsizetype begin = position_;
    position_ = endOfToken();
    return text_.mid(begin, position_ - begin);
}

void VrmlTokens::skipBlanks()
{
    bool inComment = false;
    for (; position_ < text_.size(); ++position_) {
        const char c = text_.at(position_);
        inComment = c != '\n' && (inComment || c == '#');
        if (!inComment && !isBlank(c)) {
            return;
        }
        line_ += c == '\n' ? 1 : 0;
    }
}

qsizetype VrmlTokens::endOfToken() const
{
    qsizetype end = position_;
    if (end == text_.size()) {
        return end;
    }
    if (text_.at(end) == '"') {
        for (++end; end < text_.size() && text_.at(end) != '"'; ++end) {
            end += text_.at(end) == '\\' ? 1 : 0;
        }
        return qMin(end + 1, text_.size());
    }
    if (isBracket(text_.at(end))) {
        return end + 1;
    }
    while (end < text_.size() && !isBlank(text_.at(end)) && !isBracket(text_.at(end)) &&
           text_.at(end) != '#') {
        ++end;
    }
    return end;
}

} // namespace Ovra::GeoTool
