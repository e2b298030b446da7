#include "sources/readers/feeddocument.h"

#include "sources/readers/jsondecoder.h"

#include <QXmlStreamReader>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {

constexpr auto atomNamespace = "http://www.w3.org/2005/Atom"_L1;

// The element's text, whatever markup (Atom's xhtml content) it holds, within the cap.
QString elementText(QXmlStreamReader &xml, int depth)
{
    QString text;
    int inner = 0;
    while (!xml.atEnd()) {
        switch (xml.readNext()) {
        case QXmlStreamReader::StartElement:
            if (depth + ++inner > FeedDocument::maximumDepth) {
                xml.raiseError(u"too deep"_s);
                return text;
            }
            break;
        case QXmlStreamReader::EndElement:
            if (inner-- == 0)
                return text;
            break;
        case QXmlStreamReader::Characters:
            if (text.size() < FeedDocument::maximumTextLength)
                text += xml.text().left(FeedDocument::maximumTextLength - text.size());
            break;
        default:
            break;
        }
    }
    return text;
}

QDateTime instant(const QString &text, FeedDocument::Format format)
{
    return format == FeedDocument::Format::atom ? JsonValues::instant(text.trimmed())
                                                : parseFeedDate(text.trimmed());
}

void readField(QXmlStreamReader &xml, int depth, FeedDocument::Format format,
               FeedDocument::Item &item)
{
    const QStringView name = xml.name();
    if (format == FeedDocument::Format::atom && name == "link"_L1) {
        const auto attributes = xml.attributes();
        const QStringView rel = attributes.value("rel"_L1);
        if (item.link.isEmpty() && (rel.isEmpty() || rel == "alternate"_L1))
            item.link = attributes.value("href"_L1).toString().trimmed();
        elementText(xml, depth);
        return;
    }
    const QString text = elementText(xml, depth);
    if (name == "title"_L1)
        item.title = text;
    else if (name == "link"_L1)
        item.link = text.trimmed();
    else if (name == "guid"_L1 || name == "id"_L1)
        item.id = text.trimmed();
    else if (name == "description"_L1 || name == "summary"_L1 ||
             (name == "content"_L1 && item.text.isEmpty()))
        item.text = text;
    else if (name == "pubDate"_L1 || name == "published"_L1)
        item.published = instant(text, format);
    else if (name == "updated"_L1)
        item.updated = instant(text, format);
}

FeedDocument::Item readItem(QXmlStreamReader &xml, int depth, FeedDocument::Format format)
{
    FeedDocument::Item item;
    while (!xml.atEnd()) {
        const auto token = xml.readNext();
        if (token == QXmlStreamReader::EndElement)
            break;
        if (token != QXmlStreamReader::StartElement)
            continue;
        if (depth + 1 > FeedDocument::maximumDepth) {
            xml.raiseError(u"too deep"_s);
            break;
        }
        readField(xml, depth + 1, format, item);
    }
    if (!item.updated.isValid())
        item.updated = item.published;
    return item;
}

// The root: rss with a channel, or Atom's feed; nothing for anything else.
std::optional<FeedDocument::Format> root(QXmlStreamReader &xml)
{
    while (!xml.atEnd()) {
        switch (xml.readNext()) {
        case QXmlStreamReader::StartElement:
            if (xml.name() == "rss"_L1)
                return FeedDocument::Format::rss;
            if (xml.name() == "feed"_L1 && xml.namespaceUri() == atomNamespace)
                return FeedDocument::Format::atom;
            return std::nullopt;
        case QXmlStreamReader::DTD:
        case QXmlStreamReader::EntityReference:
        case QXmlStreamReader::Invalid:
            return std::nullopt;
        default:
            break;
        }
    }
    return std::nullopt;
}

// Cheap before any parsing: a feed is text whose first non-blank character opens a tag.
bool looksLikeXml(const QByteArray &body)
{
    qsizetype at = body.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    while (at < body.size() &&
           (body[at] == ' ' || body[at] == '\n' || body[at] == '\r' || body[at] == '\t'))
        ++at;
    return at < body.size() && body[at] == '<';
}

} // namespace

