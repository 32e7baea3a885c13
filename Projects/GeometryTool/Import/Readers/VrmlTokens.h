#pragma once

#include <QByteArray>
#include <QString>

namespace Ovra::GeoTool
{

/// \brief The words, numbers and brackets of a VRML file.
///
/// Commas count as blanks; comments run from '#' to the end of the line; a text in quotes is one
/// token, with its quotes. \c { \c } \c [ \c ] are tokens by themselves.
class VrmlTokens
{
public:
    /// \brief Throws ToolError InputMissing if the file at \p path cannot be read.
    explicit VrmlTokens(const QString& path);

    /// \brief The first line, without what ends it.
    QByteArray header() const { return text_.left(text_.indexOf('\n')).trimmed(); }

    /// \brief The next token; empty at the end.
    QByteArray next();

    /// \brief Line of the token that came last, counted from 1.
    int line() const { return line_; }

private:
    void skipBlanks();
    qsizetype endOfToken() const;

    QByteArray text_;
    qsizetype position_ = 0;
    int line_ = 1;
};

} // namespace Ovra::GeoTool
