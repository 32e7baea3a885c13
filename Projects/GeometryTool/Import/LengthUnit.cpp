#include "LengthUnit.h"

#include "InputFileCheck.h"

#include <QFile>
#include <QHash>
#include <QList>
#include <QRegularExpression>

namespace Ovra::GeoTool
{

namespace
{

QString siUnit(const QString& prefix)
{
    return prefix.toLower() + QStringLiteral("metres");
}

QString namedUnit(const QString& name)
{
    static const QHash<QString, QString> plurals{{QStringLiteral("INCH"), QStringLiteral("inches")},
                                                 {QStringLiteral("IN"), QStringLiteral("inches")},
                                                 {QStringLiteral("FOOT"), QStringLiteral("feet")},
                                                 {QStringLiteral("FT"), QStringLiteral("feet")},
                                                 {QStringLiteral("MILE"), QStringLiteral("miles")},
                                                 {QStringLiteral("MI"), QStringLiteral("miles")},
                                                 {QStringLiteral("MIL"), QStringLiteral("mils")},
                                                 {QStringLiteral("UM"), siUnit("MICRO")},
                                                 {QStringLiteral("MM"), siUnit("MILLI")},
                                                 {QStringLiteral("CM"), siUnit("CENTI")},
                                                 {QStringLiteral("M"), siUnit(QString())},
                                                 {QStringLiteral("KM"), siUnit("KILO")}};
    const QString upper = name.trimmed().toUpper();
    return plurals.value(upper, QStringLiteral("units of \"%1\"").arg(name.trimmed()));
}

/// \brief The next instance of a STEP file, without line breaks; semicolons in texts end none.
QByteArray nextInstance(QFile& file)
{
    constexpr qsizetype longest = 1 << 16; // longer ones are no units: the rest is passed over
    QByteArray instance;
    bool isText = false;
    char c = 0;
    while (file.getChar(&c) && (isText || c != ';')) {
        isText = isText != (c == '\'');
        if (c != '\n' && c != '\r' && instance.size() < longest) {
            instance += c;
        }
    }
    return instance;
}

QString stepLength(const QString& instance)
{
    static const QRegularExpression converted(
        QStringLiteral("CONVERSION_BASED_UNIT\\s*\\(\\s*'([^']*)'"));
    static const QRegularExpression si(
        QStringLiteral("SI_UNIT\\s*\\(\\s*(?:\\$|\\.([A-Z]+)\\.)\\s*,\\s*\\.METRE\\.\\s*\\)"));
    const auto named = converted.match(instance);
    const auto standard = si.match(instance);
    return named.hasMatch()      ? namedUnit(named.captured(1))
           : standard.hasMatch() ? siUnit(standard.captured(1))
                                 : QString();
}

QString unitOfStep(QFile& file)
{
    static const QRegularExpression number(QStringLiteral("^\\s*(#\\d+)\\s*="));
    static const QRegularExpression context(
        QStringLiteral("GLOBAL_UNIT_ASSIGNED_CONTEXT\\s*\\(\\s*\\(([^)]*)\\)"));
    QHash<QString, QString> lengths;
    QStringList assigned;
    while (!file.atEnd()) {
        const QByteArray bytes = nextInstance(file);
        if (assigned.isEmpty() && bytes.contains("GLOBAL_UNIT_ASSIGNED_CONTEXT")) {
            const auto match = context.match(QString::fromLatin1(bytes));
            assigned = match.captured(1).remove(QLatin1Char(' ')).split(QLatin1Char(','));
        } else if (bytes.contains("LENGTH_UNIT")) {
            const QString instance = QString::fromLatin1(bytes);
            lengths.insert(number.match(instance).captured(1), stepLength(instance));
        }
    }
    for (const QString& reference : assigned) {
        if (lengths.contains(reference)) {
            return lengths.value(reference);
        }
    }
    return QString();
}

/// \brief The lines of the global section, put together.
QByteArray globalSection(QFile& file)
{
    constexpr qsizetype width = 72;
    QByteArray section;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine(1000);
        const char kind = line.size() > width ? line.at(width) : ' ';
        if (kind == 'G') {
            section += line.left(width);
        } else if (kind == 'D') {
            break;
        }
    }
    return section;
}

/// \brief Whether a Hollerith text, "4HINCH" for instance, begins at a position; its length without
/// its head.
qsizetype textLength(const QByteArray& section, qsizetype position, qsizetype* head)
{
    qsizetype end = position;
    while (end < section.size() && section.at(end) >= '0' && section.at(end) <= '9') {
        ++end;
    }
    const bool isText = end > position && end < section.size() && section.at(end) == 'H';
    *head = end - position + 1;
    return isText ? section.mid(position, end - position).toLongLong() : -1;
}

QList<QByteArray> globalParameters(const QByteArray& section)
{
    QList<QByteArray> parameters{QByteArray()};
    char separator = ',';
    char terminator = ';';
    for (qsizetype i = 0; i < section.size(); ++i) {
        qsizetype head = 0;
        const qsizetype length =
            parameters.last().isEmpty() ? textLength(section, i, &head) : qsizetype(-1);
        if (length >= 0) {
            parameters.last() = section.mid(i + head, length);
            i += head + length - 1;
            separator = parameters.size() == 1 && length == 1 ? section.at(i) : separator;
            terminator = parameters.size() == 2 && length == 1 ? section.at(i) : terminator;
        } else if (section.at(i) == separator) {
            parameters.append(QByteArray());
        } else if (section.at(i) == terminator) {
            break;
        } else if (section.at(i) != ' ') {
            parameters.last() += section.at(i);
        }
    }
    return parameters;
}

QString unitOfIges(QFile& file)
{
    static const QStringList flags{QString(),
                                   QStringLiteral("inches"),
                                   QStringLiteral("millimetres"),
                                   QString(),
                                   QStringLiteral("feet"),
                                   QStringLiteral("miles"),
                                   QStringLiteral("metres"),
                                   QStringLiteral("kilometres"),
                                   QStringLiteral("mils"),
                                   QStringLiteral("micrometres"),
                                   QStringLiteral("centimetres"),
                                   QStringLiteral("microinches")};
    constexpr qsizetype flagPlace = 13;
    constexpr qsizetype namePlace = 14;
    const QList<QByteArray> parameters = globalParameters(globalSection(file));
    const QByteArray flagText = parameters.value(flagPlace);
    const int flag = flagText.isEmpty() ? 1 : flagText.toInt();
    const QString name = QString::fromLatin1(parameters.value(namePlace));
    if (flag == 3 && !name.isEmpty()) {
        return namedUnit(name);
    }
    return flags.value(flag);
}

bool isStep(const QString& path)
{
    const QString suffix = InputFileCheck::suffix(path);
    return suffix == QLatin1String("step") || suffix == QLatin1String("stp");
}

} // namespace

bool LengthUnit::isStatedBy(const QString& path)
{
    const QString suffix = InputFileCheck::suffix(path);
    return isStep(path) || suffix == QLatin1String("iges") || suffix == QLatin1String("igs");
}

QString LengthUnit::of(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return QString();
    }
    return isStep(path) ? unitOfStep(file) : unitOfIges(file);
}

} // namespace Ovra::GeoTool
