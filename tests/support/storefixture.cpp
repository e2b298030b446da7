#include "support/storefixture.h"

#include "support/fixtures.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

StoreFixture::StoreFixture()
    : defaults(dir.filePath(u"settings.ini"_s), QSettings::IniFormat),
      environment(defaults, {}, lanternic::AppEnvironment::LaunchPass::none),
      settings(environment.settings), silence(environment.silence), store(*environment.store),
      now(QDateTime::fromString(u"2026-11-16T17:00:00Z"_s, Qt::ISODate))
{
    store.setClock([this] { return now; });
}

void StoreFixture::addSource(const QString &name, const QByteArray &health,
                             const QByteArray &components, const QByteArray &detail,
                             const QByteArray &extra)
{
    QByteArray members =
        R"(,"url":"https://status.example.com/)" + QByteArray::number(m_lines.size()) + '"' + extra;
    if (!detail.isEmpty())
        members += R"(,"detail":)" + QJsonDocument(QJsonArray{QString::fromUtf8(detail)})
                                         .toJson(QJsonDocument::Compact)
                                         .sliced(1)
                                         .chopped(1);
    const QByteArray path = "/feed" + QByteArray::number(m_lines.size()) + ".json";
    server.route(path, {200, relayFeed(health, components, members), {}});
    m_lines.append(u"%1=%2"_s.arg(name, server.url(path).toString()));
}

void StoreFixture::addUnreachableSource(const QString &name)
{
    m_lines.append(u"%1=http://127.0.0.1:1/feed%2.json"_s.arg(name).arg(m_lines.size()));
}

void StoreFixture::startPass(std::function<void()> done)
{
    settings.setSourcesText(m_lines.join(u'\n'));
    store.refresh(std::move(done));
}

void StoreFixture::runPass()
{
    bool done = false;
    startPass([&] { done = true; });
    if (!QTest::qWaitFor([&] { return done; }, 20'000))
        qFatal("the pass did not finish");
}

QByteArray relayComponent(const QString &id, const QString &name, const QString &status)
{
    return QJsonDocument(QJsonObject{{u"id"_s, id}, {u"name"_s, name}, {u"status"_s, status}})
        .toJson(QJsonDocument::Compact);
}
