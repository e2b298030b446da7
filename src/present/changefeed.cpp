#include "present/changefeed.h"

#include "model/feedtext.h"
#include "present/changenotice.h"
#include "present/resultjson.h"

#include <QXmlStreamWriter>

namespace lanternic::ChangeFeed {

using namespace Qt::StringLiterals;
using namespace ChangeNews;

QList<Entry> entries(const News &news, const QDateTime &at)
{
    // Entries say what a notification would.
    QList<Entry> out;
    for (const Change &change : news.changes) {
        const Watched &item = *change.watched;
        QStringList lines;
        for (const IncidentMention &incident : item.incidents)
            lines.append(ChangeNotice::incidentLine(incident));
        out.append({item.sourceId + u'/' + item.name + u'@' + isoTimestamp(at),
                    ChangeNotice::titledChange(item), lines.join(u'\n'), at, urlOf(item.page)});
    }
    for (const OpenIncident *opened : news.opened) {
        out.append(
            {opened->sourceId + u"/incident/"_s + opened->incident.name + u'@' + isoTimestamp(at),
             ChangeNotice::openedLine(*opened), ChangeNotice::incidentLine(opened->incident), at,
             urlOf(opened->page)});
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
    xml.writeTextElement(u"updated"_s, isoTimestamp(updated));
    xml.writeStartElement(u"author"_s);
    xml.writeTextElement(u"name"_s, u"Lanternic"_s);
    xml.writeEndElement();
    for (const Entry &entry : entries) {
        xml.writeStartElement(u"entry"_s);
        xml.writeTextElement(u"id"_s, feedId + u':' +
                                          QString::fromLatin1(QUrl::toPercentEncoding(entry.id)));
        xml.writeTextElement(u"title"_s, FeedText::clean(entry.title));
        xml.writeTextElement(u"updated"_s, isoTimestamp(entry.at));
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
