#include "model/urls.h"
#include "sources/readers/feeddocument.h"
#include "sources/readers/jsondecoder.h"
#include "sources/readers/newsreader.h"
#include "sources/readers/readerkit.h"

#include <QRegularExpression>

namespace lanternic::FeedReaders {

using namespace Qt::StringLiterals;
using namespace ReaderKit;

namespace {

// The first stage word in the text, by where it stands; empty when there is none.
QString firstStage(const QString &text)
{
    if (text.contains("[RESOLVED]"_L1))
        return u"Resolved"_s;
    static const QRegularExpression word(
        u"\\b(Resolved|Monitoring|Identified|Investigating|Update|Completed|Scheduled|In progress|Postmortem)\\b"_s);
    const QRegularExpressionMatch match = word.match(text);
    return match.hasMatch() ? match.captured(1) : QString();
}

bool isOver(const QString &stage)
{
    return stage == "Resolved"_L1 || stage == "Completed"_L1 || stage == "Postmortem"_L1;
}

// Items of one incident: the same link, or without one the same id.
QList<QList<const FeedDocument::Item *>> incidents(const FeedDocument &feed)
{
    QList<QList<const FeedDocument::Item *>> grouped;
    QHash<QString, qsizetype> byKey;
    for (const FeedDocument::Item &item : feed.items) {
        const QString key = !item.link.isEmpty() ? u"l "_s + item.link
                            : !item.id.isEmpty() ? u"i "_s + item.id
                                                 : u"t "_s + item.title;
        const qsizetype place = byKey.value(key, grouped.size());
        if (place == grouped.size()) {
            byKey.insert(key, place);
            grouped.append(QList<const FeedDocument::Item *>());
        }
        grouped[place].append(&item);
    }
    return grouped;
}

} // namespace

std::optional<SourceResult> statusFeed(const JSONSource &source, const FeedDocument &feed,
                                       const QDateTime &now)
{
    SourceResult result = start(source);
    for (const QList<const FeedDocument::Item *> &items : incidents(feed)) {
        const auto newest =
            *std::max_element(items.begin(), items.end(), [](const auto *a, const auto *b) {
                return a->when().isValid() && b->when().isValid() ? a->when() < b->when()
                                                                  : !a->when().isValid();
            });
        if (newest->when().isValid() && newest->when().secsTo(now) > 24 * 3600)
            continue;
        const QString title = plainFeedText(newest->title);
        const QString text = plainFeedText(newest->text);
        QString stage = firstStage(title);
        if (stage.isEmpty())
            stage = firstStage(text);
        if (isOver(stage))
            continue;
        Incident incident;
        incident.id = newest->link.isEmpty() ? newest->id : newest->link;
        incident.name = title.left(JsonValues::maximumTextLength);
        incident.stage = stage.isEmpty() ? u"investigating"_s : stage;
        incident.url = WebLink::parse(newest->link);
        QDateTime first;
        for (const FeedDocument::Item *item : items) {
            const QDateTime at = item->published.isValid() ? item->published : item->when();
            if (at.isValid() && (!first.isValid() || at < first))
                first = at;
        }
        incident.startedAt = first;
        incident.updatedAt = newest->when();
        incident.update = text.left(JsonValues::maximumTextLength);
        result.incidents.append(incident);
        // As many as a result keeps; one open incident already decides the health.
        if (result.incidents.size() == NewsReader::maximumEntries)
            break;
    }
    const Health health = result.incidents.isEmpty() ? Health::operational : Health::degraded;
    return settle(std::move(result), health);
}

} // namespace lanternic::FeedReaders
