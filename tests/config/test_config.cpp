#include "config/appsettings.h"
#include "config/catalog.h"
#include "config/settingsfile.h"
#include "config/sourceregistry.h"
#include "support/fixtures.h"

#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace lanternic;
using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(lanternic::SourceKind)

class TestConfig : public QObject {
    Q_OBJECT

    QTemporaryDir dir;
    std::unique_ptr<QSettings> defaults;

    // Settings written by an earlier run, read back from the file as the app would.
    void store(const QString &key, const QVariant &value)
    {
        defaults->setValue(key, value);
        defaults->sync();
        defaults = std::make_unique<QSettings>(defaults->fileName(), QSettings::IniFormat);
    }

private Q_SLOTS:
    void init() { defaults = freshSettings(dir); }

    void sourcesMigration_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("loaded");
        QTest::newRow("comma form") << u"GitHub=www.githubstatus.com, Linear = linearstatus.com,"_s
                                    << u"GitHub=www.githubstatus.com\nLinear = linearstatus.com"_s;
        QTest::newRow("commas with a line feed") << u"a=b, c=d\ne=f"_s << u"a=b, c=d\ne=f"_s;
        QTest::newRow("no comma") << u"  a=b  "_s << u"  a=b  "_s;
    }

    void sourcesMigration()
    {
        QFETCH(QString, stored);
        store(u"Lanternic.sources"_s, stored);
        AppSettings settings(*defaults);
        QTEST(settings.sourcesText(), "loaded");
        QTEST(defaults->value(u"Lanternic.sources"_s).toString(), "loaded");
    }

    void storedValues_data()
    {
        QTest::addColumn<QVariant>("interval");
        QTest::addColumn<QVariant>("show");
        QTest::addColumn<int>("minutes");
        QTest::addColumn<bool>("showOperational");
        QTest::newRow("five, false") << QVariant(5) << QVariant(false) << 5 << false;
        QTest::newRow("zero reads as two") << QVariant(0) << QVariant(true) << 2 << true;
        QTest::newRow("number is no boolean") << QVariant(1) << QVariant(0) << 1 << true;
    }

    void storedValues()
    {
        QFETCH(QVariant, interval);
        QFETCH(QVariant, show);
        if (interval.isValid())
            store(u"Lanternic.refreshIntervalMinutes"_s, interval);
        if (show.isValid())
            store(u"Lanternic.showOperational"_s, show);
        AppSettings settings(*defaults);
        QTEST(settings.refreshIntervalMinutes(), "minutes");
        QTEST(settings.showOperational(), "showOperational");
    }

    void writesGoThroughButNotifyOnlyOnChange()
    {
        AppSettings settings(*defaults);
        QSignalSpy changed(&settings, &AppSettings::refreshIntervalMinutesChanged);
        settings.setRefreshIntervalMinutes(5);
        QCOMPARE(changed.size(), 1);
        defaults->remove(u"Lanternic.refreshIntervalMinutes"_s);
        settings.setRefreshIntervalMinutes(5);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(defaults->value(u"Lanternic.refreshIntervalMinutes"_s).toInt(), 5);
    }

    void sources_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("home");
        QTest::newRow("known host") << u"GitHub=www.githubstatus.com"_s << u"github"_s
                                    << u"https://www.githubstatus.com/api/v2/summary.json"_s
                                    << u"https://www.githubstatus.com"_s;
        QTest::newRow("host with sub-page")
            << u"Team = status.example.com/team/"_s << u"status.example.com/team"_s
            << u"https://status.example.com/team/api/v2/summary.json"_s
            << u"https://status.example.com/team/"_s;
        QTest::newRow("page over http, its document over https")
            << u"P=http://status.example.com:8443"_s << u"status.example.com:8443"_s
            << u"https://status.example.com:8443/api/v2/summary.json"_s
            << u"http://status.example.com:8443"_s;
        QTest::newRow("user and fragment are not fetched")
            << u"U=https://me@status.example.com/#top"_s << u"status.example.com"_s
            << u"https://status.example.com/api/v2/summary.json"_s
            << u"https://me@status.example.com/#top"_s;
        QTest::newRow("page URL with sub-page fetched as written")
            << u"Team=https://status.example.com/team"_s << u"status.example.com/team"_s
            << u"https://status.example.com/team"_s << u"https://status.example.com/team"_s;
        QTest::newRow("endpoint by query")
            << u"Q=http://127.0.0.1:8080/s?x=1"_s << u"127.0.0.1:8080/s"_s
            << u"http://127.0.0.1:8080/s?x=1"_s << u"http://127.0.0.1:8080/s?x=1"_s;
        QTest::newRow("known summary URL keeps the known id")
            << u"GH=https://www.githubstatus.com/api/v2/summary.json"_s << u"github"_s
            << u"https://www.githubstatus.com/api/v2/summary.json"_s
            << u"https://www.githubstatus.com/api/v2/summary.json"_s;
        QTest::newRow("known host in capitals is not known")
            << u"GH=WWW.githubstatus.com"_s << u"WWW.githubstatus.com"_s
            << u"https://www.githubstatus.com/api/v2/summary.json"_s
            << u"https://www.githubstatus.com"_s;
        QTest::newRow("updog provider page")
            << u"AWS=https://updog.ai/status/amazonaws"_s << u"updog.ai/status/amazonaws"_s
            << u"https://updog.ai/data/third-party-outages.json"_s
            << u"https://updog.ai/status/amazonaws"_s;
    }

    void sources()
    {
        QFETCH(QString, line);
        const QList<JSONSource> sources = SourceRegistry::sources(line, {});
        QCOMPARE(sources.size(), 1);
        QTEST(sources[0].id, "id");
        QTEST(sources[0].url.toString(), "url");
        QTEST(sources[0].homeURL.toString(), "home");
    }

    // A bare host is made into its address from its parts, a shortcut that must give what
    // parsing "https://" and the host gives, valid or not.
    void bareHostsReadAsParsed_data()
    {
        QTest::addColumn<QString>("host");
        for (const char *host :
             {"status.example.com", "WWW.GitHubStatus.com", "127.0.0.1", "999.1.1.1", "1.2.3",
              "0x7f.1", "a..b", "a.b.", "xn--bcher-kva.example", "xn--a.example", "a-.example",
              "123", "localhost", "a.-b", "x_y.example"})
            QTest::newRow(host) << QString::fromLatin1(host);
    }

    void bareHostsReadAsParsed()
    {
        QFETCH(QString, host);
        const QUrl parsed(u"https://"_s + host, QUrl::StrictMode);
        const QList<JSONSource> sources = SourceRegistry::sources(u"S="_s + host, {});
        const bool made = sources.size() == 1 && sources[0].name == u"S"_s;
        QCOMPARE(made, parsed.isValid() && !parsed.host().isEmpty());
        if (made) {
            QCOMPARE(sources[0].homeURL, parsed);
            QCOMPARE(sources[0].homeURL.toString(QUrl::FullyEncoded),
                     parsed.toString(QUrl::FullyEncoded));
        }
    }

    void updogPaths_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<std::optional<QString>>("provider");
        QTest::addColumn<std::optional<QString>>("service");
        const std::optional<QString> none;
        QTest::newRow("provider") << u"/status/amazonaws"_s << std::optional(u"amazonaws"_s)
                                  << none;
        QTest::newRow("service") << u"/status/amazonaws/services/ec2"_s
                                 << std::optional(u"amazonaws"_s) << std::optional(u"ec2"_s);
        QTest::newRow("other page") << u"/about/amazonaws"_s << none << none;
    }

    void updogPaths()
    {
        QFETCH(QString, path);
        const QList<JSONSource> sources = SourceRegistry::sources(u"U=updog.ai"_s + path, {});
        QTEST(sources[0].updogProvider, "provider");
        QTEST(sources[0].updogService, "service");
    }

    void repeatsAreNumbered()
    {
        const auto sources = SourceRegistry::sources(
            u"A=linearstatus.com\nB=linearstatus.com\nC=https://linearstatus.com"_s, {});
        QCOMPARE(sources.size(), 3);
        QCOMPARE(sources[0].id, u"linearstatus.com"_s);
        QCOMPARE(sources[1].id, u"linearstatus.com-2"_s);
        QCOMPARE(sources[2].id, u"linearstatus.com-3"_s);
    }

    void incidentHostsUseTheWidget()
    {
        const QHash<QString, SourceKind> kinds{{u"status.example.com"_s, SourceKind::incidentio}};
        const auto sources =
            SourceRegistry::sources(u"S=Status.Example.com/Api\nT=status.example.com"_s, kinds);
        QCOMPARE(sources[0].url.toString(QUrl::FullyEncoded),
                 u"https://status.example.com/proxy/Status.Example.com?subpage_slug=Api"_s);
        QCOMPARE(sources[1].url.toString(),
                 u"https://status.example.com/proxy/status.example.com"_s);
    }

    // A pass reads the same lines as the last: it shares the list made then, and anything that
    // changes what the lines make has them made again.
    void sourceListsAreMadeAgainOnlyOnChange()
    {
        SourceListCache cache;
        const QString text = u"A=linearstatus.com"_s;
        const QList<JSONSource> first = cache.sources(text, {}, {});
        QCOMPARE(cache.sources(text, {}, {}).constData(), first.constData());

        const QHash<QString, SourceKind> kinds{{u"linearstatus.com"_s, SourceKind::incidentio}};
        QVERIFY(cache.sources(text, kinds, {}).first().url != first.first().url);
        QVERIFY(cache.sources(text, kinds, {.treatMaintenanceAsOperational = true})
                    .first()
                    .treatAsOperational.contains(u"under_maintenance"_s));
        QCOMPARE(cache.sources(u"B=linearstatus.com"_s, kinds, {}).first().name, u"B"_s);

        const QStringList hosts = cache.baseHosts(text);
        QCOMPARE(hosts, QStringList{u"linearstatus.com"_s});
        QCOMPARE(cache.baseHosts(text).constData(), hosts.constData());
        QCOMPARE(cache.baseHosts(u"B=www.githubstatus.com"_s),
                 QStringList{u"www.githubstatus.com"_s});

        // Making the sources reads the bare hosts on the way, as baseHosts() finds them.
        const QString mixed =
            u"A=Status.Example.com\nB=status.example.com\nC=status.example.com\n"
            u"D=https://x.example.org/api/v2/summary.json\n"
            u"E=updog.ai/status/amazonaws\nF=ftp://nope\nG=other.example.net/sub"_s;
        cache.sources(mixed, {}, {});
        QCOMPARE(cache.baseHosts(mixed), SourceRegistry::baseHosts(mixed));
        QCOMPARE(cache.baseHosts(mixed).size(), 3);
    }

    // The catalogue: ranked matches by name and host, the lines it adds, the kinds it knows.
    void catalogue()
    {
        const Catalog catalog = Catalog::fromTsv(
            "name\turl\tplatform\torigin\n"
            "Gitpod\thttps://www.gitpodstatus.com\tstatuspage\tsentry\n"
            "Digital Git\thttps://status.digitalgit.example\tunknown\tstatusphere\n"
            "GitHub\thttps://www.githubstatus.com\tstatuspage\tsentry\n"
            "Legit Co\thttps://status.legit.example\tunknown\tstatusphere\n"
            "Acme\thttps://status.gitacme.example\tinstatus\tstatusphere\n"
            "Slack\thttps://slack-status.com\tslack\tsentry\n"
            "Google Cloud\thttps://status.cloud.google.com\tgoogle\tsentry\n"
            "AWS (feed)\thttps://status.aws.amazon.com/rss/all.rss\tfeed\tlanternic\n"
            "No address\tnot a url\tunknown\tsentry\n");
        QCOMPARE(catalog.entries().size(), 8);
        QStringList names;
        for (const CatalogEntry &entry : catalog.search({u"Git"_s}))
            names.append(entry.name);
        QCOMPARE(names, (QStringList{u"GitHub"_s, u"Gitpod"_s, u"Digital Git"_s, u"Legit Co"_s,
                                     u"Acme"_s}));
        QCOMPARE(catalog.search({u"git"_s, u"hub"_s}).size(), 1);
        QVERIFY(catalog.search({u"nothing like it"_s}).isEmpty());
        QCOMPARE(catalog.search({}).size(), 8);

        const QList<CatalogEntry> all = catalog.entries();
        QCOMPARE(all[2].sourceLine(), u"GitHub=www.githubstatus.com"_s);
        QCOMPARE(all[2].knownKind(), (std::pair{u"www.githubstatus.com"_s, SourceKind::atlassian}));
        QCOMPARE(all[4].knownKind()->second, SourceKind::instatus);
        QCOMPARE(all[1].knownKind(), std::nullopt);
        QCOMPARE(all[5].sourceLine(), u"Slack=https://slack-status.com/api/v2.0.0/current"_s);
        QCOMPARE(all[6].sourceLine(),
                 u"Google Cloud=https://status.cloud.google.com/incidents.json"_s);
        QCOMPARE(all[7].sourceLine(), u"AWS (feed)=https://status.aws.amazon.com/rss/all.rss"_s);
        QCOMPARE(all[7].knownKind(), std::nullopt);
        QCOMPARE(Catalog::builtIn().entries().size(), 1230);
        QVERIFY(Catalog::notices().contains(u"Copyright (c) 2024 Metoro Inc."_s));
    }

    void defaultsStandInForUnusableText()
    {
        const QStringList defaults =
            u"updog.ai/status/amazonaws claude cloudflare "
            u"status.datadoghq.eu github linearstatus.com openai"_s.split(u' ');
        for (const QString &text : {QString(), u"X=https://"_s}) {
            QStringList ids;
            for (const JSONSource &source : SourceRegistry::sources(text, {}))
                ids.append(source.id);
            QCOMPARE(ids, defaults);
            QVERIFY(SourceRegistry::baseHosts(text).isEmpty());
        }
    }

    void leftoversOfKilledWritersGo()
    {
        QTemporaryDir here;
        const QString settings = here.filePath(u"Lanternic.conf"_s);
        const QDateTime now = QDateTime::currentDateTimeUtc();
        auto make = [&](const QString &name, qint64 age) {
            QFile file(here.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("x");
            file.flush();
            file.setFileTime(now.addSecs(-age), QFileDevice::FileModificationTime);
        };
        make(u"Lanternic.conf"_s, 3600);
        make(u"Lanternic.conf.PjMdsL"_s, 3600); // orphaned
        make(u"Lanternic.conf.Ab12Cd"_s, 5);    // perhaps being written right now
        make(u"Lanternic.conf.backup"_s, 3600); // not ours
        // A lock left by a process that is gone: the same form QLockFile writes.
        QFile lock(settings + u".lock"_s);
        QVERIFY(lock.open(QIODevice::WriteOnly));
        lock.write("999999999\nLanternic\n" + QSysInfo::machineHostName().toUtf8() + "\n");
        lock.close();
        SettingsFile::removeLeftovers(settings, now);
        const QStringList left = QDir(here.path()).entryList(QDir::Files);
        QCOMPARE(left, (QStringList{u"Lanternic.conf"_s, u"Lanternic.conf.Ab12Cd"_s,
                                    u"Lanternic.conf.backup"_s}));
    }
};

QTEST_GUILESS_MAIN(TestConfig)
#include "test_config.moc"
