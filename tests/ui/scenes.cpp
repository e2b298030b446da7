#include "scenes.h"

#include "support/fixtures.h"

using namespace Qt::StringLiterals;
using namespace lanternic;

namespace Scenes {

void allOperational(StoreFixture &fixture)
{
    for (const QString &name :
         {u"GitHub"_s, u"Cloudflare"_s, u"Claude"_s, u"Linear"_s, u"OpenAI"_s})
        fixture.addSource(name, "operational");
    fixture.runPass();
    fixture.now = fixture.now.addSecs(42);
}

void mixed(StoreFixture &fixture)
{
    fixture.addSource(u"GitHub"_s, "operational",
                      "[" + relayComponent(u"git"_s, u"Git Operations"_s, u"major_outage"_s) + "," +
                          relayComponent(u"api"_s, u"API Requests"_s, u"operational"_s) + "]");
    fixture.addSource(u"Cloudflare & Co"_s, "operational",
                      "[" + relayComponent(u"dns"_s, u"DNS"_s, u"partial_outage"_s) + "," +
                          relayComponent(u"cdn"_s, u"CDN <b>edge</b>"_s, u"degraded"_s) + "," +
                          relayComponent(u"waf"_s, u"WAF"_s, u"operational"_s) + "]");
    fixture.addSource(u"Datadog EU"_s, "degraded", "[]",
                      "Delayed metric ingestion in one region, with a very long description "
                      "that cannot fit");
    fixture.addUnreachableSource(u"Internal status"_s);
    fixture.addSource(u"Linear"_s, "operational");
    fixture.addSource(u"OpenAI"_s, "operational");
    fixture.addSource(u"Build farm"_s, "down");
    fixture.runPass();
    const QString github = fixture.store.results().first().id;
    fixture.silence.silence(fixture.store.results().at(6).id, SilenceDuration::forever,
                            fixture.now);
    fixture.silence.silence(github + u"::git"_s, SilenceDuration::twoHours, fixture.now);
    fixture.now = fixture.now.addSecs(5 * 60 + 3);
}

void manyRows(StoreFixture &fixture, int count)
{
    const QByteArray healths[] = {"operational", "degraded", "operational", "down"};
    for (int i = 0; i < count; ++i)
        fixture.addSource(u"Service %1"_s.arg(i + 1, 2, 10, QChar(u'0')), healths[i % 4]);
    fixture.runPass();
}

void longTexts(StoreFixture &fixture)
{
    const QByteArray incident =
        R"(,"incidents":[{"id":"i1","name":"Elevated error rates and increased latency for )"
        R"(requests to the administration interface in every region","status":"identified",)"
        R"("impact":"major","update":"Engineers have identified the cause and are rolling out )"
        R"(a fix to every region, one after another, which will take some hours."}])";
    fixture.addSource(u"Continuous Integration Runners (Europe West and North)"_s, "down", "[]",
                      "Build queues are stalled everywhere and no job starts at all", incident);
    fixture.addSource(u"Donnerstagsdatenbankverwaltungsdienststellenleitung"_s, "operational",
                      "[" +
                          relayComponent(u"a"_s, u"Authentifizierungsdienstschnittstelle"_s,
                                         u"degraded_performance"_s) +
                          "]");
    fixture.addSource(u"Artifact storage"_s, "degraded", "[]",
                      "Uploads and downloads of large artifacts are slower than usual");
    fixture.addSource(u"Git Operations"_s, "degraded", "[]", {}, incident);
    fixture.addUnreachableSource(u"Internal status page of the platform team"_s);
    fixture.runPass();
    fixture.environment.notificationRules.pauseUntil(fixture.now.addSecs(3600));
}

namespace {

QByteArray at(const StoreFixture &fixture, qint64 seconds)
{
    return '"' + fixture.now.addSecs(seconds).toString(Qt::ISODate).toUtf8() + '"';
}

} // namespace

void incidents(StoreFixture &fixture)
{
    fixture.addSource(
        u"GitHub"_s, "operational",
        "[" + relayComponent(u"packages"_s, u"Packages"_s, u"degraded"_s) + "," +
            relayComponent(u"pages"_s, u"Pages"_s, u"degraded"_s) + "]",
        {},
        R"(,"incidents":[{"id":"p1","name":"Incident with Packages and Pages",)"
        R"("status":"investigating","impact":"minor","url":"https://www.githubstatus.com/)"
        R"(incidents/p1","startedAt":)" +
            at(fixture, -40 * 60) + R"(,"updatedAt":)" + at(fixture, -12 * 60) +
            R"(,"update":"We are investigating reports of degraded performance for Packages )"
            R"(and Pages. Some users may see slow or failed publishes while we work on a fix."}])");
    fixture.addSource(u"Claude"_s, "operational", "[]", {},
                      R"(,"incidents":[{"id":"c1","name":"Elevated errors on the API",)"
                      R"("status":"monitoring","startedAt":)" +
                          at(fixture, -3 * 3600) + R"(,"updatedAt":)" + at(fixture, -25 * 60) +
                          R"(,"update":"A fix has been deployed; we are monitoring."}])");
    fixture.addSource(u"Linear"_s, "operational");
    fixture.runPass();
}

void week(StoreFixture &fixture)
{
    fixture.addSource(u"GitHub"_s, "operational");
    fixture.addSource(u"Claude"_s, "operational");
    const QDateTime end = fixture.now;
    fixture.now = end.addDays(-7);
    for (int pass = 0; fixture.now < end; ++pass) {
        // Asleep for a night: no pass from the 40th to the 48th.
        if (pass >= 40 && pass < 48) {
            fixture.now = fixture.now.addSecs(90 * 60);
            continue;
        }
        const QByteArray health = pass == 20 || pass == 21  ? "down"
                                  : pass >= 80 && pass < 83 ? "degraded"
                                                            : "operational";
        fixture.server.route("/feed0.json", {200, relayFeed(health), {}});
        fixture.runPass();
        fixture.now = fixture.now.addSecs(90 * 60);
    }
    fixture.now = end;
    fixture.runPass();
}

void maintenance(StoreFixture &fixture)
{
    fixture.addSource(u"Cloudflare"_s, "operational", "[]", {},
                      R"(,"maintenances":[{"id":"m1","name":"FRA datacenter upgrade",)"
                      R"("status":"in_progress","startsAt":)" +
                          at(fixture, -3600) + R"(,"endsAt":)" + at(fixture, 2 * 3600) +
                          R"(},{"id":"m2","name":"Network upgrade in AMS","status":"scheduled",)"
                          R"("startsAt":)" +
                          at(fixture, 2 * 86400 + 3600) + R"(,"endsAt":)" +
                          at(fixture, 2 * 86400 + 5 * 3600) + "}]");
    fixture.addSource(u"GitHub"_s, "operational");
    // Degraded by planned work alone.
    fixture.addSource(u"Fastly"_s, "operational",
                      "[" + relayComponent(u"db"_s, u"Database"_s, u"under_maintenance"_s) + "]",
                      {},
                      R"(,"maintenances":[{"id":"f1","name":"Database failover",)"
                      R"("status":"in_progress","startsAt":)" +
                          at(fixture, -600) + R"(,"endsAt":)" + at(fixture, 3600) + "}]");
    fixture.runPass();
}

} // namespace Scenes
