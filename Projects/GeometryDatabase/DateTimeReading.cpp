#include "DateTimeReading.h"

#include "StreamReading.h"

#include <QByteArray>
#include <QDateTime>
#include <QTimeZone>

namespace Ovra::Geo
{

namespace
{

// Marks a time zone in streams before Qt 5.2, but for those of Qt 5.0.
constexpr int OldTimeZone = 4;

constexpr int None = 256;

#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0) // which asks for a time zone where a QDateTime is made
constexpr auto Utc = QTimeZone::UTC;
#else
constexpr auto Utc = Qt::UTC;
#endif

// How the time is to be understood, which stands behind date and time.
int peekTimeSpec(const QDataStream& stream)
{
    const qint64 dateSize = stream.version() < QDataStream::Qt_5_0 ? 4 : 8;
    const qint64 timeSize = 4;
    const QByteArray bytes = stream.device()->peek(dateSize + timeSize + 1);
    return bytes.size() <= dateSize + timeSize ? None : static_cast<qint8>(bytes.back());
}

bool isNamelessZone(int timeSpec, int version)
{
    return timeSpec == (version == QDataStream::Qt_5_0 ? int(Qt::TimeZone) : OldTimeZone);
}

bool isKnown(int timeSpec, int version)
{
    const bool asOfOld = version < QDataStream::Qt_5_2 && version != QDataStream::Qt_5_0;
    return asOfOld || (timeSpec >= Qt::LocalTime && timeSpec <= Qt::TimeZone);
}

QDateTime readInNamelessZone(QDataStream& stream)
{
    const auto date = readValue<QDate>(stream);
    const auto time = readValue<QTime>(stream);
    readValue<qint8>(stream);
    // Qt 5.0 wrote every time in UTC.
    return stream.version() == QDataStream::Qt_5_0 ? QDateTime(date, time, Utc).toLocalTime()
                                                   : QDateTime(date, time);
}

} // namespace

void readDateTime(QDateTime& dateTime, QDataStream& stream)
{
    const int version = stream.version();
    const int timeSpec = version < QDataStream::Qt_4_0 ? None : peekTimeSpec(stream);
    if (timeSpec == None) {
        stream >> dateTime; // which finds the end, if it has broken off
    } else if (version < QDataStream::Qt_5_2 && isNamelessZone(timeSpec, version)) {
        dateTime = readInNamelessZone(stream);
    } else if (isKnown(timeSpec, version)) {
        stream >> dateTime;
    } else {
        stream.setStatus(QDataStream::ReadCorruptData);
    }
}

} // namespace Ovra::Geo
