// lanternic-serve: the poll loop of the app over its own settings file, headless, with the
// latest pass served over HTTP for a team's desktops and its monitoring.

#include "config/sourceregistry.h"
#include "environment/appenvironment.h"
#include "model/settingskeys.h"
#include "serve/forwarder.h"
#include "serve/watchserver.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSettings>
#include <QSocketNotifier>
#include <QUuid>
#include <csignal>
#include <cstdio>
#include <memory>
#include <unistd.h>

using namespace lanternic;
using namespace Qt::StringLiterals;

namespace {

int signalPipe[2] = {-1, -1};

void onSignal(int number)
{
    const char byte = char(number);
    [[maybe_unused]] const auto written = ::write(signalPipe[1], &byte, 1);
}

int usageError(const QString &message)
{
    std::fprintf(stderr, "lanternic-serve: %s\n", qUtf8Printable(message));
    return 2;
}

// "127.0.0.1:9317", "[::1]:9317" or ":9317" (every address).
std::optional<std::pair<QHostAddress, quint16>> listenAddress(const QString &text)
{
    const qsizetype colon = text.lastIndexOf(u':');
    if (colon < 0)
        return std::nullopt;
    bool ok = false;
    const uint port = text.mid(colon + 1).toUInt(&ok);
    QString host = text.left(colon);
    if (host.startsWith(u'[') && host.endsWith(u']'))
        host = host.mid(1, host.size() - 2);
    const QHostAddress address =
        host.isEmpty() ? QHostAddress(QHostAddress::Any) : QHostAddress(host);
    if (!ok || port > 65535 || address.isNull())
        return std::nullopt;
    return std::pair{address, quint16(port)};
}

// Named once and for good, so that its feed, read back through other watchers, is known.
QString watcherId(QSettings &defaults)
{
    QString id = defaults.value(SettingsKeys::watcherId).toString();
    if (QUuid::fromString(id).isNull()) {
        id = QUuid::createUuid().toString(QUuid::WithoutBraces);
        defaults.setValue(SettingsKeys::watcherId, id);
    }
    return id;
}

// Signals reach the event loop through a pipe it watches: SIGTERM and SIGINT quit, SIGHUP
// re-reads the settings file and checks at once, as daemons do. Nothing when the pipe cannot
// be made.
std::unique_ptr<QSocketNotifier> handleSignals(std::function<void()> reload)
{
    if (::pipe(signalPipe) != 0)
        return nullptr;
    auto notifier = std::make_unique<QSocketNotifier>(signalPipe[0], QSocketNotifier::Read);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, QCoreApplication::instance(),
                     [reload = std::move(reload)] {
                         char byte = 0;
                         if (::read(signalPipe[0], &byte, 1) != 1)
                             return;
                         if (byte == SIGHUP) {
                             std::fputs("lanternic-serve: reloading the settings\n", stderr);
                             reload();
                         } else {
                             QCoreApplication::quit();
                         }
                     });
    std::signal(SIGTERM, onSignal);
    std::signal(SIGINT, onSignal);
    std::signal(SIGHUP, onSignal);
    return notifier;
}

// The secret that signs webhook messages: the file's contents without the line break at its
// end, as "$(cat FILE)" reads it in a shell. Nothing when it cannot be read or is empty.
std::optional<QByteArray> readSecret(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray secret = file.readAll();
    while (secret.endsWith('\n') || secret.endsWith('\r'))
        secret.chop(1);
    return secret.isEmpty() ? std::nullopt : std::optional(secret);
}

// The stored forwarding addresses; those that cannot be read are told and left out.
QList<ForwardTarget> storedTargets(const QSettings &defaults)
{
    QStringList rejected;
    const QList<ForwardTarget> targets =
        ForwardTarget::parseLines(SettingsKeys::read(defaults, SettingsKeys::forward), &rejected);
    for (const QString &problem : std::as_const(rejected))
        std::fprintf(stderr, "lanternic-serve: forward %s; left out\n", qUtf8Printable(problem));
    return targets;
}

} // namespace

