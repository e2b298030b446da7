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

// The commands an option goes with.
enum Takes : unsigned {
    aPass = 1,
    readOrFetch = 2,
    aCatalog = 4,
    theSources = 8,
    theHistory = 16,
    anyCommand = 31,
};

// Where --help lists an option.
enum class Shown { withAPass, withReadAndFetch, nowhere };

struct OptionRow {
    QLatin1StringView name;
    QLatin1StringView argument; // empty: a switch
    QLatin1StringView defaultValue;
    unsigned takes;
    Shown shown;
    QLatin1StringView help; // as --help shows it, broken into its lines
};

// Every option once: the parser, what goes with what and --help are all made from it.
constexpr OptionRow optionTable[] = {
    {"id"_L1, "ID"_L1, "source"_L1, readOrFetch, Shown::withReadAndFetch,
     "The source's id (default \"source\")"_L1},
    {"name"_L1, "NAME"_L1, "Source"_L1, readOrFetch, Shown::withReadAndFetch,
     "The source's display name (default \"Source\")"_L1},
    {"home"_L1,
     "URL"_L1,
     {},
     readOrFetch,
     Shown::withReadAndFetch,
     "The source's home page (default: the fetched URL, or\n"
     "https://status.invalid when reading a file)"_L1},
    {"treat-as-operational"_L1,
     "WORD"_L1,
     {},
     readOrFetch,
     Shown::withReadAndFetch,
     "Count this Statuspage component status as operational\n(repeatable)"_L1},
    {"include-group"_L1,
     "NAME"_L1,
     {},
     readOrFetch,
     Shown::withReadAndFetch,
     "Keep only components of this Statuspage group (repeatable)"_L1},
    {"updog-provider"_L1,
     "NAME"_L1,
     {},
     readOrFetch,
     Shown::withReadAndFetch,
     "The Updog provider to look up"_L1},
    {"updog-service"_L1,
     "NAME"_L1,
     {},
     readOrFetch,
     Shown::withReadAndFetch,
     "The Updog provider's service to look up"_L1},
    {"pretty"_L1, {}, {}, readOrFetch, Shown::withReadAndFetch, "Indent the JSON output"_L1},
    {"settings"_L1,
     "FILE"_L1,
     {},
     aPass | theSources | theHistory,
     Shown::withAPass,
     "Use this settings file and keep what the pass learns in it,\n"
     "as the app does (default: read your own settings, change\n"
     "nothing)"_L1},
    {"source"_L1,
     "LABEL=VALUE"_L1,
     {},
     aPass | theSources,
     Shown::withAPass,
     "Check this source instead of the configured ones\n(repeatable)"_L1},
    {"json"_L1,
     {},
     {},
     aPass | aCatalog | theHistory,
     Shown::withAPass,
     "Print the outcome as one JSON object (--format json)"_L1},
    {"format"_L1,
     "FORMAT"_L1,
     {},
     aPass,
     Shown::withAPass,
     "text (the default), json, relay (a \"lanternic.v1\" feed),\n"
     "waybar (a line for a waybar custom module), nagios (a\n"
     "monitoring plugin's output), i3blocks (full text, short\n"
     "text and colour; exit status 33 when something is down)\n"
     "or line (the health symbol and the summary)"_L1},
    {"relay-name"_L1,
     "NAME"_L1,
     {},
     aPass,
     Shown::withAPass,
     "relay: the feed's name (default \"Lanternic\")"_L1},
    {"relay-url"_L1, "URL"_L1, {}, aPass, Shown::withAPass, "relay: the page the feed links to"_L1},
    {"short"_L1,
     {},
     {},
     aPass,
     Shown::withAPass,
     "waybar: a health glyph and the issue count as the text"_L1},
    {"days"_L1, "N"_L1, {}, theHistory, Shown::nowhere, {}},
    {"help"_L1, {}, {}, anyCommand, Shown::withReadAndFetch, "Show this help"_L1},
    {"version"_L1, {}, {}, anyCommand, Shown::withReadAndFetch, "Show the version"_L1},
};

