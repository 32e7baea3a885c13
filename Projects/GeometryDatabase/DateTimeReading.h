#pragma once

class QDataStream;
class QDateTime;

/// \file
/// \brief Reading of QDateTime from streams that may be damaged. Not for hosts.

namespace Ovra::Geo
{

/// \brief Reads what Qt's stream operator has written, at any version of the stream.
///
/// The value is that of Qt's own operator, which comments on what is settled here in silence: in
/// streams before QDataStream::Qt_5_2 a time in a time zone does not say in which one, and becomes
/// local time, where newer releases of Qt give that of QDataStream::Qt_5_0 in UTC; a number of no
/// Qt::TimeSpec is QDataStream::ReadCorruptData.
void readDateTime(QDateTime& dateTime, QDataStream& stream);

} // namespace Ovra::Geo
