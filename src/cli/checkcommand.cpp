#include "cli/checkcommand.h"

#include "model/urls.h"
#include "sources/network.h"
#include "store/healthlog.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdio>

namespace lanternic::cli {

using namespace Qt::StringLiterals;

namespace {

std::optional<QUrl> webUrl(const QString &text)
{
    auto url = parseUrl(text);
    if (!url || url->host().isEmpty() ||
        (url->scheme() != "http"_L1 && url->scheme() != "https"_L1))
        return std::nullopt;
    return url;
}

} // namespace

QString helpText()
{
    return uR"(Usage:
  lanternic-check [--settings FILE] [--source LABEL=VALUE]... [--json]
                                         Run one check pass over the configured sources
  lanternic-check read  [options] FILE   Read a status document from FILE (- for standard input)
  lanternic-check fetch [options] URL    Fetch URL and read whatever status document it serves
  lanternic-check catalog [--json] [WORDS...]
                                         List the public status pages of the built-in
                                         catalogue whose name or address holds the words
  lanternic-check sources [--settings FILE] [--source LABEL=VALUE]...
                                         Tell what each line of the sources became
  lanternic-check history [--settings FILE] [--days N] [--json]
                                         Uptime and troubles per source over the last N
                                         days (default 7, at most 90)

A pass prints one line per source and the summary (or, with --json, one JSON object);
read and fetch print the result as one JSON object. The exit status is 0 (operational),
1 (degraded), 2 (down) or 3 (unknown, or a usage error).

Options of a pass:
  --settings FILE                Use this settings file and keep what the pass learns in it,
                                 as the app does (default: read your own settings, change
                                 nothing)
  --source LABEL=VALUE           Check this source instead of the configured ones
                                 (repeatable)
  --json                         Print the outcome as one JSON object (--format json)
  --format FORMAT                text (the default), json, relay (a "lanternic.v1" feed),
                                 waybar (a line for a waybar custom module), nagios (a
                                 monitoring plugin's output), i3blocks (full text, short
                                 text and colour; exit status 33 when something is down)
                                 or line (the health symbol and the summary)
  --relay-name NAME              relay: the feed's name (default "Lanternic")
  --relay-url URL                relay: the page the feed links to
  --short                        waybar: a health glyph and the issue count as the text

Options of read and fetch:
  --id ID                        The source's id (default "source")
  --name NAME                    The source's display name (default "Source")
  --home URL                     The source's home page (default: the fetched URL, or
                                 https://status.invalid when reading a file)
  --treat-as-operational WORD    Count this Statuspage component status as operational
                                 (repeatable)
  --include-group NAME           Keep only components of this Statuspage group (repeatable)
  --updog-provider NAME          The Updog provider to look up
  --updog-service NAME           The Updog provider's service to look up
  --pretty                       Indent the JSON output
  --help                         Show this help
  --version                      Show the version
)"_s;
}