// The options --help lists in one section: each name and argument, then its help, lines after
// the first under the first.
QString optionLines(Shown section)
{
    constexpr qsizetype helpColumn = 33;
    QString lines;
    for (const OptionRow &row : optionTable) {
        if (row.shown != section)
            continue;
        QString head = u"  --"_s + row.name;
        if (!row.argument.isEmpty())
            head += u' ' + row.argument;
        const QStringList help = QString(row.help).split(u'\n');
        lines += head.leftJustified(helpColumn - 1) + u' ' + help.first() + u'\n';
        for (const QString &more : help.mid(1))
            lines += QString(helpColumn, u' ') + more + u'\n';
    }
    return lines;
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
)"_s + optionLines(Shown::withAPass) +
           u"\nOptions of read and fetch:\n"_s + optionLines(Shown::withReadAndFetch);
}

namespace {

// The first option given that the command does not take, as --help would call it.
std::optional<QString> foreignOption(const QCommandLineParser &parser, unsigned takes)
{
    for (const OptionRow &option : optionTable) {
        if (!(option.takes & takes) && parser.isSet(QString(option.name)))
            return u"--"_s + option.name;
    }
    return std::nullopt;
}

} // namespace

namespace {

using Parsed = std::variant<Invocation, UsageError>;

bool isSet(const QCommandLineParser &parser, QLatin1StringView name)
{
    return parser.isSet(QString(name));
}

QString value(const QCommandLineParser &parser, QLatin1StringView name)
{
    return parser.value(QString(name));
}

// A settings file may be new, but its folder must be there to keep it in. Only a pass may
// start a settings file: the others would read a mistyped name as one that is empty, and show
// the public defaults.
std::optional<UsageError> takeSettings(const QCommandLineParser &parser, Invocation &into,
                                       bool mustExist)
{
    if (!isSet(parser, "settings"_L1))
        return std::nullopt;
    const QFileInfo file(value(parser, "settings"_L1));
    if (!file.absoluteDir().exists())
        return UsageError{u"no folder %1 for the settings file"_s.arg(file.absolutePath())};
    if (mustExist && !file.exists())
        return UsageError{u"no settings file %1"_s.arg(file.filePath())};
    into.settingsFile = value(parser, "settings"_L1);
    return std::nullopt;
}

const UsageError daysGoWithHistory{u"--days goes with history (see --help)"_s};

Parsed parsePass(const QCommandLineParser &parser)
{
    if (auto option = foreignOption(parser, aPass | theHistory))
        return UsageError{u"%1 goes with read or fetch (see --help)"_s.arg(*option)};
    if (isSet(parser, "days"_L1))
        return daysGoWithHistory;
    Invocation invocation;
    invocation.mode = Mode::pass;
    if (auto missing = takeSettings(parser, invocation, false))
        return *missing;
    if (isSet(parser, "source"_L1))
        invocation.sourcesText = parser.values(u"source"_s).join(u'\n');
    if (isSet(parser, "json"_L1))
        invocation.report.format = Format::json;
    if (isSet(parser, "format"_L1)) {
        static const QHash<QString, Format> formats{
            {u"text"_s, Format::text},     {u"json"_s, Format::json},
            {u"relay"_s, Format::relay},   {u"waybar"_s, Format::waybar},
            {u"nagios"_s, Format::nagios}, {u"i3blocks"_s, Format::i3blocks},
            {u"line"_s, Format::line}};
        const QString name = value(parser, "format"_L1);
        const auto chosen = formats.constFind(name);
        if (chosen == formats.constEnd())
            return UsageError{u"unknown format \"%1\" (text, json, relay, waybar, nagios, "
                              u"i3blocks or line)"_s.arg(name)};
        if (isSet(parser, "json"_L1) && *chosen != Format::json)
            return UsageError{u"--json and --format %1 do not go together"_s.arg(name)};
        invocation.report.format = *chosen;
    }
    if (isSet(parser, "relay-name"_L1))
        invocation.report.relayName = value(parser, "relay-name"_L1);
    if (isSet(parser, "relay-url"_L1)) {
        invocation.report.relayUrl = webUrl(value(parser, "relay-url"_L1));
        if (!invocation.report.relayUrl)
            return UsageError{u"not an http or https URL: %1"_s.arg(value(parser, "relay-url"_L1))};
    }
    invocation.report.shortText = isSet(parser, "short"_L1);
    return invocation;
}

Parsed parseHistory(const QCommandLineParser &parser, const QStringList &positional)
{
    if (positional.size() > 1)
        return UsageError{u"history takes no words (see --help)"_s};
    if (auto option = foreignOption(parser, theHistory))
        return UsageError{u"%1 does not go with history (see --help)"_s.arg(*option)};
    Invocation invocation;
    invocation.mode = Mode::history;
    if (auto missing = takeSettings(parser, invocation, true))
        return *missing;
    if (isSet(parser, "json"_L1))
        invocation.report.format = Format::json;
    if (isSet(parser, "days"_L1)) {
        bool ok = false;
        invocation.days = value(parser, "days"_L1).toInt(&ok);
        if (!ok || invocation.days < 1 || invocation.days > HealthLog::keptDays)
            return UsageError{u"--days takes 1 to %1"_s.arg(HealthLog::keptDays)};
    }
    return invocation;
}

// catalog and sources.
Parsed parseListing(const QCommandLineParser &parser, const QStringList &positional)
{
    const QString &command = positional.first();
    const bool catalog = command == "catalog"_L1;
    if (auto option = foreignOption(parser, catalog ? aCatalog : theSources))
        return UsageError{u"%1 does not go with %2 (see --help)"_s.arg(*option, command)};
    if (!catalog && positional.size() > 1)
        return UsageError{u"sources takes no words (see --help)"_s};
    Invocation invocation;
    invocation.mode = catalog ? Mode::catalog : Mode::sources;
    invocation.words = positional.mid(1);
    if (isSet(parser, "json"_L1))
        invocation.report.format = Format::json;
    if (auto missing = takeSettings(parser, invocation, !catalog))
        return *missing;
    if (isSet(parser, "source"_L1))
        invocation.sourcesText = parser.values(u"source"_s).join(u'\n');
    return invocation;
}

// read and fetch.
Parsed parseReading(const QCommandLineParser &parser, const QStringList &positional)
{
    const QString &command = positional.first();
    if (auto option = foreignOption(parser, readOrFetch))
        return UsageError{u"%1 does not go with read or fetch (see --help)"_s.arg(*option)};
    Invocation invocation;
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
    source.id = value(parser, "id"_L1);
    source.name = value(parser, "name"_L1);
    if (invocation.mode == Mode::fetch) {
        const auto url = webUrl(invocation.target);
        if (!url)
            return UsageError{u"not an http or https URL: %1"_s.arg(invocation.target)};
        source.url = *url;
        source.homeURL = *url;
    } else {
        source.homeURL = QUrl(u"https://status.invalid"_s);
    }
    if (isSet(parser, "home"_L1)) {
        const auto url = parseUrl(value(parser, "home"_L1));
        if (!url)
            return UsageError{u"not a URL: %1"_s.arg(value(parser, "home"_L1))};
        source.homeURL = *url;
    }
    const QStringList words = parser.values(u"treat-as-operational"_s);
    source.treatAsOperational = QSet<QString>(words.begin(), words.end());
    if (isSet(parser, "include-group"_L1)) {
        const QStringList groups = parser.values(u"include-group"_s);
        source.includeGroups = QSet<QString>(groups.begin(), groups.end());
    }
    if (isSet(parser, "updog-provider"_L1))
        source.updogProvider = value(parser, "updog-provider"_L1);
    if (isSet(parser, "updog-service"_L1))
        source.updogService = value(parser, "updog-service"_L1);
    invocation.pretty = isSet(parser, "pretty"_L1);
    return invocation;
}

} // namespace

Parsed parseArguments(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    for (const OptionRow &option : optionTable) {
        QStringList names{QString(option.name)};
        if (option.name == "help"_L1)
            names.append(u"h"_s);
        parser.addOption(QCommandLineOption(names, QString(), QString(option.argument),
                                            QString(option.defaultValue)));
    }
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
    if (isSet(parser, "help"_L1))
        return Invocation();
    if (isSet(parser, "version"_L1)) {
        Invocation invocation;
        invocation.mode = Mode::version;
        return invocation;
    }
    const QStringList positional = parser.positionalArguments();
    if (positional.isEmpty())
        return parsePass(parser);
    if (positional.first() == "history"_L1)
        return parseHistory(parser, positional);
    if (isSet(parser, "days"_L1))
        return daysGoWithHistory;
    if (positional.first() == "catalog"_L1 || positional.first() == "sources"_L1)
        return parseListing(parser, positional);
    return parseReading(parser, positional);
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
