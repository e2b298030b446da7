// Notifications of changes between passes, through a fake org.freedesktop.Notifications server
// on the private session bus that dbus-run-session gives this test.

#include "app/changenotifier.h"
#include "platform/notifier.h"
#include "support/fixtures.h"
#include "support/storefixture.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace lanternic;
using namespace Qt::StringLiterals;

// Records what it is asked to show, and offers actions.
class FakeNotificationServer : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Call {
        QString appName, icon, summary, body;
        QStringList actions;
        QVariantMap hints;
        uint id;
    };

    explicit FakeNotificationServer(QDBusConnection bus,
                                    QStringList capabilities = {u"body"_s, u"actions"_s})
        : m_bus(std::move(bus)), m_capabilities(std::move(capabilities))
    {
        m_bus.registerObject(u"/org/freedesktop/Notifications"_s, this,
                             QDBusConnection::ExportAllSlots);
        if (!m_bus.registerService(u"org.freedesktop.Notifications"_s))
            qFatal("cannot own the notification service: run under dbus-run-session");
    }

    void invoke(uint id, const QString &key) { emitSignal(u"ActionInvoked"_s, id, key); }
    void close(uint id) { emitSignal(u"NotificationClosed"_s, id, 2u); }

    QList<Call> calls;

public Q_SLOTS:
    QStringList GetCapabilities() { return m_capabilities; }

    uint Notify(const QString &appName, uint, const QString &icon, const QString &summary,
                const QString &body, const QStringList &actions, const QVariantMap &hints, int)
    {
        const uint id = 100 + uint(calls.size());
        calls.append({appName, icon, summary, body, actions, hints, id});
        return id;
    }

private:
    void emitSignal(const QString &name, uint id, const QVariant &argument)
    {
        QDBusMessage signal = QDBusMessage::createSignal(u"/org/freedesktop/Notifications"_s,
                                                         u"org.freedesktop.Notifications"_s, name);
        signal << id << argument;
        m_bus.send(signal);
    }

    QDBusConnection m_bus;
    QStringList m_capabilities;
};

namespace {

ChangeNotifier::Services services(AppEnvironment &environment)
{
    return {*environment.store, environment.silence, environment.notificationRules,
            environment.settings};
}

} // namespace

class TestNotifications : public QObject {
    Q_OBJECT

    std::unique_ptr<FakeNotificationServer> server;
    std::unique_ptr<StoreFixture> fixture;
    std::unique_ptr<Notifier> notifier;
    std::unique_ptr<ChangeNotifier> changes;
    QStringList fallback;