std::variant<Invocation, UsageError> parseArguments(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const QCommandLineOption id(u"id"_s, QString(), u"ID"_s, u"source"_s);
    const QCommandLineOption name(u"name"_s, QString(), u"NAME"_s, u"Source"_s);
    const QCommandLineOption home(u"home"_s, QString(), u"URL"_s);
    const QCommandLineOption treat(u"treat-as-operational"_s, QString(), u"WORD"_s);
    const QCommandLineOption group(u"include-group"_s, QString(), u"NAME"_s);
    const QCommandLineOption provider(u"updog-provider"_s, QString(), u"NAME"_s);
    const QCommandLineOption service(u"updog-service"_s, QString(), u"NAME"_s);
    const QCommandLineOption pretty(u"pretty"_s);
    const QCommandLineOption settings(u"settings"_s, QString(), u"FILE"_s);
    const QCommandLineOption sourceLine(u"source"_s, QString(), u"LABEL=VALUE"_s);
    const QCommandLineOption json(u"json"_s);
    const QCommandLineOption format(u"format"_s, QString(), u"FORMAT"_s);
    const QCommandLineOption relayName(u"relay-name"_s, QString(), u"NAME"_s);
    const QCommandLineOption relayUrl(u"relay-url"_s, QString(), u"URL"_s);
    const QCommandLineOption shortText(u"short"_s);
    const QCommandLineOption days(u"days"_s, QString(), u"N"_s);
    const QCommandLineOption help(QStringList{u"help"_s, u"h"_s});
    const QCommandLineOption version(u"version"_s);
    parser.addOptions({id, name, home, treat, group, provider, service, pretty, settings,
                       sourceLine, json, format, relayName, relayUrl, shortText, days, help,
                       version});
    if (!parser.parse(arguments)) {
        // As typed, dashes and all, rather than the parser's own wording.
        const QStringList unknown = parser.unknownOptionNames();
        if (!unknown.isEmpty()) {
            for (const QString &argument : arguments.mid(1)) {
                if (argument.startsWith(u'-') &&
                    argument.section(u'=', 0, 0).endsWith(unknown.first()))
                    return UsageError{u"unknown option '%1'"_s.arg(argument.section(u'=', 0, 0))};
            }
        }
        return UsageError{parser.errorText()};
    }

    Invocation invocation;
    // A settings file may be new, but its folder must be there to keep it in.
    // Only a pass may start a settings file: the others would read a mistyped name as one
    // that is empty, and show the public defaults.
    const auto takeSettings = [&](Invocation &into,
                                  bool mustExist = false) -> std::optional<UsageError> {
        if (!parser.isSet(settings))
            return std::nullopt;
        const QFileInfo file(parser.value(settings));
        if (!file.absoluteDir().exists())
            return UsageError{u"no folder %1 for the settings file"_s.arg(file.absolutePath())};
        if (mustExist && !file.exists())
            return UsageError{u"no settings file %1"_s.arg(file.filePath())};
        into.settingsFile = parser.value(settings);
        return std::nullopt;
    };
    if (parser.isSet(help))
        return invocation;
    if (parser.isSet(version)) {
        invocation.mode = Mode::version;
        return invocation;
    }

    const QStringList positional = parser.positionalArguments();
    const QList<QCommandLineOption> readOptions{id,    name,     home,    treat,
                                                group, provider, service, pretty};
    const QList<QCommandLineOption> passOptions{settings,  sourceLine, json,     format,
                                                relayName, relayUrl,   shortText};
    auto firstSet = [&](const QList<QCommandLineOption> &options) {
        for (const QCommandLineOption &option : options) {
            if (parser.isSet(option))
                return std::optional<QString>(u"--"_s + option.names().first());
        }
        return std::optional<QString>();
    };
    if (positional.isEmpty()) {
        if (auto option = firstSet(readOptions))
            return UsageError{u"%1 goes with read or fetch (see --help)"_s.arg(*option)};
        invocation.mode = Mode::pass;
        if (auto missing = takeSettings(invocation))
            return *missing;
        if (parser.isSet(sourceLine))
            invocation.sourcesText = parser.values(sourceLine).join(u'\n');
        if (parser.isSet(json))
            invocation.report.format = Format::json;
        if (parser.isSet(format)) {
            static const QHash<QString, Format> formats{
                {u"text"_s, Format::text},     {u"json"_s, Format::json},
                {u"relay"_s, Format::relay},   {u"waybar"_s, Format::waybar},
                {u"nagios"_s, Format::nagios}, {u"i3blocks"_s, Format::i3blocks},
                {u"line"_s, Format::line}};
            const auto chosen = formats.constFind(parser.value(format));
            if (chosen == formats.constEnd())
                return UsageError{
                    u"unknown format \"%1\" (text, json, relay, waybar, nagios, i3blocks or "
                    u"line)"_s.arg(parser.value(format))};
            if (parser.isSet(json) && *chosen != Format::json)
                return UsageError{
                    u"--json and --format %1 do not go together"_s.arg(parser.value(format))};
            invocation.report.format = *chosen;
        }
        if (parser.isSet(relayName))
            invocation.report.relayName = parser.value(relayName);
        if (parser.isSet(relayUrl)) {
            invocation.report.relayUrl = webUrl(parser.value(relayUrl));
            if (!invocation.report.relayUrl)
                return UsageError{u"not an http or https URL: %1"_s.arg(parser.value(relayUrl))};
        }
        invocation.report.shortText = parser.isSet(shortText);
        return invocation;
    }
    const QString &command = positional.first();
    if (command == "history"_L1) {
        invocation.mode = Mode::history;
        if (positional.size() > 1)
            return UsageError{u"history takes no words (see --help)"_s};
        for (const QCommandLineOption &option : readOptions + passOptions) {
            const QString name = option.names().first();
            if (parser.isSet(option) && name != "json"_L1 && name != "settings"_L1)
                return UsageError{u"--%1 does not go with history (see --help)"_s.arg(name)};
        }
        if (auto missing = takeSettings(invocation, true))
            return *missing;
        if (parser.isSet(json))
            invocation.report.format = Format::json;
        if (parser.isSet(days)) {
            bool ok = false;
            invocation.days = parser.value(days).toInt(&ok);
            if (!ok || invocation.days < 1 || invocation.days > HealthLog::keptDays)
                return UsageError{u"--days takes 1 to %1"_s.arg(HealthLog::keptDays)};
        }
        return invocation;
    }
    if (parser.isSet(days))
        return UsageError{u"--days goes with history (see --help)"_s};
    if (command == "catalog"_L1 || command == "sources"_L1) {
        const bool catalog = command == "catalog"_L1;
        const QStringList allowed =
            catalog ? QStringList{u"json"_s} : QStringList{u"settings"_s, u"source"_s};
        for (const QCommandLineOption &option : readOptions + passOptions) {
            if (parser.isSet(option) && !allowed.contains(option.names().first()))
                return UsageError{u"--%1 does not go with %2 (see --help)"_s.arg(
                    option.names().first(), command)};
        }
        if (!catalog && positional.size() > 1)
            return UsageError{u"sources takes no words (see --help)"_s};
        invocation.mode = catalog ? Mode::catalog : Mode::sources;
        invocation.words = positional.mid(1);
        if (parser.isSet(json))
            invocation.report.format = Format::json;
        if (auto missing = takeSettings(invocation, !catalog))
            return *missing;
        if (parser.isSet(sourceLine))
            invocation.sourcesText = parser.values(sourceLine).join(u'\n');
        return invocation;
    }
    if (auto option = firstSet(passOptions))
        return UsageError{u"%1 does not go with read or fetch (see --help)"_s.arg(*option)};
    if (command == "read"_L1)
        invocation.mode = Mode::read;
    else if (command == "fetch"_L1)
        invocation.mode = Mode::fetch;
    else
        return UsageError{u"unknown command \"%1\" (see --help)"_s.arg(command)};
    if (positional.size() != 2)
        return UsageError{u"%1 takes exactly one %2"_s.arg(
            command, invocation.mode == Mode::read ? u"FILE"_s : u"URL"_s)};
    invocation.target = positional.at(1);

    JSONSource &source = invocation.source;
    source.id = parser.value(id);
    source.name = parser.value(name);
    if (invocation.mode == Mode::fetch) {
        const auto url = webUrl(invocation.target);
        if (!url)
            return UsageError{u"not an http or https URL: %1"_s.arg(invocation.target)};
        source.url = *url;
        source.homeURL = *url;
    } else {
        source.homeURL = QUrl(u"https://status.invalid"_s);
    }
    if (parser.isSet(home)) {
        const auto url = parseUrl(parser.value(home));
        if (!url)
            return UsageError{u"not a URL: %1"_s.arg(parser.value(home))};
        source.homeURL = *url;
    }
    const QStringList words = parser.values(treat);
    source.treatAsOperational = QSet<QString>(words.begin(), words.end());
    if (parser.isSet(group)) {
        const QStringList groups = parser.values(group);
        source.includeGroups = QSet<QString>(groups.begin(), groups.end());
    }
    if (parser.isSet(provider))
        source.updogProvider = parser.value(provider);
    if (parser.isSet(service))
        source.updogService = parser.value(service);
    invocation.pretty = parser.isSet(pretty);
    return invocation;
}

int exitCodeFor(Health health)
{
    return monitoringCode(health);
}

std::variant<QByteArray, UsageError> readInput(const QString &path)
{
    QFile file;
    const bool opened = path == "-"_L1 ? file.open(stdin, QIODevice::ReadOnly)
                                       : (file.setFileName(path), file.open(QIODevice::ReadOnly));
    if (!opened)
        return UsageError{u"cannot read %1: %2"_s.arg(path, file.errorString())};
    QByteArray data = file.read(network::maximumBodySize + 1);
    if (file.error() != QFileDevice::NoError)
        return UsageError{u"cannot read %1: %2"_s.arg(path, file.errorString())};
    if (data.size() > network::maximumBodySize)
        return UsageError{u"%1 is larger than 16 MiB"_s.arg(path)};
    return data;
}

} // namespace lanternic::cli
