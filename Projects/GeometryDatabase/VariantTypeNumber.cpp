#include "VariantTypeNumber.h"

#include <QDataStream>
#include <QMetaType>

#include <array>

namespace Ovra::Geo
{

namespace
{

// By number in streams older than Qt 4; UnknownType where the number was never used.
constexpr std::array<quint16, 36> Qt3Types{
    QMetaType::UnknownType, QMetaType::QVariantMap,  QMetaType::QVariantList,
    QMetaType::QString,     QMetaType::QStringList,  QMetaType::QFont,
    QMetaType::QPixmap,     QMetaType::QBrush,       QMetaType::QRect,
    QMetaType::QSize,       QMetaType::QColor,       QMetaType::QPalette,
    QMetaType::UnknownType, QMetaType::QIcon,        QMetaType::QPoint,
    QMetaType::QImage,      QMetaType::Int,          QMetaType::UInt,
    QMetaType::Bool,        QMetaType::Double,       QMetaType::UnknownType,
    QMetaType::QPolygon,    QMetaType::QRegion,      QMetaType::QBitmap,
    QMetaType::QCursor,     QMetaType::QSizePolicy,  QMetaType::QDate,
    QMetaType::QTime,       QMetaType::QDateTime,    QMetaType::QByteArray,
    QMetaType::QBitArray,   QMetaType::QKeySequence, QMetaType::QPen,
    QMetaType::LongLong,    QMetaType::ULongLong,    QMetaType::QEasingCurve};

// Never registered.
constexpr int NoType = -1;

constexpr quint32 Qt4User = 127;
constexpr quint32 Qt4FirstExtendedCore = 128;
constexpr quint32 Qt4ExtendedCoreShift = 97;
constexpr quint32 Qt4SizePolicy = 75;
constexpr quint32 Qt4LastGui = 86;

constexpr quint32 Qt5User = 1024;
constexpr quint32 Qt5RegExp = 27;
constexpr quint32 Qt5FirstGui = 64;
constexpr quint32 Qt5LastGui = 87;
constexpr quint32 Qt5SizePolicy = 121;

quint32 qt5NumberFromQt4(quint32 number)
{
    if (number == Qt4User) {
        return Qt5User;
    }
    if (number >= Qt4FirstExtendedCore && number != Qt5User) {
        return number - Qt4ExtendedCoreShift;
    }
    if (number == Qt4SizePolicy) {
        return Qt5SizePolicy;
    }
    if (number > Qt4SizePolicy && number <= Qt4LastGui) {
        return number - 1;
    }
    return number;
}

int typeIdFromQt5(quint32 number)
{
    if (number == Qt5User) {
        return QMetaType::User;
    }
    if (number >= Qt5FirstGui && number <= Qt5LastGui) {
        return static_cast<int>(number - Qt5FirstGui) + QMetaType::FirstGuiType;
    }
    if (number == Qt5SizePolicy) {
        return QMetaType::QSizePolicy;
    }
    if (number == Qt5RegExp) {
        return QMetaType::fromName("QRegExp").id();
    }
    return static_cast<int>(number);
}

} // namespace

int typeIdFromStream(quint32 number, int version)
{
    if (version < QDataStream::Qt_4_0) {
        return number < Qt3Types.size() ? Qt3Types[number] : NoType;
    }
    if (version < QDataStream::Qt_5_0) {
        return typeIdFromQt5(qt5NumberFromQt4(number));
    }
    if (version < QDataStream::Qt_6_0) {
        return typeIdFromQt5(number);
    }
    return static_cast<int>(number);
}

} // namespace Ovra::Geo
