#include "scenes.h"

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

} // namespace Scenes
