#include "store/displaysummary.h"
#include "store/timetext.h"
#include "support/fixtures.h"
#include "support/results.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace lanternic;
using namespace results;
using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(lanternic::SourceResult)

// What the panel, the icon and the reports are made of: rows, overall health, badge counts
// and silenced items, from results and silences.
class TestDisplay : public QObject {
    Q_OBJECT

    QTemporaryDir dir;
    std::unique_ptr<QSettings> defaults;
    std::unique_ptr<SilenceStore> silence;

    QString rows(const QList<SourceResult> &results)
    {
        QStringList out;
        for (const DisplayProvider &row : DisplaySummary::providers(results, *silence, now))
            out.append(row.result.id + u' ' + rawValue(row.health) + u' ' + row.detail +
                       (row.maintenance ? u" (maintenance)"_s : QString()));
        return out.join(u" | "_s);
    }

private Q_SLOTS:
    void init()
    {
        defaults = freshSettings(dir);
        silence = std::make_unique<SilenceStore>(*defaults);
    }

    void rowsLeaveSilencedComponentsOut()
    {
        silence->silence(u"b::old"_s, SilenceDuration::twoHours, now.addSecs(-7201));
        silence->silence(u"c::x"_s, SilenceDuration::forever, now);
        silence->silence(u"d"_s, SilenceDuration::untilResolved, now);
        const QList<SourceResult> results{
            result(u"a"_s, Health::down, {component(u"a"_s, u"api"_s, Health::degraded)}),
            result(u"b"_s, Health::down,
                   {component(u"b"_s, u"old"_s, Health::degraded),
                    component(u"b"_s, u"new"_s, Health::down)}),
            result(u"c"_s, Health::degraded, {component(u"c"_s, u"x"_s, Health::degraded)}),
            result(u"d"_s, Health::down),
            result(u"e"_s, Health::unknown, {}, u"refused"_s),
            result(u"f"_s, Health::operational, {component(u"f"_s, u"y"_s, Health::operational)}),
            result(u"g"_s, Health::degraded)};
        QCOMPARE(rows(results), u"a degraded API \u2014 degraded | b down 2 components affected | "
                                u"c operational Operational | e unknown reader detail | "
                                u"f operational Operational | g degraded reader detail"_s);
        QCOMPARE(DisplaySummary::effectiveHealth(results[2], *silence, now), Health::operational);
        QCOMPARE(DisplaySummary::effectiveHealth(results[3], *silence, now), Health::down);
    }

    // Planned work alone reads as maintenance, until the window's end where it has one; its
    // health stays as read.
    void maintenanceAlone()
    {
        const auto underMaintenance = [](const QString &id) {
            return ComponentStatus{id + u"::db"_s, u"Database"_s, Health::degraded,
                                   u"under_maintenance"_s};
        };
        Maintenance window;
        window.status = u"in_progress"_s;
        window.startsAt = now.addSecs(-3600);
        window.endsAt = now.addSecs(2 * 3600);
        Maintenance open = window;
        open.endsAt = QDateTime();
        SourceResult planned = result(u"a"_s, Health::degraded, {underMaintenance(u"a"_s)});
        planned.maintenances = {window};
        SourceResult mixed =
            result(u"b"_s, Health::down,
                   {underMaintenance(u"b"_s), component(u"b"_s, u"api"_s, Health::down)});
        SourceResult bare = result(u"c"_s, Health::degraded);
        bare.maintenances = {open};
        SourceResult withIncident = results::withIncident(bare, u"i"_s, u"Errors"_s);
        withIncident.id = u"d"_s;
        withIncident.name = u"d"_s;
        const QString until = TimeText::clockText(window.endsAt);
        QCOMPARE(rows({planned, mixed, bare, withIncident}),
                 u"a degraded Under maintenance until %1 (maintenance) | b down 2 components "
                 u"affected | c degraded Under maintenance (maintenance) | d degraded reader "
                 u"detail"_s.arg(until));
    }

