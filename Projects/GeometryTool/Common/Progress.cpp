#include "Progress.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <new>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace Ovra::GeoTool
{

namespace
{

constexpr qint64 shortestPause = 100; // milliseconds between two states of the line
constexpr std::chrono::seconds longestSilence(1);
constexpr qsizetype longestLine = 79; // a line that wraps cannot be erased by a carriage return

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
    : descriptor_(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1))
    , terminal_(isatty(descriptor_) == 1)
{
}

Progress::Progress(Listener listener)
    : listener_(std::move(listener))
    , descriptor_(-1)
    , terminal_(false)
{
}

Progress::~Progress()
{
    ticker_ = {};
    finish();
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
}

void Progress::setQuiet(bool quiet)
{
    quiet_ = quiet;
}

void Progress::phase(const QString& name)
{
    if (!isShown()) {
        return;
    }
    const std::lock_guard lock(mutex_);
    phase_ = name;
    inPhase_ = true;
    sincePhase_.start();
    show(QString());
    startTicker();
}

template <typename Detail>
void Progress::showIfDue(Detail detail)
{
    if (!isShown()) {
        return;
    }
    const std::lock_guard lock(mutex_);
    if (!sinceShown_.isValid() || sinceShown_.elapsed() >= shortestPause) {
        show(detail());
    }
}

void Progress::update(qint64 done, qint64 total, const QString& unit)
{
    showIfDue([&] {
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
        return detail;
    });
}

void Progress::updateBytes(qint64 done, qint64 total)
{
    showIfDue([&] {
        if (total > 0) {
            return QStringLiteral("%1 of %2 MB, %3")
                .arg(megabytes(done), megabytes(total), percentage(done, total));
        }
        return megabytes(done) + QStringLiteral(" MB");
    });
}

void Progress::note(const QString& text)
{
    showIfDue([&text] { return text; });
}

void Progress::leaveLineToCopy()
{
    ticker_ = {};
    inPhase_ = false;
    lineShown_ = isShown();
}

void Progress::giveWay()
{
    finish();
    terminal_ = false;
}

void Progress::finish()
{
    const std::lock_guard lock(mutex_);
    inPhase_ = false;
    erase();
}

void Progress::warning(const QString& text)
{
    if (listener_) {
        listener_(text);
        return;
    }
    if (quiet_) {
        return;
    }
    const std::lock_guard lock(mutex_);
    erase();
    print(QStringLiteral("ovrageo: warning: %1\n").arg(text));
    sinceShown_.start();
}

void Progress::show(const QString& detail)
{
    QString line = detail.isEmpty() ? phase_ : phase_ + QStringLiteral(": ") + detail;
    line.replace(QLatin1Char('\n'), QLatin1Char(' '));
    line.truncate(longestLine);
    print(QStringLiteral("\r\033[K") + line);
    lineShown_ = true;
    sinceShown_.start();
}

void Progress::erase()
{
    if (lineShown_) {
        print(QStringLiteral("\r\033[K"));
    }
    lineShown_ = false;
}

void Progress::startTicker()
{
    if (ticker_.joinable()) {
        return;
    }
    try {
        ticker_ = std::jthread([this](const std::stop_token& stop) { tick(stop); });
    } catch (const std::system_error&) {
        return; // no more threads to be had: no reason to fail
    }
}

// Library and Gmsh do much of their work in one call, which would leave the line as it is for long.
void Progress::tick(const std::stop_token& stop)
{
    std::unique_lock lock(mutex_);
    while (
        !stopped_.wait_for(lock, stop, longestSilence, [&stop] { return stop.stop_requested(); })) {
        if (inPhase_ && std::chrono::milliseconds(sinceShown_.elapsed()) >= longestSilence) {
            try {
                show(QStringLiteral("%1 s").arg(sincePhase_.elapsed() / 1000));
            } catch (const std::bad_alloc&) {
                return; // which is for the work to tell
            }
        }
    }
}

void Progress::print(const QString& text) const
{
    const QByteArray bytes = text.toUtf8();
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t count = write(descriptor_, bytes.constData() + written,
                                    static_cast<std::size_t>(bytes.size() - written));
        if (count < 0 && errno != EINTR) {
            return;
        }
        written += std::max<ssize_t>(count, 0);
    }
}

} // namespace Ovra::GeoTool
