#include "app/escapeclosingwindow.h"
#include "app/panelwindow.h"
#include "app/updatechecker.h"
#include "platform/linux/xdgautostart.h"
#include "platform/loginitem.h"
#include "present/displaytext.h"
#include "present/historyreport.h"
#include "sources/network.h"
#include "store/timetext.h"
#include "support/loopbackserver.h"
#include "support/storefixture.h"
#include "ui/settingsview.h"
#include "ui/translations.h"

#include <QApplication>
#include <QLabel>
#include <QLocale>
#include <QSignalSpy>
#include <QTest>

using namespace lanternic;
using namespace Qt::StringLiterals;

namespace {

QByteArray appcast(const QList<std::pair<QByteArray, QByteArray>> &releases)
{
    QByteArray items;
    for (const auto &[version, link] : releases) {
        items += "<item><title>Lanternic " + version + "</title><sparkle:version>" + version +
                 "</sparkle:version><enclosure url=\"" + link + "\" length=\"1\"/></item>";
    }
    return "<?xml version=\"1.0\"?><rss version=\"2.0\" "
           "xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel>" +
           items + "</channel></rss>";
}

} // namespace

class TestApp : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // As the app runs in English: its plural forms installed.
    void initTestCase()
    {
        QCOMPARE(installTranslations(QLocale(QLocale::English),
                                     {u"/nowhere"_s, QStringLiteral(LANTERNIC_BUILD_TRANSLATIONS)},
                                     this),
                 QString());
    }

    // Each shipped language, plural forms included; English again once they go.
    void translations_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("German") << u"de_DE"_s
                                << QStringList{
                                       u"Ausgefallen"_s,      u"1 Minute"_s,  u"5 Minuten"_s,
                                       u"vor 3 Tagen"_s,      u"Allgemein"_s, u"Wird untersucht"_s,
                                       u"schwerer Ausfall"_s, u"96,3 %"_s,    u"14:05"_s};
        QTest::newRow("French") << u"fr_FR"_s
                                << QStringList{
                                       u"En panne"_s,       u"1 minute"_s, u"5 minutes"_s,
                                       u"il y a 3 jours"_s, u"Général"_s,  u"Analyse en cours"_s,
                                       u"panne majeure"_s,  u"96,3 %"_s,   u"14:05"_s};
        QTest::newRow("Spanish") << u"es_ES"_s << QStringList{u"Caído"_s,
                                                              u"1 minuto"_s,
                                                              u"5 minutos"_s,
                                                              u"hace 3 días"_s,
                                                              u"General"_s,
                                                              u"Investigando"_s,
                                                              u"interrupción grave"_s,
                                                              u"96,3 %"_s,
                                                              u"14:05"_s};
        // Not shipped: English words, the language's own numbers.
        QTest::newRow("Italian, not shipped")
            << u"it_IT"_s << QStringList{u"Down"_s,         u"1 minute"_s, u"5 minutes"_s,
                                         u"3 d ago"_s,      u"General"_s,  u"Investigating"_s,
                                         u"major outage"_s, u"96,3 %"_s,   u"14:05"_s};
        // A twelve-hour clock where the language reads one.
        QTest::newRow("English, United States")
            << u"en_US"_s << QStringList{u"Down"_s,         u"1 minute"_s, u"5 minutes"_s,
                                         u"3 d ago"_s,      u"General"_s,  u"Investigating"_s,
                                         u"major outage"_s, u"96.3 %"_s,   u"2:05 PM"_s};
    }

    void translations()
    {
        QFETCH(QString, locale);
        QFETCH(QStringList, expected);
        const auto texts = [] {
            const QDateTime now = QDateTime::currentDateTimeUtc();
            return QStringList{
                label(Health::down), GeneralSettingsView::tr("%n minute(s)", nullptr, 1),
                GeneralSettingsView::tr("%n minute(s)", nullptr, 5),
                DisplayText::agoText(now.addDays(-3), now), SettingsView::tr("General"),
                // A vendor's words reach people as ours, numbers as the language writes them.
                DisplayText::stageText(u"INVESTIGATING"_s),
                DisplayText::componentStatusText(u"major_outage"_s), uptimeText(0.9634),
                TimeText::clockText(QDateTime(QDate(2026, 11, 25), QTime(14, 5)))};
        };
        {
            QObject owner;
            installTranslations(QLocale(locale), {QStringLiteral(LANTERNIC_BUILD_TRANSLATIONS)},
                                &owner);
            const QLocale before;
            QLocale::setDefault(QLocale(locale));
            const QStringList got = texts();
            QLocale::setDefault(before);
            QCOMPARE(got, expected);
        }
        QCOMPARE(texts().first(), u"Down"_s);
    }

    void windowsKeepToTheirScreen()
    {
        const QSize panel(320, 400);
        QCOMPARE(PanelWindow::placement({1990, 20}, panel, QRect(1920, 0, 1280, 800)),
                 QPoint(1924, 20));
        // Wider than the space: the right-hand limit wins.
        QCOMPARE(PanelWindow::placement({150, 20}, panel, QRect(0, 0, 300, 500)), QPoint(-24, 20));
        QCOMPARE(PanelWindow::placement({100, 20}, panel, std::nullopt), QPoint(-60, 20));
        // The settings window on 1280 × 800 at scale 2, less a 24-pixel top bar, frame included.
        QCOMPARE(EscapeClosingWindow::centredFit({640, 460}, {0, 12, 640, 388}, {8, 40, 8, 8}),
                 QRect(8, 52, 624, 340));
    }

    void xdgAutostartEntry()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(u"config/autostart/lanternic.desktop"_s);
        XdgAutostart autostart(path, u"/opt/Lanternic \"dev\"/lanternic"_s);
        QCOMPARE(autostart.status(), LoginItemService::Status::notRegistered);
        QCOMPARE(autostart.registerItem(), std::nullopt);
        QCOMPARE(autostart.status(), LoginItemService::Status::enabled);
        QFile entry(path);
        QVERIFY(entry.open(QIODevice::ReadOnly));
        const QByteArray text = entry.readAll();
        QVERIFY(text.startsWith("[Desktop Entry]\n"));
        QVERIFY(text.contains("Exec=\"/opt/Lanternic \\\"dev\\\"/lanternic\"\n"));
        entry.close();

        QVERIFY(entry.open(QIODevice::Append));
        entry.write("Hidden = true\n");
        entry.close();
        QCOMPARE(autostart.status(), LoginItemService::Status::notRegistered);
        QCOMPARE(autostart.unregisterItem(), std::nullopt);
        QVERIFY(!QFile::exists(path));
        QVERIFY(XdgAutostart(u"/proc/lanternic.desktop"_s, u"x"_s).registerItem().has_value());
    }

    void updateChecks_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("message");
        QTest::newRow("newer") << 200
                               << appcast({{"0.1.0", "https://e.example/0.1.0"},
                                           {"0.3.1", "https://e.example/0.3.1"},
                                           {"0.2.0", "https://e.example/0.2.0"}})
                               << u"Lanternic 0.3.1 is available."_s;
        QTest::newRow("current") << 200 << appcast({{"0.1.0", "https://e.example/a"}})
                                 << u"You have the newest version of Lanternic."_s;
        QTest::newRow("missing")
            << 404 << QByteArray()
            << u"Could not check for updates: the update feed answered with HTTP status 404"_s;
    }

    void updateChecks()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        LoopbackServer server;
        server.route("/appcast.xml", {status, body, {}});
        QTemporaryDir dir;
        QSettings defaults(dir.filePath(u"s.ini"_s), QSettings::IniFormat);
        network::Session session;
        UpdateChecker checker(defaults, session, server.url("/appcast.xml"), u"0.1.0"_s);
        QSignalSpy checked(&checker, &UpdateChecker::checked);
        // Asked for, then the daily check: the same answer, each saying whose it is.
        checker.checkForUpdates();
        QVERIFY(checked.wait(5000));
        checker.checkInBackground();
        QVERIFY(checked.wait(5000));
        for (bool requested : {true, false}) {
            const auto outcome =
                checked.at(requested ? 0 : 1).first().value<UpdateChecker::Outcome>();
            QTEST(outcome.message(), "message");
            QCOMPARE(outcome.requested, requested);
            if (outcome.release)
                QCOMPARE(outcome.release->link, QUrl(u"https://e.example/0.3.1"_s));
        }
    }

    void updatesWithoutAFeed()
    {
        QTemporaryDir dir;
        QSettings defaults(dir.filePath(u"s.ini"_s), QSettings::IniFormat);
        network::Session session;
        UpdateChecker checker(defaults, session, QUrl(), u"0.1.0"_s);
        QSignalSpy checked(&checker, &UpdateChecker::checked);
        checker.checkForUpdates();
        QCOMPARE(checked.first().first().value<UpdateChecker::Outcome>().message(),
                 u"This build of Lanternic gets its updates from your package manager."_s);
    }
};

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    TestApp test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_app.moc"
