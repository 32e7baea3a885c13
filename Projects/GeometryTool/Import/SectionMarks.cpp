#include "SectionMarks.h"

#include <QFile>

namespace Ovra::GeoTool
{

namespace
{

constexpr qint64 BlockSize = 1 << 18;
constexpr qsizetype LongestMark = 200;

bool isBlank(char byte)
{
    return byte == ' ' || (byte >= '\t' && byte <= '\r' && byte != '\n');
}

} // namespace

SectionMarks::SectionMarks(QFile& file)
    : file_(file)
{
}

QByteArray SectionMarks::next()
{
    do {
        qsizetype mark = block_.indexOf('$', position_);
        while (mark >= 0 && !beginsLine(mark)) {
            mark = block_.indexOf('$', mark + 1);
        }
        if (mark >= 0) {
            const qsizetype end = block_.indexOf('\n', mark);
            position_ = end < 0 ? block_.size() : end + 1;
            return block_.mid(mark, qMin(position_ - mark, LongestMark)).trimmed();
        }
    } while (readBlock());
    return {};
}

void SectionMarks::goBehind()
{
    file_.seek(start_ + position_);
}

bool SectionMarks::readBlock()
{
    start_ = file_.pos();
    position_ = 0;
    block_ = file_.read(BlockSize);
    block_ += file_.readLine(LongestMark + 1); // so that no mark is in two blocks
    return !block_.isEmpty();
}

bool SectionMarks::beginsLine(qsizetype position) const
{
    while (position > 0 && isBlank(block_.at(position - 1))) {
        --position;
    }
    return position == 0 || block_.at(position - 1) == '\n';
}

} // namespace Ovra::GeoTool
