#include "present/changefeed.h"

#include "model/feedtext.h"
#include "present/displaytext.h"

#include <QCoreApplication>
#include <QXmlStreamWriter>

namespace lanternic::ChangeFeed {

using namespace Qt::StringLiterals;
using namespace ChangeNews;

namespace {

// The notifications' words: a feed entry says what a notification would.
struct Text {
    Q_DECLARE_TR_FUNCTIONS(ChangeNotice)
};

QString changeTitle(const Watched &item)
{
    const bool whole = item.name == item.sourceName;
    if (!whole) {
        const QString state = item.maintenance
                                  ? Text::tr("%1 \u2014 under maintenance").arg(item.name)
                                  : Text::tr("%1 \u2014 %2").arg(item.name, stateWord(item.health));
        return Text::tr("%1 \u2014 %2").arg(item.sourceName, state);
    }
    if (item.health == Health::operational)
        return Text::tr("%1 recovered").arg(item.sourceName);
    if (item.maintenance)
        return Text::tr("%1 is under maintenance").arg(item.sourceName);
    return Text::tr("%1 is %2").arg(item.sourceName, stateWord(item.health));
}

QString stamp(const QDateTime &at)
{
    return at.toUTC().toString(Qt::ISODate);
}

} // namespace

QList<Entry> entries(const News &news, const QDateTime &at)
{
    QList<Entry> out;
    for (const Change &change : news.changes) {
        const Watched &item = *change.watched;
        QStringList lines;
        for (const IncidentMention &incident : item.incidents)
            lines.append(
                Text::tr("%1: %2").arg(DisplayText::stageText(incident.stage), incident.name));
        out.append({item.sourceId + u'/' + item.name + u'@' + stamp(at), changeTitle(item),
                    lines.join(u'\n'), at, item.page});
    }
    for (const OpenIncident *opened : news.opened) {
        out.append(
            {opened->sourceId + u"/incident/"_s + opened->incident.name + u'@' + stamp(at),
             Text::tr("%1: new incident \u2014 %2").arg(opened->sourceName, opened->incident.name),
             Text::tr("%1: %2").arg(DisplayText::stageText(opened->incident.stage),
                                    opened->incident.name),
             at, opened->page});
    }
    return out;
}

QByteArray atom(const QList<Entry> &entries, const QString &name, const QString &feedId,
                const QDateTime &updated)
{
    QByteArray out;
    QXmlStreamWriter xml(&out);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeDefaultNamespace(u"http://www.w3.org/2005/Atom"_s);
    xml.writeStartElement(u"feed"_s);
    xml.writeTextElement(u"id"_s, feedId);
    xml.writeTextElement(u"title"_s, FeedText::clean(name));
    xml.writeTextElement(u"updated"_s, stamp(updated));
    xml.writeStartElement(u"author"_s);
    xml.writeTextElement(u"name"_s, u"Lanternic"_s);
    xml.writeEndElement();
    for (const Entry &entry : entries) {
        xml.writeStartElement(u"entry"_s);
        xml.writeTextElement(u"id"_s, feedId + u':' +
                                          QString::fromLatin1(QUrl::toPercentEncoding(entry.id)));
        xml.writeTextElement(u"title"_s, FeedText::clean(entry.title));
        xml.writeTextElement(u"updated"_s, stamp(entry.at));
        if (entry.link) {
            xml.writeEmptyElement(u"link"_s);
            xml.writeAttribute(u"href"_s, entry.link->toString(QUrl::FullyEncoded));
        }
        // Plain text, one incident a line, each cleaned as any feed text shown.
        QStringList lines;
        for (const QString &line : entry.text.split(u'\n', Qt::SkipEmptyParts))
            lines.append(FeedText::clean(line, 1000));
        xml.writeStartElement(u"content"_s);
        xml.writeAttribute(u"type"_s, u"text"_s);
        xml.writeCharacters(lines.join(u'\n'));
        xml.writeEndElement();
        xml.writeEndElement();
    }
    xml.writeEndElement();
    xml.writeEndDocument();
    return out;
}

} // namespace lanternic::ChangeFeed