std::optional<FeedDocument> FeedDocument::parse(const QByteArray &body)
{
    if (!looksLikeXml(body))
        return std::nullopt;
    QXmlStreamReader xml(body);
    const auto format = root(xml);
    if (!format)
        return std::nullopt;
    FeedDocument feed;
    feed.format = *format;
    const QLatin1StringView itemName = *format == Format::rss ? "item"_L1 : "entry"_L1;
    bool channel = *format == Format::atom;
    int depth = 1;
    while (!xml.atEnd() && feed.items.size() < maximumItems) {
        const auto token = xml.readNext();
        if (token == QXmlStreamReader::DTD || token == QXmlStreamReader::EntityReference)
            return std::nullopt;
        if (token == QXmlStreamReader::EndElement) {
            --depth;
        } else if (token == QXmlStreamReader::StartElement) {
            if (++depth > maximumDepth)
                return std::nullopt;
            channel = channel || xml.name() == "channel"_L1;
            if (xml.name() == itemName) {
                feed.items.append(readItem(xml, depth, *format));
                --depth;
            }
        }
    }
    // Past the last item read, the rest may be cut short: what was read stands.
    if ((xml.hasError() && feed.items.size() < maximumItems) || !channel)
        return std::nullopt;
    return feed;
}

QString plainFeedText(const QString &markup)
{
    QString text;
    text.reserve(markup.size());
    bool inTag = false;
    for (const QChar c : markup) {
        // A tag parts words ("UTC</small><br><strong>Resolved"), as it would on the page.
        if (c == u'<') {
            inTag = true;
            text.append(u' ');
        } else if (c == u'>' && inTag) {
            inTag = false;
        } else if (!inTag) {
            text.append(c);
        }
    }
    static const std::pair<QLatin1StringView, QLatin1StringView> entities[] = {
        {"&nbsp;"_L1, " "_L1}, {"&lt;"_L1, "<"_L1},   {"&gt;"_L1, ">"_L1},  {"&quot;"_L1, "\""_L1},
        {"&#39;"_L1, "'"_L1},  {"&apos;"_L1, "'"_L1}, {"&amp;"_L1, "&"_L1},
    };
    for (const auto &[entity, character] : entities)
        text.replace(entity, character);
    return text.simplified();
}

QDateTime parseFeedDate(QStringView text)
{
    // "Tue, 25 Nov 2026 10:00:00 GMT": the weekday is optional, seconds too.
    if (const qsizetype comma = text.indexOf(u','); comma >= 0)
        text = text.sliced(comma + 1);
    const QList<QStringView> parts = text.trimmed().split(u' ', Qt::SkipEmptyParts);
    if (parts.size() != 5)
        return {};
    static const QStringList months{u"Jan"_s, u"Feb"_s, u"Mar"_s, u"Apr"_s, u"May"_s, u"Jun"_s,
                                    u"Jul"_s, u"Aug"_s, u"Sep"_s, u"Oct"_s, u"Nov"_s, u"Dec"_s};
    const int month = int(months.indexOf(parts[1].left(3).toString())) + 1;
    bool dayOk = false, yearOk = false;
    const int day = parts[0].toInt(&dayOk);
    int year = parts[2].toInt(&yearOk);
    if (yearOk && parts[2].size() == 2)
        year += 1900 + (year < 50 ? 100 : 0);
    const QTime time =
        QTime::fromString(parts[3].toString(), parts[3].size() == 5 ? u"HH:mm"_s : u"HH:mm:ss"_s);
    const QDate date(year, month, day);
    if (!dayOk || !yearOk || month == 0 || !date.isValid() || !time.isValid())
        return {};
    static const QHash<QString, int> zones{
        {u"GMT"_s, 0},  {u"UT"_s, 0},   {u"UTC"_s, 0},  {u"Z"_s, 0},
        {u"EST"_s, -5}, {u"EDT"_s, -4}, {u"CST"_s, -6}, {u"CDT"_s, -5},
        {u"MST"_s, -7}, {u"MDT"_s, -6}, {u"PST"_s, -8}, {u"PDT"_s, -7},
    };
    const QString zone = parts[4].toString();
    int offset = 0;
    if (auto named = zones.constFind(zone); named != zones.constEnd()) {
        offset = *named * 3600;
    } else if (zone.size() == 5 && (zone[0] == u'+' || zone[0] == u'-')) {
        bool ok = false;
        const int hhmm = zone.sliced(1).toInt(&ok);
        if (!ok)
            return {};
        offset = (hhmm / 100 * 3600 + hhmm % 100 * 60) * (zone[0] == u'-' ? -1 : 1);
    } else {
        return {};
    }
    return QDateTime(date, time, Qt::UTC).addSecs(-offset);
}

} // namespace lanternic
