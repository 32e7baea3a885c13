#include "Progress.h"

#include <cstdio>
#include <unistd.h>

namespace Ovra::GeoTool
{

namespace
{

constexpr qint64 shortestPause = 100; // milliseconds between two states of the line
constexpr qsizetype longestLine = 79; // a line that wraps cannot be erased by a carriage return

void print(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stderr);
    std::fflush(stderr);
}

QString percentage(qint64 done, qint64 total)
{
    return QString::number(qMin<qint64>(100, 100 * done / total)) + QLatin1Char('%');
}

QString megabytes(qint64 bytes)
{
    return QString::number(static_cast<double>(bytes) / 1e6, 'f', 1);
}

} // namespace

Progress::Progress()
    : terminal_(isatty(STDERR_FILENO) == 1)
{
}

Progress::~Progress()
{
    finish();
}

void Progress::setQuiet(bool quiet)
{
    quiet_ = quiet;
}

void Progress::phase(const QString& name)
{
    phase_ = name;
    show(QString());
}

void Progress::update(qint64 done, qint64 total, const QString& unit)
{
    if (!isDue()) {
        return;
    }
    QString detail = QString::number(done);
    if (total > 0) {
        detail += QStringLiteral(" of %1").arg(total);
    }
    if (!unit.isEmpty()) {
        detail += QLatin1Char(' ') + unit;
    }
    if (total > 0) {
        detail += QStringLiteral(", ") + percentage(done, total);
    }
    show(detail);
}

void Progress::updateBytes(qint64 done, qint64 total)
{
    if (!isDue()) {
        return;
    }
    if (total > 0) {
        show(QStringLiteral("%1 of %2 MB, %3")
                 .arg(megabytes(done), megabytes(total), percentage(done, total)));
    } else {
        show(megabytes(done) + QStringLiteral(" MB"));
    }
}

void Progress::note(const QString& text)
{
    if (isDue()) {
        show(text);
    }
}

void Progress::finish()
{
    if (lineShown_) {
        print(QStringLiteral("\r\033[K"));
    }
    lineShown_ = false;
}

void Progress::warning(const QString& text)
{
    if (quiet_) {
        return;
    }
    finish();
    print(QStringLiteral("ovrageo: warning: %1\n").arg(text));
}

bool Progress::isDue() const
{
    return terminal_ && !quiet_ &&
           (!sinceShown_.isValid() || sinceShown_.elapsed() >= shortestPause);
}

void Progress::show(const QString& detail)
{
    if (!terminal_ || quiet_) {
        return;
    }
    QString line = detail.isEmpty() ? phase_ : phase_ + QStringLiteral(": ") + detail;
    line.replace(QLatin1Char('\n'), QLatin1Char(' '));
    line.truncate(longestLine);
    print(QStringLiteral("\r\033[K") + line);
    lineShown_ = true;
    sinceShown_.start();
}

} // namespace Ovra::GeoTool
