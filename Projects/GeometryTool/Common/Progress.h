#pragma once

#include <QElapsedTimer>
#include <QString>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace Ovra::GeoTool
{

/// \brief All that the tool says on standard error apart from its last word, the error line.
///
/// Progress is one line on a terminal that is overwritten in place, at most ten times a second, and
/// erased in the end; nothing is printed when standard error is no terminal or after setQuiet().
/// Where a phase has said nothing for a second, the line counts its seconds. A warning is a line of
/// its own, terminal or not, and is held back by setQuiet() too.
///
/// It prints on what standard error was when it was made, also while that is put elsewhere to keep
/// another program quiet. A phase on a terminal has a thread; a process that is going to copy itself
/// calls leaveLineToCopy() first.
class Progress
{
public:
    using Listener = std::function<void(const QString&)>;

    Progress();

    /// \brief Prints nothing: warnings go to \p listener, which setQuiet() does not hold back. For
    /// hosts that speak to their users themselves.
    explicit Progress(Listener listener);

    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// \brief Leaves nothing but the error line.
    void setQuiet(bool quiet);

    /// \brief Begins a phase such as "reading wing.geo_mesh"; shown at once.
    void phase(const QString& name);

    /// \brief Says how far the phase has come, cheap enough for an inner loop.
    /// \param total 0 when it is not known
    /// \param unit what is counted, in the plural; empty leaves the numbers bare
    void update(qint64 done, qint64 total, const QString& unit = QString());

    /// \brief As update(), in bytes and shown in megabytes.
    void updateBytes(qint64 done, qint64 total);

    /// \brief A passing remark beside the phase, the progress texts of the library for instance.
    void note(const QString& text);

    /// \brief Ends the phase, and counts the line that a copy of this process is going to show as
    /// this one's, which erases it when the copy has ended, in whatever way.
    /// \post no thread that a copy would lack, or that would hold what the copy waits for
    void leaveLineToCopy();

    /// \brief Shows nothing from now on but warnings, as the result goes to standard output, which
    /// may be the same terminal.
    void giveWay();

    /// \brief Erases the progress line; the next phase() begins a new one.
    void finish();

    /// \brief Prints "ovrageo: warning: " and the text as one line.
    void warning(const QString& text);

private:
    bool isShown() const { return terminal_ && !quiet_; }
    template <typename Detail>
    void showIfDue(Detail detail);
    void show(const QString& detail);
    void erase();
    void startTicker();
    void tick(const std::stop_token& stop);
    void print(const QString& text) const;

    Listener listener_; ///< takes the warnings, if it is set
    int descriptor_;
    bool terminal_;
    bool quiet_ = false;
    bool lineShown_ = false;
    bool inPhase_ = false;
    QString phase_;
    QElapsedTimer sinceShown_;
    QElapsedTimer sincePhase_;
    std::mutex mutex_; ///< of all of these, while there is a ticker
    std::condition_variable_any stopped_;
    std::jthread ticker_;
};

} // namespace Ovra::GeoTool
