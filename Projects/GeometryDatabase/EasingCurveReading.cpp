#include "EasingCurveReading.h"

#include "BoundedList.h"
#include "StreamReading.h"

#include <QEasingCurve>
#include <QPointF>

#include <utility>

namespace Ovra::Geo
{

namespace
{

struct TcbPoint
{
    QPointF point;
    double tension = 0.0;
    double continuity = 0.0;
    double bias = 0.0;
};

double linear(double progress)
{
    return progress;
}

void setType(QEasingCurve& curve, quint8 type)
{
    if (type == QEasingCurve::Custom) {
        curve.setCustomType(linear);
    } else {
        curve.setType(static_cast<QEasingCurve::Type>(type));
    }
}

void readBezierSegments(QEasingCurve& curve, QDataStream& stream)
{
    QList<QPointF> points;
    readBoundedList(stream, points);
    if (points.size() % 3 != 0) {
        stream.setStatus(QDataStream::ReadCorruptData);
        return;
    }
    for (qsizetype i = 0; i < points.size(); i += 3) {
        curve.addCubicBezierSegment(points[i], points[i + 1], points[i + 2]);
    }
}

void readTcbSegments(QEasingCurve& curve, QDataStream& stream)
{
    QList<TcbPoint> points;
    readBoundedList(stream, points, [](QDataStream& from, TcbPoint& next) {
        from >> next.point >> next.tension >> next.continuity >> next.bias;
    });
    for (const TcbPoint& next : std::as_const(points)) {
        curve.addTCBSegment(next.point, next.tension, next.continuity, next.bias);
    }
}

void readParameters(QEasingCurve& curve, QDataStream& stream)
{
    curve.setPeriod(readValue<double>(stream));
    curve.setAmplitude(readValue<double>(stream));
    curve.setOvershoot(readValue<double>(stream));
    if (stream.version() > QDataStream::Qt_5_12) {
        readBezierSegments(curve, stream);
        readTcbSegments(curve, stream);
    }
}

} // namespace

void readEasingCurve(QEasingCurve& curve, QDataStream& stream)
{
    const auto type = readValue<quint8>(stream);
    readValue<quint64>(stream); // the address
    const auto hasParameters = readValue<bool>(stream);
    if (type >= QEasingCurve::NCurveTypes) {
        stream.setStatus(QDataStream::ReadCorruptData);
    }
    if (!isOk(stream)) {
        return;
    }
    setType(curve, type);
    if (hasParameters) {
        readParameters(curve, stream);
    }
}

} // namespace Ovra::Geo
