#pragma once

class QDataStream;
class QEasingCurve;

/// \file
/// \brief Reading of QEasingCurve from streams that may be damaged. Not for hosts.

namespace Ovra::Geo
{

/// \brief Reads what Qt's stream operator has written, at any version of the stream.
///
/// Qt's own operator takes the address of a function from the stream, to call it later. Here a
/// curve gets the function of its type; a QEasingCurve::Custom, whose function no stream can hold,
/// that of QEasingCurve::Linear. A type that there is not is QDataStream::ReadCorruptData.
///
/// Streams up to QDataStream::Qt_5_12 do not hold the points of splines.
void readEasingCurve(QEasingCurve& curve, QDataStream& stream);

} // namespace Ovra::Geo
