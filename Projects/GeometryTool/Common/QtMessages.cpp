#include "QtMessages.h"

#include "ExitCode.h"
#include "Progress.h"

#include <QString>
#include <QtGlobal>

#include <cstdio>
#include <cstdlib>

namespace Ovra::GeoTool
{

namespace
{

Progress* progress_ = nullptr;

[[noreturn]] void dieOf(const QString& text)
{
    progress_->finish();
    std::fprintf(stderr, "ovrageo: error: internal fault: %s\n", text.toUtf8().constData());
    std::_Exit(static_cast<int>(ExitCode::InternalError));
}

void handle(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type == QtFatalMsg) {
        dieOf(text);
    }
    progress_->note(text);
}

} // namespace

void routeQtMessages(Progress& progress)
{
    progress_ = &progress;
    qInstallMessageHandler(handle);
}

} // namespace Ovra::GeoTool
