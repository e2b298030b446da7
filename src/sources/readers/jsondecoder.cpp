#include "sources/readers/jsondecoder.h"

#include "model/urls.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <simdjson.h>
#include <vector>

namespace lanternic {

// A document flattened in order: each value is a node, followed by the nodes of what it holds;
// an object's members are a key node (a string) and a value node each. Sixteen bytes a node.
struct JsonNode {
    JsonValue::Type type = JsonValue::Undefined;
    bool flag = false; // a boolean's value; for a number, that it is held as integer
    quint32 end = 0;   // the index after this node and all it holds
    union {
        struct {
            quint32 offset;
            quint32 length;
        } text;        // a string's UTF-8 in JsonTree::text
        quint32 count; // an array's elements, an object's members
        double number;
        qint64 integer;
    };
};
static_assert(sizeof(JsonNode) == 16);

struct JsonTree {
    std::vector<JsonNode> nodes;
    QByteArray text;

    const JsonNode &at(quint32 index) const { return nodes[index]; }
    QByteArrayView textOf(const JsonNode &node) const
    {
        return QByteArrayView(text.constData() + node.text.offset, node.text.length);
    }
};

namespace {

// The element as the type it was just found to be, which cannot fail.
template<typename T> T as(simdjson::dom::element element)
{
    T value{};
    return element.get(value) == simdjson::SUCCESS ? value : T{};
}

class TreeBuilder {
public:
    explicit TreeBuilder(JsonTree &tree) : m_tree(tree) {}

    quint32 used() const { return m_used; }

    void add(simdjson::dom::element element)
    {
        using simdjson::dom::element_type;
        if (element.type() == element_type::STRING) {
            addString(as<std::string_view>(element));
            return;
        }
        // The node goes before what it holds; its end is known once that is added.
        const auto index = quint32(m_tree.nodes.size());
        m_tree.nodes.emplace_back();
        JsonNode node;
        switch (element.type()) {
        case element_type::ARRAY: {
            node.type = JsonValue::Array;
            node.count = 0;
            for (simdjson::dom::element child : as<simdjson::dom::array>(element)) {
                add(child);
                ++node.count;
            }
            break;
        }
        case element_type::OBJECT: {
            node.type = JsonValue::Object;
            node.count = 0;
            for (simdjson::dom::key_value_pair member : as<simdjson::dom::object>(element)) {
                addString(member.key);
                add(member.value);
                ++node.count;
            }
            break;
        }
        case element_type::STRING: // added before the switch
            break;
        case element_type::INT64:
            node.type = JsonValue::Double;
            node.flag = true;
            node.integer = as<int64_t>(element);
            break;
        case element_type::UINT64:
            node.type = JsonValue::Double;
            node.number = double(as<uint64_t>(element));
            break;
        case element_type::DOUBLE:
            node.type = JsonValue::Double;
            node.number = as<double>(element);
            break;
        case element_type::BOOL:
            node.type = JsonValue::Bool;
            node.flag = as<bool>(element);
            break;
        case element_type::NULL_VALUE:
            node.type = JsonValue::Null;
            break;
        }
        node.end = quint32(m_tree.nodes.size());
        m_tree.nodes[index] = node;
    }

private:
    void addString(std::string_view text)
    {
        JsonNode node;
        node.type = JsonValue::String;
        node.text = {m_used, quint32(text.size())};
        // Unescaped, every string is at most as long as in the text parsed, which sized the
        // buffer.
        std::memcpy(m_tree.text.data() + m_used, text.data(), text.size());
        m_used += quint32(text.size());
        node.end = quint32(m_tree.nodes.size() + 1);
        m_tree.nodes.push_back(node);
    }