    // The feed's git and (when given) API components in these states.
    void serve(const QString &git, const QString &api = {})
    {
        QByteArray components = "[" + relayComponent(u"git"_s, u"Git Operations"_s, git);
        if (!api.isEmpty())
            components += "," + relayComponent(u"api"_s, u"API"_s, api);
        fixture->server.route("/feed0.json", {200, relayFeed("operational", components + "]"), {}});
    }

private Q_SLOTS:
    void init()
    {
        server = std::make_unique<FakeNotificationServer>(
            QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"fake-server"_s));
        fixture = std::make_unique<StoreFixture>();
        fixture->addSource(u"GitHub"_s, "operational",
                           "[" + relayComponent(u"git"_s, u"Git Operations"_s, u"operational"_s) +
                               "," + relayComponent(u"api"_s, u"API"_s, u"operational"_s) + "]");
        notifier = Notifier::forThisSession();
        QVERIFY(notifier->isAvailable());
        fallback.clear();
        changes = std::make_unique<ChangeNotifier>(
            services(fixture->environment), *notifier,
            [this](const QString &title, const QString &, bool) { fallback.append(title); });
        // The first pass after start is the baseline: nothing to tell.
        fixture->runPass();
        QTest::qWait(100);
        QVERIFY(server->calls.isEmpty());
    }

    void cleanup()
    {
        changes.reset();
        notifier.reset();
        fixture.reset();
        server.reset();
        QDBusConnection::disconnectFromBus(u"fake-server"_s);
    }

    void worseThenBetter()
    {
        // No icon installed: the one the build renders goes as pixels; an installed one by path.
        QTemporaryDir data;
        qputenv("XDG_DATA_HOME", data.path().toUtf8());
        qputenv("XDG_DATA_DIRS", data.path().toUtf8());
        serve(u"down"_s, u"degraded"_s);
        fixture->runPass();
        QTRY_COMPARE(server->calls.size(), 1);
        const auto down = server->calls.first();
        QCOMPARE(down.appName, u"Lanternic"_s);
        QCOMPARE(down.icon, u"lanternic"_s);
        QCOMPARE(down.summary, u"GitHub is down"_s);
        QCOMPARE(down.body, u"Git Operations \u2014 down\nAPI \u2014 degraded"_s);
        QCOMPARE(down.hints.value(u"urgency"_s).toInt(), 2);
        QCOMPARE(down.hints.value(u"desktop-entry"_s).toString(), u"lanternic"_s);
        QVERIFY(down.hints.contains(u"image-data"_s));
        const QString icon = data.filePath(u"icons/hicolor/128x128/apps/lanternic.png"_s);
        QVERIFY(QDir().mkpath(QFileInfo(icon).path()) &&
                QFile::copy(QStringLiteral(LANTERNIC_BUILD_ICON), icon));
        QCOMPARE(down.actions,
                 (QStringList{u"default"_s, u"Open panel"_s, u"open-page"_s, u"Open status page"_s,
                              u"silence-1h"_s, u"Silence for 1 hour"_s}));

        serve(u"operational"_s, u"degraded"_s);
        fixture->runPass();
        QTRY_COMPARE(server->calls.size(), 2);
        QCOMPARE(server->calls.last().summary, u"GitHub recovered"_s);
        QCOMPARE(server->calls.last().hints.value(u"urgency"_s).toInt(), 1);
        QCOMPARE(server->calls.last().hints.value(u"image-path"_s).toString(), icon);
        QVERIFY(fallback.isEmpty());
    }

    void quietWhenOfflineOrSwitchedOff()
    {
        // What is and is not a change is the notice's business; here, only when to tell.
        fixture->store.setOffline(true);
        serve(u"down"_s);
        fixture->runPass();
        QTest::qWait(100);
        QVERIFY(server->calls.isEmpty());
        // Back online, the change is measured against the last pass before the network went.
        fixture->store.setOffline(false);
        fixture->runPass();
        QTRY_COMPARE(server->calls.size(), 1);
        QCOMPARE(server->calls.first().summary, u"GitHub is down"_s);

        // Paused: nothing, then one summary of the spell at the first pass after it.
        NotificationRules &rules = fixture->environment.notificationRules;
        rules.pauseUntil(fixture->store.now().addSecs(3600));
        serve(u"operational"_s);
        fixture->runPass();
        serve(u"operational"_s, u"degraded"_s);
        fixture->runPass();
        QTest::qWait(100);
        QCOMPARE(server->calls.size(), 1);
        rules.pauseUntil({});
        fixture->runPass();
        QTRY_COMPARE(server->calls.size(), 2);
        QCOMPARE(server->calls.last().summary, u"While quiet"_s);
        QCOMPARE(server->calls.last().body, u"GitHub is degraded"_s);

        fixture->settings.setNotifications(false);
        serve(u"operational"_s);
        fixture->runPass();
        QTest::qWait(100);
        QCOMPARE(server->calls.size(), 2);
    }

    void actions()
    {
        QSignalSpy panel(changes.get(), &ChangeNotifier::openPanelRequested);
        QSignalSpy page(changes.get(), &ChangeNotifier::openPageRequested);
        serve(u"down"_s);
        fixture->runPass();
        QTRY_COMPARE(server->calls.size(), 1);
        const uint id = server->calls.first().id;
        server->invoke(id, u"open-page"_s);
        QTRY_COMPARE(page.size(), 1);
        QCOMPARE(page.first().first().toUrl(), *fixture->store.results().first().url);
        server->invoke(id, u"default"_s);
        QTRY_COMPARE(panel.size(), 1);
        server->invoke(id, u"silence-1h"_s);
        const QString source = fixture->store.results().first().id;
        QTRY_VERIFY(fixture->silence.entries().contains(source));
        QCOMPARE(fixture->silence.entries().value(source),
                 SilenceUntil::until(fixture->now.addSecs(3600)));
        // A closed notification, like someone else's, is not ours to act on any more.
        server->close(id);
        server->invoke(id, u"default"_s);
        QTest::qWait(100);
        QCOMPARE(panel.size(), 1);
    }

    // Feed text is escaped for a server that reads markup in bodies, and left as it is for one
    // that does not; summaries are inert for both. A server that starts later is used.
    void feedTextNeverBecomesMarkup()
    {
        const QString hostile = u"<a href=\"file:///etc/passwd\">docs</a> & co"_s;
        fixture->addSource(u"<b>Ops</b> & co"_s, "operational");
        fixture->runPass();
        QTest::qWait(100);
        struct Case {
            QStringList capabilities;
            QString body;
        } cases[] = {
            {{u"body"_s, u"actions"_s}, hostile + u" \u2014 down"_s},
            {{u"body"_s, u"body-markup"_s},
             u"&lt;a href=&quot;file:///etc/passwd&quot;&gt;docs&lt;/a&gt; &amp; co \u2014 down"_s},
        };
        for (const Case &test : cases) {
            server.reset();
            QDBusConnection::disconnectFromBus(u"fake-server"_s);
            QTRY_VERIFY(!notifier->isAvailable());
            server = std::make_unique<FakeNotificationServer>(
                QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"fake-server"_s),
                test.capabilities);
            for (const QString &status : {u"operational"_s, u"down"_s}) {
                fixture->server.route(
                    "/feed1.json",
                    {200,
                     relayFeed("operational", "[" + relayComponent(u"x"_s, hostile, status) + "]"),
                     {}});
                QTest::qWait(100);
                server->calls.clear();
                fixture->runPass();
            }
            QTRY_COMPARE(server->calls.size(), 1);
            QCOMPARE(server->calls.first().body, test.body);
            QCOMPARE(server->calls.first().summary,
                     u"\u2039b\u203aOps\u2039/b\u203a \uff06 co is down"_s);
        }
    }

    void withoutAServerTheTrayTells()
    {
        cleanup();
        fixture = std::make_unique<StoreFixture>();
        fixture->addSource(u"GitHub"_s, "operational");
        notifier = Notifier::forThisSession();
        QVERIFY(!notifier->isAvailable());
        changes = std::make_unique<ChangeNotifier>(
            services(fixture->environment), *notifier,
            [this](const QString &title, const QString &, bool) { fallback.append(title); });
        fixture->runPass();
        fixture->server.route("/feed0.json", {200, relayFeed("degraded"), {}});
        fixture->runPass();
        QCOMPARE(fallback, QStringList{u"GitHub is degraded"_s});
    }
};

QTEST_GUILESS_MAIN(TestNotifications)
#include "test_notifications.moc"