    void overallAndSummary_data()
    {
        QTest::addColumn<QList<SourceResult>>("results");
        QTest::addColumn<QStringList>("silenced");
        QTest::addColumn<Health>("overall");
        QTest::addColumn<QString>("summary");
        QTest::newRow("nothing configured") << QList<SourceResult>{} << QStringList{}
                                            << Health::unknown << u"No sources configured"_s;
        QTest::newRow("all fine") << QList{result(u"a"_s, Health::operational)} << QStringList{}
                                  << Health::operational << u"All systems operational"_s;
        QTest::newRow("all silenced") << QList{result(u"a"_s, Health::down)} << QStringList{u"a"_s}
                                      << Health::operational << u"All systems operational"_s;
        QTest::newRow("counts") << QList{result(u"a"_s, Health::down),
                                         result(u"b"_s, Health::unknown),
                                         result(u"c"_s, Health::down),
                                         result(u"d"_s, Health::degraded)}
                                << QStringList{} << Health::down
                                << u"2 down, 1 degraded, 1 unknown"_s;
        QTest::newRow("degraded beats unknown")
            << QList{result(u"a"_s, Health::unknown), result(u"b"_s, Health::degraded)}
            << QStringList{} << Health::degraded << u"1 degraded, 1 unknown"_s;
        QTest::newRow("unknown only") << QList{result(u"a"_s, Health::unknown)} << QStringList{}
                                      << Health::unknown << u"1 unknown"_s;
    }

    void overallAndSummary()
    {
        QFETCH(QList<SourceResult>, results);
        QFETCH(QStringList, silenced);
        for (const QString &id : silenced)
            silence->silence(id, SilenceDuration::forever, now);
        const auto rows = DisplaySummary::providers(results, *silence, now);
        QTEST(DisplaySummary::overallHealth(results, rows), "overall");
        QTEST(DisplaySummary::summaryText(results, rows), "summary");
    }

    void badgeCounts()
    {
        silence->silence(u"a::d"_s, SilenceDuration::forever, now);
        const QList<SourceResult> results{
            result(
                u"a"_s, Health::down,
                {component(u"a"_s, u"a"_s, Health::down), component(u"a"_s, u"b"_s, Health::down),
                 component(u"a"_s, u"c"_s, Health::down), component(u"a"_s, u"d"_s, Health::down),
                 component(u"a"_s, u"e"_s, Health::degraded)}),
            result(u"b"_s, Health::down), result(u"c"_s, Health::degraded)};
        const auto rows = DisplaySummary::providers(results, *silence, now);
        QCOMPARE(DisplaySummary::issueCount(rows, Health::down, *silence, now), 4);
        QCOMPARE(DisplaySummary::issueCount(rows, Health::degraded, *silence, now), 2);
        QCOMPARE(DisplaySummary::issueCount(rows, Health::unknown, *silence, now), 0);
    }

    void silencedItems()
    {
        silence->silence(u"beta"_s, SilenceDuration::forever, now);
        silence->silence(u"beta::x"_s, SilenceDuration::forever, now);
        silence->silence(u"Alpha"_s, SilenceDuration::untilResolved, now);
        silence->silence(u"alpha::api"_s, SilenceDuration::oneDay, now);
        silence->silence(u"alpha::old"_s, SilenceDuration::twoHours, now.addDays(-1));
        silence->silence(u"removed"_s, SilenceDuration::forever, now);
        SourceResult alpha = result(u"alpha"_s, Health::degraded,
                                    {component(u"alpha"_s, u"api"_s, Health::degraded),
                                     component(u"alpha"_s, u"old"_s, Health::degraded)});
        const QList<SourceResult> results{
            result(u"beta"_s, Health::down, {component(u"beta"_s, u"x"_s, Health::down)}), alpha,
            result(u"Alpha"_s, Health::down)};
        QStringList titles;
        for (const SilencedItem &item : DisplaySummary::silencedItems(results, *silence, now))
            titles.append(item.title);
        QCOMPARE(titles, (QStringList{u"Alpha"_s, u"alpha \u00b7 API"_s, u"beta"_s}));
    }
};

QTEST_GUILESS_MAIN(TestDisplay)
#include "test_display.moc"