    JsonTree &m_tree;
    quint32 m_used = 0; // of the tree's text
};

bool isSurrogate(uint value, uint first)
{
    return value >= first && value < first + 0x400;
}

uint hexAt(QByteArrayView text, qsizetype at)
{
    bool ok = false;
    const uint value = at + 4 <= text.size() ? text.sliced(at, 4).toUInt(&ok, 16) : 0;
    return ok ? value : 0;
}

// What lenient parsers accept and strict JSON does not, made strict: control characters
// written raw inside strings are escaped, and a surrogate escape without its pair becomes the
// replacement character.
QByteArray strictened(QByteArrayView body)
{
    QByteArray out;
    out.reserve(body.size() + 64);
    bool inString = false;
    for (qsizetype i = 0; i < body.size(); ++i) {
        const char c = body[i];
        if (!inString) {
            inString = c == '"';
            out.append(c);
        } else if (c == '"') {
            inString = false;
            out.append(c);
        } else if (uchar(c) < 0x20) {
            out.append(QByteArray("\\u00") +
                       QByteArray::number(uchar(c), 16).rightJustified(2, '0'));
        } else if (c == '\\' && i + 1 < body.size() && body[i + 1] == 'u') {
            const uint unit = hexAt(body, i + 2);
            const bool paired = isSurrogate(unit, 0xd800) && i + 12 <= body.size() &&
                                body.sliced(i + 6, 2) == "\\u" &&
                                isSurrogate(hexAt(body, i + 8), 0xdc00);
            if (paired) {
                out.append(body.sliced(i, 12));
                i += 11;
            } else if (isSurrogate(unit, 0xd800) || isSurrogate(unit, 0xdc00)) {
                out.append("\\ufffd");
                i += 5;
            } else {
                out.append(c);
            }
        } else if (c == '\\' && i + 1 < body.size()) {
            out.append(body.sliced(i, 2));
            ++i;
        } else {
            out.append(c);
        }
    }
    return out;
}

char asciiLower(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}

char asciiUpper(char c)
{
    return c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c;
}

// Compares the camel-case form of a snake-case key with a field name without building it.
// Leading and trailing underscores stay; the rest splits at "_" (empty pieces dropped), the
// first piece is lower-cased and the others capitalised. A key of one piece stays as it is.
bool snakeKeyNamesField(QByteArrayView key, QLatin1StringView field)
{
    qsizetype begin = 0;
    qsizetype end = key.size();
    while (begin < end && key[begin] == '_')
        ++begin;
    while (end > begin && key[end - 1] == '_')
        --end;
    const QByteArrayView middle = key.sliced(begin, end - begin);
    if (!middle.contains('_'))
        return key == QByteArrayView(field.data(), field.size());

    qsizetype at = 0;
    auto expect = [&](char c) { return at < field.size() && field[at++] == QLatin1Char(c); };
    for (qsizetype i = 0; i < begin; ++i) {
        if (!expect('_'))
            return false;
    }
    bool firstPiece = true;
    bool pieceStart = true;
    for (char c : middle) {
        if (c == '_') {
            pieceStart = true;
            continue;
        }
        const bool upper = pieceStart && !firstPiece;
        if (pieceStart && firstPiece)
            firstPiece = false;
        pieceStart = false;
        if (!expect(upper ? asciiUpper(c) : asciiLower(c)))
            return false;
    }
    for (qsizetype i = end; i < key.size(); ++i) {
        if (!expect('_'))
            return false;
    }
    return at == field.size();
}

QLatin1StringView typeName(JsonValue::Type type)
{
    switch (type) {
    case JsonValue::Bool:
        return QLatin1StringView("a boolean");
    case JsonValue::Double:
        return QLatin1StringView("a number");
    case JsonValue::String:
        return QLatin1StringView("a string");
    case JsonValue::Array:
        return QLatin1StringView("an array");
    case JsonValue::Object:
        return QLatin1StringView("an object");
    default:
        return QLatin1StringView("a value");
    }
}

} // namespace

JsonValue::Type JsonValue::type() const
{
    return m_tree ? m_tree->at(m_node).type : Undefined;
}

bool JsonValue::toBool(bool fallback) const
{
    return isBool() ? m_tree->at(m_node).flag : fallback;
}

double JsonValue::toDouble(double fallback) const
{
    if (!isDouble())
        return fallback;
    const JsonNode &node = m_tree->at(m_node);
    return node.flag ? double(node.integer) : node.number;
}

qint64 JsonValue::toInteger(qint64 fallback) const
{
    if (!isDouble())
        return fallback;
    const JsonNode &node = m_tree->at(m_node);
    if (node.flag)
        return node.integer;
    // 2^63 is exact as a double; every whole double below it fits.
    constexpr double limit = 9223372036854775808.0;
    if (node.number >= -limit && node.number < limit && node.number == std::trunc(node.number))
        return qint64(node.number);
    return fallback;
}

int JsonValue::toInt(int fallback) const
{
    constexpr qint64 none = std::numeric_limits<qint64>::min();
    const qint64 value = toInteger(none);
    if (value == none || value < std::numeric_limits<int>::min() ||
        value > std::numeric_limits<int>::max())
        return fallback;
    return int(value);
}

QByteArrayView JsonValue::utf8() const
{
    return isString() ? m_tree->textOf(m_tree->at(m_node)) : QByteArrayView();
}

QString JsonValue::toString() const
{
    return QString::fromUtf8(utf8());
}

JsonArray JsonValue::toArray() const
{
    return isArray() ? JsonArray(m_tree, m_node) : JsonArray();
}

JsonObject JsonValue::toObject() const
{
    return isObject() ? JsonObject(m_tree, m_node) : JsonObject();
}

bool JsonValue::operator==(QLatin1StringView text) const
{
    return isString() && utf8() == QByteArrayView(text.data(), text.size());
}

qsizetype JsonArray::size() const
{
    return m_tree ? m_tree->at(m_node).count : 0;
}

JsonValue JsonArray::first() const
{
    return isEmpty() ? JsonValue() : JsonValue(m_tree, m_node + 1);
}

JsonValue JsonArray::last() const
{
    JsonValue last;
    for (const JsonValue value : *this)
        last = value;
    return last;
}

JsonArray::const_iterator JsonArray::begin() const
{
    return m_tree ? const_iterator(m_tree, m_node + 1) : const_iterator(nullptr, 0);
}

JsonArray::const_iterator JsonArray::end() const
{
    return m_tree ? const_iterator(m_tree, m_tree->at(m_node).end) : const_iterator(nullptr, 0);
}

JsonArray::const_iterator &JsonArray::const_iterator::operator++()
{
    m_node = m_tree->at(m_node).end;
    return *this;
}

QByteArrayView JsonObject::const_iterator::key() const
{
    return m_tree->textOf(m_tree->at(m_node));
}

JsonObject::const_iterator &JsonObject::const_iterator::operator++()
{
    m_node = m_tree->at(m_node + 1).end;
    return *this;
}

qsizetype JsonObject::size() const
{
    return m_tree ? m_tree->at(m_node).count : 0;
}

JsonObject::const_iterator JsonObject::begin() const
{
    return m_tree ? const_iterator(m_tree, m_node + 1) : const_iterator(nullptr, 0);
}

JsonObject::const_iterator JsonObject::end() const
{
    return m_tree ? const_iterator(m_tree, m_tree->at(m_node).end) : const_iterator(nullptr, 0);
}

JsonValue JsonObject::value(QLatin1StringView key) const
{
    return values(QByteArrayView(key.data(), key.size()), {}).first;
}

std::pair<JsonValue, JsonValue> JsonObject::values(QByteArrayView key, QByteArrayView other) const
{
    if (!m_tree)
        return {};
    const JsonNode *nodes = m_tree->nodes.data();
    const char *text = m_tree->text.constData();
    const auto matches = [&](const JsonNode &node, QByteArrayView wanted) {
        return node.text.length == quint32(wanted.size()) && !wanted.isEmpty() &&
               std::memcmp(text + node.text.offset, wanted.data(), size_t(wanted.size())) == 0;
    };
    quint32 found = 0;
    quint32 foundOther = 0;
    for (quint32 at = m_node + 1, end = nodes[m_node].end; at < end; at = nodes[at + 1].end) {
        if (matches(nodes[at], key))
            found = at + 1;
        else if (matches(nodes[at], other))
            foundOther = at + 1;
    }
    return {found ? JsonValue(m_tree, found) : JsonValue(),
            foundOther ? JsonValue(m_tree, foundOther) : JsonValue()};
}

JsonDocument JsonDocument::parse(QByteArrayView body)
{
    // The parser keeps its buffers for the next document. Documents beyond the usual sizes get
    // a parser of their own, so that one large answer does not hold its memory for good.
    constexpr size_t keptCapacity = 1024 * 1024;
    static thread_local simdjson::dom::parser shared(keptCapacity);
    std::optional<simdjson::dom::parser> own;
    simdjson::dom::parser *parser = &shared;
    if (size_t(body.size()) > keptCapacity)
        parser = &own.emplace();

    simdjson::dom::element root;
    simdjson::error_code error = parser->parse(body.data(), size_t(body.size()), true).get(root);
    QByteArray strict;
    if (error == simdjson::UNESCAPED_CHARS || error == simdjson::STRING_ERROR) {
        // Pages in the wild write both, and lenient parsers read them.
        strict = strictened(body);
        error = parser->parse(strict.constData(), size_t(strict.size()), true).get(root);
    }
    if (error != simdjson::SUCCESS)
        return JsonDocument();
    const qsizetype parsed = strict.isEmpty() ? body.size() : strict.size();
    auto tree = std::make_shared<JsonTree>();
    tree->nodes.reserve(size_t(parsed / 8) + 1);
    tree->text.resize(parsed);
    TreeBuilder builder(*tree);
    builder.add(root);
    tree->text.truncate(builder.used());
    JsonDocument document;
    document.m_tree = std::move(tree);
    return document;
}

bool JsonDocument::isObject() const
{
    return m_tree && m_tree->at(0).type == JsonValue::Object;
}

bool JsonDocument::isArray() const
{
    return m_tree && m_tree->at(0).type == JsonValue::Array;
}

JsonObject JsonDocument::object() const
{
    return isObject() ? JsonObject(m_tree.get(), 0) : JsonObject();
}

JsonArray JsonDocument::array() const
{
    return isArray() ? JsonArray(m_tree.get(), 0) : JsonArray();
}

JsonValue JsonDecoder::find(const JsonObject &object, QLatin1StringView field) const
{
    if (m_style == KeyStyle::exact)
        return object.value(field);
    // The field's own spelling first, then its usual snake_case one ("group_id" for "groupId"),
    // looked for in one walk over the members; the last of repeated keys counts.
    char snake[64];
    qsizetype length = 0;
    for (const char c : field) {
        if (length + 2 > qsizetype(sizeof snake))
            break;
        if (c >= 'A' && c <= 'Z') {
            snake[length++] = '_';
            snake[length++] = char(c - 'A' + 'a');
        } else {
            snake[length++] = c;
        }
    }
    const bool distinct = length != field.size();
    const auto [exact, snaked] =
        object.values(QByteArrayView(field.data(), field.size()),
                      distinct ? QByteArrayView(snake, length) : QByteArrayView());
    if (!exact.isUndefined())
        return exact;
    if (!snaked.isUndefined())
        return snaked;
    // Then any other key with an underscore that converts to it.
    for (const JsonObject::const_iterator &member : object) {
        if (member.key().contains('_') && snakeKeyNamesField(member.key(), field))
            return member.value();
    }
    return JsonValue();
}

std::optional<JsonValue> JsonDecoder::typed(const JsonObject &object, QLatin1StringView field,
                                            JsonValue::Type type, bool required)
{
    if (!ok())
        return std::nullopt;
    JsonValue value = find(object, field);
    if (value.isUndefined() || value.isNull()) {
        if (required)
            fail(field, QStringLiteral("is missing"));
        return std::nullopt;
    }
    if (value.type() != type) {
        fail(field, QLatin1StringView("is not ") + typeName(type));
        return std::nullopt;
    }
    return value;
}

void JsonDecoder::fail(QLatin1StringView field, const QString &problem)
{
    if (ok())
        m_failure = QLatin1StringView("\"") + field + QLatin1StringView("\" ") + problem;
}

std::optional<QString> JsonDecoder::optionalString(const JsonObject &object,
                                                   QLatin1StringView field)
{
    if (auto value = typed(object, field, JsonValue::String, false))
        return value->toString();
    return std::nullopt;
}

std::optional<bool> JsonDecoder::optionalBool(const JsonObject &object, QLatin1StringView field)
{
    if (auto value = typed(object, field, JsonValue::Bool, false))
        return value->toBool();
    return std::nullopt;
}

std::optional<JsonObject> JsonDecoder::optionalObject(const JsonObject &object,
                                                      QLatin1StringView field)
{
    if (auto value = typed(object, field, JsonValue::Object, false))
        return value->toObject();
    return std::nullopt;
}

std::optional<JsonArray> JsonDecoder::optionalArray(const JsonObject &object,
                                                    QLatin1StringView field)
{
    if (auto value = typed(object, field, JsonValue::Array, false))
        return value->toArray();
    return std::nullopt;
}

QString JsonDecoder::string(const JsonObject &object, QLatin1StringView field)
{
    return typed(object, field, JsonValue::String, true).value_or(JsonValue()).toString();
}

JsonObject JsonDecoder::object(const JsonObject &object, QLatin1StringView field)
{
    return typed(object, field, JsonValue::Object, true).value_or(JsonValue()).toObject();
}

JsonObject JsonDecoder::element(const JsonValue &value, QLatin1StringView arrayField)
{
    if (ok() && !value.isObject())
        fail(arrayField, QStringLiteral("holds an element that is not an object"));
    return value.toObject();
}

JsonObject JsonDecoder::root(const JsonDocument &document)
{
    if (ok() && !document.isObject())
        m_failure = QStringLiteral("the document is not a JSON object");
    return document.object();
}

namespace JsonValues {

QString text(const JsonValue &value)
{
    if (value.isDouble()) {
        const double number = value.toDouble();
        const qint64 whole = value.toInteger();
        return number == double(whole) ? QString::number(whole) : QString::number(number);
    }
    return value.toString().left(maximumTextLength);
}

namespace {

// The form nearly every page writes, "2026-11-22T18:41:07.113Z" or without the milliseconds,
// read directly: Qt's ISO 8601 parser costs more than the rest of an incident's reading.
// Anything else, or a date or time that does not exist, is left to that parser.
std::optional<QDateTime> usualInstant(QStringView text)
{
    const bool withMs = text.size() == 24;
    if (!withMs && text.size() != 20)
        return std::nullopt;
    bool ok = true;
    const auto number = [&](qsizetype at, qsizetype digits) {
        int value = 0;
        for (qsizetype i = at; i < at + digits; ++i) {
            const char16_t c = text[i].unicode();
            ok = ok && c >= u'0' && c <= u'9';
            value = value * 10 + (c - u'0');
        }
        return value;
    };
    const auto is = [&](qsizetype at, char16_t c) { return text[at].unicode() == c; };
    const QDate date(number(0, 4), number(5, 2), number(8, 2));
    const QTime time(number(11, 2), number(14, 2), number(17, 2), withMs ? number(20, 3) : 0);
    if (!ok || !is(4, u'-') || !is(7, u'-') || !is(10, u'T') || !is(13, u':') || !is(16, u':') ||
        (withMs && !is(19, u'.')) || !is(text.size() - 1, u'Z') || !date.isValid() ||
        !time.isValid())
        return std::nullopt;
    return QDateTime(date, time, Qt::UTC);
}

} // namespace

QDateTime instant(const QString &text)
{
    if (std::optional<QDateTime> usual = usualInstant(text))
        return *usual;
    QDateTime time = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!time.isValid())
        time = QDateTime::fromString(text, Qt::ISODate);
    return time.isValid() ? time.toUTC() : QDateTime();
}

QDateTime instant(const JsonValue &value)
{
    return instant(value.toString());
}

std::optional<WebLink> link(const JsonValue &value)
{
    return WebLink::parse(value.toString());
}

} // namespace JsonValues

} // namespace lanternic
