#include "model/urls.h"
#include "sources/readers/feeddocument.h"
#include "sources/readers/jsondecoder.h"
#include "sources/readers/readerkit.h"

namespace lanternic::FeedReaders {

using namespace Qt::StringLiterals;
using namespace ReaderKit;

namespace {

struct State {
    QLatin1StringView phrase;
    Health health;
    QLatin1StringView impact; // for the news an item is; empty when it is none
};

// The phrases the AWS Health Dashboard opens its titles with.
constexpr State states[] = {
    {"Service is operating normally"_L1, Health::operational, {}},
    {"Informational message"_L1, Health::operational, "none"_L1},
    {"Performance issues"_L1, Health::degraded, "minor"_L1},
    {"Service degradation"_L1, Health::degraded, "minor"_L1},
    {"Service disruption"_L1, Health::down, "major"_L1},
};

const State *stateOf(const QString &title)
{
    for (const State &state : states) {
        if (title.startsWith(state.phrase))
            return &state;
    }
    return nullptr;
}

// "Service disruption: Increased error rates" → "Increased error rates".
QString withoutPhrase(const QString &title, const State &state)
{
    QStringView rest = QStringView(title).sliced(state.phrase.size());
    if (rest.startsWith(u':'))
        rest = rest.sliced(1);
    return rest.trimmed().toString();
}

// The service-region an item is about: in its guid, between "#" and the last "_".
QString serviceRegion(const FeedDocument::Item &item)
{
    const qsizetype hash = item.id.lastIndexOf(u'#');
    if (hash < 0)
        return {};
    QString key = item.id.sliced(hash + 1);
    if (const qsizetype underscore = key.lastIndexOf(u'_'); underscore > 0)
        key.truncate(underscore);
    return key;
}

struct Reading {
    const FeedDocument::Item *newest = nullptr;
    const State *state = nullptr;
};

Incident incidentOf(const Reading &reading, const QString &title, const QString &key)
{
    Incident incident;
    incident.id = reading.newest->id.isEmpty() ? key : reading.newest->id;
    incident.name = withoutPhrase(title, *reading.state).left(JsonValues::maximumTextLength);
    incident.impact = reading.state->impact;
    incident.url = WebLink::parse(reading.newest->link);
    incident.startedAt = reading.newest->published;
    incident.updatedAt = reading.newest->when();
    incident.update = plainFeedText(reading.newest->text).left(JsonValues::maximumTextLength);
    return incident;
}

} // namespace

std::optional<SourceResult> aws(const JSONSource &source, const FeedDocument &feed,
                                const QDateTime &)
{
    if (feed.items.isEmpty())
        return std::nullopt;
    QList<QString> order;
    QHash<QString, Reading> byKey;
    for (const FeedDocument::Item &item : feed.items) {
        const State *state = stateOf(plainFeedText(item.title));
        if (!state)
            return std::nullopt;
        const QString key = serviceRegion(item);
        Reading &reading = byKey[key];
        if (!reading.newest)
            order.append(key);
        if (!reading.newest || item.when() > reading.newest->when())
            reading = {&item, state};
    }
    SourceResult result = start(source);
    Health page = Health::operational;
    for (const QString &key : order) {
        const Reading &reading = byKey[key];
        const QString title = plainFeedText(reading.newest->title);
        const bool resolved = title.contains("[RESOLVED]"_L1);
        const Health health = resolved ? Health::operational : reading.state->health;
        if (order.size() > 1 && !key.isEmpty())
            addComponent(result, key, key, health, rawValue(health));
        page = worse(page, health);
        if (!resolved && !reading.state->impact.isEmpty())
            result.incidents.append(incidentOf(reading, title, key));
    }
    return settle(std::move(result), page);
}

} // namespace lanternic::FeedReaders
