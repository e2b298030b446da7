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
        QCOMPARE(healthFromRawValue(u""), std::nullopt);
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
        QTest::newRow("single") << QList{Health::operational} << std::optional(Health::operational);
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
        QTest::newRow("all operational") << QList{Health::operational, Health::operational}
                                         << Health::operational << u"All clear"_s;
        QTest::newRow("one down among operational")
            << QList{Health::operational, Health::down, Health::operational} << Health::down
            << u"C1 \u2014 down"_s;
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
};

QTEST_GUILESS_MAIN(TestModel)
#include "test_model.moc"
