#include "sources/readers/feeddocument.h"

#include "sources/readers/jsondecoder.h"

#include <QXmlStreamReader>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {

constexpr auto atomNamespace = "http://www.w3.org/2005/Atom"_L1;

// The element's text, whatever markup (Atom's xhtml content) it holds, within the cap; with
// keep false, the element is only read past.
QString elementText(QXmlStreamReader &xml, int depth, bool keep = true)
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
            if (keep && text.size() < FeedDocument::maximumTextLength)
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

enum class Field { other, title, link, id, text, content, published, updated };

Field fieldOf(QStringView name)
{
    static const std::pair<QLatin1StringView, Field> fields[] = {{"title"_L1, Field::title},
                                                                 {"link"_L1, Field::link},
                                                                 {"guid"_L1, Field::id},
                                                                 {"id"_L1, Field::id},
                                                                 {"description"_L1, Field::text},
                                                                 {"summary"_L1, Field::text},
                                                                 {"content"_L1, Field::content},
                                                                 {"pubDate"_L1, Field::published},
                                                                 {"published"_L1, Field::published},
                                                                 {"updated"_L1, Field::updated}};
    for (const auto &[word, field] : fields) {
        if (name == word)
            return field;
    }
    return Field::other;
}

// Reads the element just opened into the item. Decided before reading on: the reader's name
// and attributes are gone once it has moved.
void readField(QXmlStreamReader &xml, int depth, FeedDocument::Format format,
               FeedDocument::Item &item)
{
    const Field field = fieldOf(xml.name());
    if (format == FeedDocument::Format::atom && field == Field::link) {
        const auto attributes = xml.attributes();
        const QStringView rel = attributes.value("rel"_L1);
        if (item.link.isEmpty() && (rel.isEmpty() || rel == "alternate"_L1))
            item.link = attributes.value("href"_L1).toString().trimmed();
        elementText(xml, depth, false);
        return;
    }
    const bool wanted = field != Field::other && (field != Field::content || item.text.isEmpty());
    const QString text = elementText(xml, depth, wanted);
    switch (field) {
    case Field::title:
        item.title = text;
        break;
    case Field::link:
        item.link = text.trimmed();
        break;
    case Field::id:
        item.id = text.trimmed();
        break;
    case Field::text:
        item.text = text;
        break;
    case Field::content:
        if (item.text.isEmpty())
            item.text = text;
        break;
    case Field::published:
        item.published = instant(text, format);
        break;
    case Field::updated:
        item.updated = instant(text, format);
        break;
    case Field::other:
        break;
    }
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
    static const std::pair<QLatin1StringView, QChar> entities[] = {
        {"&nbsp;"_L1, u' '}, {"&lt;"_L1, u'<'},    {"&gt;"_L1, u'>'}, {"&quot;"_L1, u'"'},
        {"&#39;"_L1, u'\''}, {"&apos;"_L1, u'\''}, {"&amp;"_L1, u'&'}};
    // One pass, written in place: tags and runs of white space become one space, the common
    // entities their characters.
    QString text(markup.size(), Qt::Uninitialized);
    QChar *out = text.data();
    const QChar *const begin = out;
    bool inTag = false;
    bool space = true; // nothing yet, so leading space is dropped
    const auto blank = [&] {
        if (!space)
            *out++ = u' ';
        space = true;
    };
    const QStringView in(markup);
    for (qsizetype i = 0; i < in.size(); ++i) {
        const QChar c = in[i];
        if (inTag) {
            inTag = c != u'>';
        } else if (c == u'<') {
            // A tag parts words ("UTC</small><br><strong>Resolved"), as it would on the page.
            inTag = true;
            blank();
        } else if (c.isSpace()) {
            blank();
        } else if (c == u'&') {
            const auto entity =
                std::find_if(std::begin(entities), std::end(entities),
                             [&](const auto &e) { return in.sliced(i).startsWith(e.first); });
            const QChar decoded = entity == std::end(entities) ? c : entity->second;
            if (entity != std::end(entities))
                i += entity->first.size() - 1;
            if (decoded == u' ') {
                blank();
            } else {
                *out++ = decoded;
                space = false;
            }
        } else {
            *out++ = c;
            space = false;
        }
    }
    if (out != begin && space)
        --out;
    text.truncate(out - begin);
    return text;
}

namespace {

// Digits at text[from, from + count) as a number; -1 when they are not all digits.
int number(QStringView text, qsizetype from, qsizetype count)
{
    if (from + count > text.size())
        return -1;
    int value = 0;
    for (const QChar c : text.sliced(from, count)) {
        if (!c.isDigit())
            return -1;
        value = value * 10 + c.digitValue();
    }
    return value;
}

// "+0130", "GMT", "PST": seconds east of UTC; nothing for anything else.
std::optional<int> zoneOffset(QStringView zone)
{
    static const std::pair<QLatin1StringView, int> named[] = {
        {"GMT"_L1, 0},  {"UT"_L1, 0},   {"UTC"_L1, 0},  {"Z"_L1, 0},
        {"EST"_L1, -5}, {"EDT"_L1, -4}, {"CST"_L1, -6}, {"CDT"_L1, -5},
        {"MST"_L1, -7}, {"MDT"_L1, -6}, {"PST"_L1, -8}, {"PDT"_L1, -7}};
    for (const auto &[name, hours] : named) {
        if (zone == name)
            return hours * 3600;
    }
    const int hhmm = zone.size() == 5 ? number(zone, 1, 4) : -1;
    if (hhmm < 0 || (zone[0] != u'+' && zone[0] != u'-'))
        return std::nullopt;
    return (hhmm / 100 * 3600 + hhmm % 100 * 60) * (zone[0] == u'-' ? -1 : 1);
}

} // namespace

QDateTime parseFeedDate(QStringView text)
{
    // "Tue, 25 Nov 2026 10:00:00 GMT": the weekday is optional, seconds too.
    if (const qsizetype comma = text.indexOf(u','); comma >= 0)
        text = text.sliced(comma + 1);
    const QList<QStringView> parts = text.trimmed().split(u' ', Qt::SkipEmptyParts);
    if (parts.size() != 5)
        return {};
    static constexpr QLatin1StringView months[] = {"Jan"_L1, "Feb"_L1, "Mar"_L1, "Apr"_L1,
                                                   "May"_L1, "Jun"_L1, "Jul"_L1, "Aug"_L1,
                                                   "Sep"_L1, "Oct"_L1, "Nov"_L1, "Dec"_L1};
    const auto month = std::find(std::begin(months), std::end(months), parts[1].left(3));
    const int day = parts[0].size() <= 2 ? number(parts[0], 0, parts[0].size()) : -1;
    int year =
        parts[2].size() == 4 || parts[2].size() == 2 ? number(parts[2], 0, parts[2].size()) : -1;
    if (parts[2].size() == 2 && year >= 0)
        year += year < 50 ? 2000 : 1900;
    const QStringView clock = parts[3];
    const bool seconds = clock.size() == 8;
    const int hour = number(clock, 0, 2), minute = number(clock, 3, 2);
    const int second = seconds ? number(clock, 6, 2) : 0;
    const std::optional<int> offset = zoneOffset(parts[4]);
    const QDate date(year, int(month - std::begin(months)) + 1, day);
    const QTime time(hour, minute, second);
    if ((clock.size() != 5 && !seconds) || clock[2] != u':' || (seconds && clock[5] != u':') ||
        month == std::end(months) || !date.isValid() || !time.isValid() || !offset)
        return {};
    return QDateTime(date, time, Qt::UTC).addSecs(-*offset);
}

} // namespace lanternic
