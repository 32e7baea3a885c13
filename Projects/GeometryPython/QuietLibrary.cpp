#include "QuietLibrary.h"

#include <QtGlobal>

namespace Ovra::GeoPython
{

namespace
{

thread_local int depth = 0;
QtMessageHandler formerHandler = nullptr;

void handle(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    const bool isRemark = type == QtDebugMsg || type == QtInfoMsg;
    if (depth == 0 || !isRemark) {
        formerHandler(type, context, text);
    }
}

/// Once and for good: the handlers of several threads cannot be taken down in order.
void installHandler()
{
    static const bool isInstalled = [] {
        formerHandler = qInstallMessageHandler(handle);
        return true;
    }();
    Q_UNUSED(isInstalled)
}

} // namespace

QuietLibrary::QuietLibrary()
{
    installHandler();
    ++depth;
}

QuietLibrary::~QuietLibrary()
{
    --depth;
}

} // namespace Ovra::GeoPython
