#include "NastranCards.h"

#include "InputDamage.h"
#include "OpenInput.h"

namespace Ovra::GeoTool
{

namespace
{

constexpr qsizetype SmallWidth = 8;

QByteArray withoutTabs(const QByteArray& text)
{
    QByteArray result;
    for (const char c : text) {
        const qsizetype blanks = SmallWidth - result.size() % SmallWidth;
        result += c == '\t' ? QByteArray(blanks, ' ') : QByteArray(1, c);
    }
    return result;
}

bool isLarge(const QByteArray& name)
{
    return name.contains('*');
}

/// \brief Numbers of data fields in a line.
qsizetype fieldCount(bool isLarge)
{
    return isLarge ? 4 : 8;
}

bool continues(const QByteArray& name)
{
    return name.isEmpty() || name.startsWith('+') || name.startsWith('*');
}

/// \brief What identifies a continuation, without the sign of its form.
QByteArray withoutSign(const QByteArray& mark)
{
    return mark.startsWith('+') || mark.startsWith('*') ? mark.mid(1).trimmed() : mark;
}

} // namespace

NastranCards::NastranCards(const QString& path)
    : file_(path)
{
    openInput(file_);
}

std::optional<NastranCard> NastranCards::next()
{
    if (!isTaken_ && !take()) {
        return std::nullopt;
    }
    isTaken_ = false;
    NastranCard card{present_.name.replace('*', ""), present_.fields, number_};
    if (card.name == "ENDDATA") {
        isEnded_ = true;
        return std::nullopt;
    }
    for (QByteArray mark = present_.mark; take(); mark = present_.mark) {
        if (!present_.isContinuation) {
            isTaken_ = true;
            break;
        }
        requireOwnContinuation(card, mark);
        card.fields += present_.fields;
    }
    return card;
}

/// \brief Steps to the next line that holds something.
bool NastranCards::take()
{
    while (!file_.atEnd()) {
        QByteArray text = file_.readLine();
        isLineEnded_ = text.endsWith('\n');
        ++number_;
        text.truncate(text.contains('$') ? text.indexOf('$') : text.size());
        if (!text.trimmed().isEmpty()) {
            present_ = parted(withoutTabs(text));
            return true;
        }
    }
    return false;
}

NastranCards::Line NastranCards::parted(QByteArray text) const
{
    while (text.endsWith('\n') || text.endsWith('\r')) {
        text.chop(1);
    }
    Line line = text.contains(',') ? partedByCommas(text) : partedByColumns(text);
    line.isContinuation = continues(line.name);
    line.name = line.name.toUpper();
    return line;
}

NastranCards::Line NastranCards::partedByCommas(const QByteArray& text) const
{
    Line line;
    QList<QByteArray> words = text.split(',');
    line.name = words.takeFirst().trimmed();
    const qsizetype count = fieldCount(isLarge(line.name));
    for (qsizetype i = 0; i < count; ++i) {
        line.fields.append(words.value(i).trimmed());
    }
    line.mark = words.value(count).trimmed();
    return line;
}

NastranCards::Line NastranCards::partedByColumns(const QByteArray& text)
{
    Line line;
    line.name = text.left(SmallWidth).trimmed();
    const qsizetype count = fieldCount(isLarge(line.name));
    const qsizetype width = SmallWidth * 8 / count;
    for (qsizetype i = 0; i < count; ++i) {
        line.fields.append(text.mid(SmallWidth + i * width, width).trimmed());
    }
    line.mark = text.mid(SmallWidth + count * width, SmallWidth).trimmed();
    return line;
}

void NastranCards::requireOwnContinuation(const NastranCard& card, const QByteArray& mark) const
{
    const QByteArray wanted = withoutSign(mark);
    const QByteArray found = withoutSign(present_.name);
    if (!wanted.isEmpty() && !found.isEmpty() && wanted.toUpper() != found) {
        InputDamage::damaged(
            file_.fileName(),
            QStringLiteral("line %1: the continuation %2 does not belong to %3 of line %4; put the "
                           "lines in order")
                .arg(QString::number(number_), QString::fromUtf8(found),
                     QString::fromUtf8(card.name), QString::number(card.line)));
    }
}

} // namespace Ovra::GeoTool