int main(int argc, char **argv)
{
    preferLeanEventDispatcher();
    QCoreApplication app(argc, argv);
    // Scripts read what it writes: English and C formats, whatever the desktop's language.
    QLocale::setDefault(QLocale::c());
    QCoreApplication::setApplicationName(u"lanternic-serve"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(LANTERNIC_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Runs Lanternic's checks headless and serves the latest pass over HTTP."_s);
    const QCommandLineOption settings(u"settings"_s, u"The settings file to keep (required)."_s,
                                      u"FILE"_s);
    const QCommandLineOption interval(
        u"interval"_s, u"Minutes between passes, 1 to 60 (default: stored)."_s, u"MINUTES"_s);
    const QCommandLineOption listen(u"listen"_s, u"Where to serve (default 127.0.0.1:9317)."_s,
                                    u"ADDRESS:PORT"_s, u"127.0.0.1:9317"_s);
    const QCommandLineOption relayName(u"relay-name"_s,
                                       u"The name of the served relay feed (default Lanternic)."_s,
                                       u"NAME"_s, u"Lanternic"_s);
    const QCommandLineOption source(
        u"source"_s, u"A source line 'Label=value' to watch, kept in the settings (repeatable)."_s,
        u"LINE"_s);
    const QCommandLineOption forward(
        u"forward"_s,
        u"Where to send news: ntfy[s]://HOST[:PORT]/TOPIC or json[s]://HOST[:PORT]/PATH, kept in "
        u"the settings (repeatable)."_s,
        u"URL"_s);
    const QCommandLineOption secretFile(u"webhook-secret-file"_s,
                                        u"Sign JSON webhook messages with the secret in FILE."_s,
                                        u"FILE"_s);
    parser.addOptions({settings, interval, listen, relayName, source, forward, secretFile});
    parser.addHelpOption();
    parser.addVersionOption();
    if (!parser.parse(QCoreApplication::arguments()))
        return usageError(parser.errorText());
    if (parser.isSet(u"help"_s)) {
        std::fputs(qUtf8Printable(parser.helpText()), stdout);
        return 0;
    }
    if (parser.isSet(u"version"_s)) {
        std::fputs("lanternic-serve " LANTERNIC_VERSION "\n", stdout);
        return 0;
    }
    if (!parser.isSet(settings))
        return usageError(u"--settings FILE is required"_s);
    std::optional<int> minutes;
    if (parser.isSet(interval)) {
        bool ok = false;
        minutes = parser.value(interval).toInt(&ok);
        if (!ok || *minutes < 1 || *minutes > 60)
            return usageError(u"--interval takes 1 to 60 minutes"_s);
    }
    const auto address = listenAddress(parser.value(listen));
    if (!address)
        return usageError(u"not an ADDRESS:PORT: %1"_s.arg(parser.value(listen)));

    for (const QString &address : parser.values(forward)) {
        QString reason;
        if (!ForwardTarget::parse(address, &reason))
            return usageError(u"--forward %1: %2"_s.arg(address, reason));
    }
    std::optional<QByteArray> secret;
    if (parser.isSet(secretFile)) {
        secret = readSecret(parser.value(secretFile));
        if (!secret)
            return usageError(u"cannot read a secret from %1"_s.arg(parser.value(secretFile)));
    }

    QSettings defaults(parser.value(settings), QSettings::IniFormat);
    if (parser.isSet(forward))
        defaults.setValue(SettingsKeys::forward, parser.values(forward).join(u'\n'));
    if (parser.isSet(source)) {
        const QString text = parser.values(source).join(u'\n');
        if (!SourceRegistry::hasUsableLine(text))
            return usageError(u"no usable source in --source \"%1\""_s.arg(parser.value(source)));
        defaults.setValue(SettingsKeys::sources, text);
    }
    const QString identity = watcherId(defaults);
    AppEnvironment environment(defaults, {}, AppEnvironment::LaunchPass::loop);
    environment.store->setRelayIdentity(identity);
    if (minutes)
        environment.store->setPollIntervalOverride(std::chrono::minutes(*minutes));
    WatchServer server(*environment.store, parser.value(relayName));
    const quint16 port = server.listen(address->first, address->second);
    if (port == 0)
        return usageError(u"cannot listen on %1"_s.arg(parser.value(listen)));
    std::fprintf(stderr, "lanternic-serve: serving on %s port %u\n",
                 qUtf8Printable(address->first.toString()), unsigned(port));

    // Its outbox is kept beside the settings file, in the watcher's state folder.
    Forwarder forwarder(
        {*environment.store, environment.notificationRules, environment.session},
        QFileInfo(defaults.fileName()).absoluteDir().filePath(u"forward-outbox.json"_s), {});
    QObject::connect(&forwarder, &Forwarder::countsChanged, &server,
                     [&] { server.setForwardCounts(forwarder.counts()); });
    QObject::connect(
        &forwarder, &Forwarder::deliveryFailed,
        [](const QString &address, const QString &why, std::chrono::milliseconds wait) {
            // Without a password the address may hold.
            const QString shown = QUrl(address).toString(QUrl::RemoveUserInfo);
            std::fprintf(
                stderr, "lanternic-serve: forwarding to %s failed (%s); trying again in %lld s\n",
                qUtf8Printable(shown), qUtf8Printable(why), qlonglong(wait.count() / 1000));
        });
    forwarder.setSecret(secret.value_or(QByteArray()));
    forwarder.setTargets(storedTargets(defaults));

    // SIGTERM and SIGINT end the loop (the history is saved with every pass already); SIGHUP
    // reloads.
    const std::unique_ptr<QSocketNotifier> handler = handleSignals([&] {
        environment.reload();
        forwarder.setTargets(storedTargets(defaults));
        if (parser.isSet(secretFile)) {
            if (const auto again = readSecret(parser.value(secretFile)))
                forwarder.setSecret(*again);
            else
                std::fputs("lanternic-serve: cannot read the secret again; kept the last\n",
                           stderr);
        }
    });
    if (!handler)
        return 1;

    const int status = QCoreApplication::exec();
    defaults.sync();
    return status;
}
