#pragma once

#include <QStringList>
#include <QtGlobal>

/// \brief Collects what goes to Qt's debug log, in the default category, as long as it lives.
///
/// One at a time. Messages of other types or categories go where they went before.
class LogCapture
{
public:
    LogCapture()
    {
        texts().clear();
        previous() = qInstallMessageHandler(take);
    }

    ~LogCapture() { qInstallMessageHandler(previous()); }

    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    /// \brief The texts so far, oldest first.
    QStringList messages() const { return texts(); }

private:
    static QStringList& texts()
    {
        static QStringList list;
        return list;
    }

    static QtMessageHandler& previous()
    {
        static QtMessageHandler handler = nullptr;
        return handler;
    }

    static void take(QtMsgType type, const QMessageLogContext& context, const QString& text)
    {
        if (type == QtDebugMsg && qstrcmp(context.category, "default") == 0) {
            texts().append(text);
        } else if (previous()) {
            previous()(type, context, text);
        }
    }
};
