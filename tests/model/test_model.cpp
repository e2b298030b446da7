#include "model/feedtext.h"
#include "model/sourceresult.h"

#include <QTest>

using namespace lanternic;
using namespace Qt::StringLiterals;

class TestModel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void healthFromRawValueIsExact()
    {
        QCOMPARE(healthFromRawValue(u"down"), Health::down);
        QCOMPARE(healthFromRawValue(u"Operational"), std::nullopt);
        QCOMPARE(healthFromRawValue(u"unknown "), std::nullopt);
        for (Health health : allHealths)
            QCOMPARE(healthFromRawValue(rawValue(health)), health);
    }

    void worstHealth_data()
    {
        QTest::addColumn<QList<Health>>("healths");
        QTest::addColumn<std::optional<Health>>("worst");
        QTest::newRow("nothing") << QList<Health>{} << std::optional<Health>();
        QTest::newRow("unknown beats operational")
            << QList{Health::operational, Health::unknown} << std::optional(Health::unknown);
        QTest::newRow("degraded beats unknown")
            << QList{Health::unknown, Health::degraded} << std::optional(Health::degraded);
        QTest::newRow("down beats all") << QList{Health::degraded, Health::down, Health::unknown}
                                        << std::optional(Health::down);
    }

    void worstHealth()
    {
        QFETCH(QList<Health>, healths);
        QFETCH(std::optional<Health>, worst);
        QCOMPARE(lanternic::worstHealth(healths), worst);
    }

    void summarize_data()
    {
        QTest::addColumn<QList<Health>>("healths");
        QTest::addColumn<Health>("health");
        QTest::addColumn<QString>("detail");
        QTest::newRow("nothing") << QList<Health>{} << Health::operational << u"All clear"_s;
        QTest::newRow("one unknown")
            << QList{Health::unknown} << Health::unknown << u"C0 \u2014 unknown"_s;
        QTest::newRow("unknown and degraded") << QList{Health::unknown, Health::degraded}
                                              << Health::degraded << u"2 components affected"_s;
        QTest::newRow("twelve affected") << QList<Health>(12, Health::degraded) << Health::degraded
                                         << u"12 components affected"_s;
    }

    void summarize()
    {
        QFETCH(QList<Health>, healths);
        QList<ComponentStatus> components;
        for (qsizetype i = 0; i < healths.size(); ++i)
            components.append({u"s::c%1"_s.arg(i), u"C%1"_s.arg(i), healths[i], u"x"_s});
        const auto [health, detail] = SourceResult::summarize(components, u"All clear"_s);
        QTEST(health, "health");
        QTEST(detail, "detail");
    }

    void feedText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        QTest::newRow("plain") << u"GitHub \u2014 API"_s << u"GitHub \u2014 API"_s;
        QTest::newRow("forged report line")
            << u"ok\n\u2713 GitHub  Operational"_s << u"ok \u2713 GitHub  Operational"_s;
        QTest::newRow("controls and separators")
            << u"a\rb\vc\td\u0000e\u007ff\u0085g\u2028h\u2029i"_s << u"a b c d e f g h i"_s;
        QTest::newRow("escape sequence") << u"\u001b]0;owned\u0007x"_s << u" ]0;owned x"_s;
        QTest::newRow("bidi overrides and isolates")
            << u"\u202egnp.exe\u202c \u2066x\u2069"_s << u"gnp.exe x"_s;
        QTest::newRow("cut with an ellipsis")
            << QString(400, u'a') << QString(299, u'a') + u"\u2026"_s;
        // A flag is two code points and four code units: never split.
        QTest::newRow("cut between graphemes")
            << QString(298, u'a') + u"\U0001F1E9\U0001F1EA"_s << QString(298, u'a') + u"\u2026"_s;
        QTest::newRow("one huge cluster") << u"e"_s + QString(100000, QChar(0x301))
                                          << u"e"_s + QString(298, QChar(0x301)) + u"\u2026"_s;
    }

    void feedText()
    {
        QFETCH(QString, text);
        QTEST(FeedText::clean(text), "shown");
    }
};

QTEST_GUILESS_MAIN(TestModel)
#include "test_model.moc"
