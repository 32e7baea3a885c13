#include "AttributeType.h"
#include "Places.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace Ovra::Geo;

namespace
{

QStringList quoted(const QString& text)
{
    QStringList words;
    auto found = QRegularExpression(QStringLiteral("`([a-z0-9_]+)`")).globalMatch(text);
    while (found.hasNext()) {
        words.append(found.next().captured(1));
    }
    return words;
}

} // namespace

/// The page that lists the vocabulary has every tag, and no word that is neither tag nor material.
class TestAttributesPage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QFile file(Places::documentation() + QStringLiteral("/Attributes.md"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        words_ = quoted(QString::fromUtf8(file.readAll()));
    }

    void namesEveryTag()
    {
        QStringList missing;
        for (const QString& tag : AttributeType::tags()) {
            if (!words_.contains(tag)) {
                missing.append(tag);
            }
        }
        QCOMPARE(missing, QStringList());
    }

    void namesNothingElse()
    {
        const QStringList others = {
            "fluid",     "resistance",      "internal_fan",   "check_valve", "rotating_device",
            "solid",     "centrifugal_fan", "heat_exchanger", "heat_sink",   "ecomp_2resist",
            "ecomp_tec", "led_device",      "prepare",        "shells"};
        for (const QString& word : std::as_const(words_)) {
            QVERIFY2(others.contains(word) || AttributeType::tags().contains(word),
                     qPrintable(word));
        }
    }

private:
    QStringList words_;
};

QTEST_APPLESS_MAIN(TestAttributesPage)
#include "tst_AttributesPage.moc"
