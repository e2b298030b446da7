#include "sources/readers/jsondecoder.h"

#include "model/urls.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <simdjson.h>

namespace lanternic {

namespace {

// Documents up to this size are parsed by one parser kept for the next, into buffers kept too.
constexpr size_t keptCapacity = 1024 * 1024;

// The buffers of a document no longer used, for the next one: most documents then cost no
// allocation.
simdjson::dom::document &spareDocument()
{
    static thread_local simdjson::dom::document spare;
    return spare;
}

// A moved-from document keeps its capacity as a number, not its buffers: it is emptied.
simdjson::dom::document takeDocument(simdjson::dom::document &from)
{
    simdjson::dom::document taken(std::move(from));
    from = simdjson::dom::document();
    return taken;
}

} // namespace

// A parsed document is simdjson's tape, read in place: one 64-bit word a value, its kind in the
// top byte. An array or object opens with a word whose low 32 bits index the word after its
// closing one and whose bits 32 to 55 count what it holds (saturated); an object's members are
// a key (a string) and a value each. A string's word points into the string buffer, where a
// 32-bit length precedes its UTF-8; a number's value is the next word.
struct JsonTree {
    simdjson::dom::document document;

    JsonTree() : document(takeDocument(spareDocument())) {}
    ~JsonTree()
    {
        simdjson::dom::document &spare = spareDocument();
        if (document.capacity() <= keptCapacity && document.capacity() > spare.capacity())
            spare = takeDocument(document);
    }
    JsonTree(const JsonTree &) = delete;
    JsonTree &operator=(const JsonTree &) = delete;

    quint64 word(quint32 index) const { return document.tape[index]; }
    char kind(quint32 index) const { return char(word(index) >> 56); }
    // The index of what follows the value at index, and all it holds.
    quint32 after(quint32 index) const
    {
        switch (kind(index)) {
        case '[':
        case '{':
            return quint32(word(index));
        case 'l':
        case 'u':
        case 'd':
            return index + 2;
        default:
            return index + 1;
        }
    }
    // The closing word of the array or object at index: where walking its contents stops.
    quint32 close(quint32 index) const { return quint32(word(index)) - 1; }
    // What the array or object at index holds; past the tape's saturated count, they are counted.
    quint32 count(quint32 index) const
    {
        const auto stored = quint32(word(index) >> 32) & simdjson::internal::JSON_COUNT_MASK;
        if (stored != simdjson::internal::JSON_COUNT_MASK)
            return stored;
        const bool object = kind(index) == '{';
        quint32 counted = 0;
        for (quint32 at = index + 1, end = close(index); at < end; at = after(at + object))
            ++counted;
        return counted;
    }
    QByteArrayView text(quint32 index) const
    {
        const uint8_t *at =
            document.string_buf.get() + (word(index) & simdjson::internal::JSON_VALUE_MASK);
        quint32 length;
        std::memcpy(&length, at, sizeof length);
        return QByteArrayView(reinterpret_cast<const char *>(at) + sizeof length, length);
    }
    qint64 integer(quint32 index) const { return qint64(word(index + 1)); }
    double number(quint32 index) const
    {
        switch (kind(index)) {
        case 'l':
            return double(qint64(word(index + 1)));
        case 'u':
            return double(word(index + 1));
        default:
            return std::bit_cast<double>(word(index + 1));
        }
    }
};

namespace {

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

// What each kind of tape word holds, by its kind: readers ask for every value's type, often
// several times.
constexpr std::array<JsonValue::Type, 256> typeOfKind = [] {
    std::array<JsonValue::Type, 256> types{};
    types['{'] = JsonValue::Object;
    types['['] = JsonValue::Array;
    types['"'] = JsonValue::String;
    types['l'] = types['u'] = types['d'] = JsonValue::Double;
    types['t'] = types['f'] = JsonValue::Bool;
    types['n'] = JsonValue::Null;
    return types;
}();

} // namespace

JsonValue::Type JsonValue::type() const
{
    return m_tree ? typeOfKind[uchar(m_tree->kind(m_node))] : Undefined;
}

bool JsonValue::toBool(bool fallback) const
{
    return isBool() ? m_tree->kind(m_node) == 't' : fallback;
}

double JsonValue::toDouble(double fallback) const
{
    return isDouble() ? m_tree->number(m_node) : fallback;
}

qint64 JsonValue::toInteger(qint64 fallback) const
{
    if (!isDouble())
        return fallback;
    if (m_tree->kind(m_node) == 'l')
        return m_tree->integer(m_node);
    const double number = m_tree->number(m_node);
    // 2^63 is exact as a double; every whole double below it fits.
    constexpr double limit = 9223372036854775808.0;
    if (number >= -limit && number < limit && number == std::trunc(number))
        return qint64(number);
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
    return isString() ? m_tree->text(m_node) : QByteArrayView();
}

QString JsonValue::toString() const
{
    const QByteArrayView text = utf8();
    // Most texts are ASCII, which reads as Latin-1 for a fraction of what decoding UTF-8 costs.
    const bool ascii =
        std::all_of(text.begin(), text.end(), [](char c) { return uchar(c) < 0x80; });
    return !text.isEmpty() && ascii ? QString::fromLatin1(text) : QString::fromUtf8(text);
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
    return m_tree ? m_tree->count(m_node) : 0;
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
    return m_tree ? const_iterator(m_tree, m_tree->close(m_node)) : const_iterator(nullptr, 0);
}

JsonArray::const_iterator &JsonArray::const_iterator::operator++()
{
    m_node = m_tree->after(m_node);
    return *this;
}

QByteArrayView JsonObject::const_iterator::key() const
{
    return m_tree->text(m_node);
}

JsonObject::const_iterator &JsonObject::const_iterator::operator++()
{
    m_node = m_tree->after(m_node + 1);
    return *this;
}

qsizetype JsonObject::size() const
{
    return m_tree ? m_tree->count(m_node) : 0;
}

JsonObject::const_iterator JsonObject::begin() const
{
    return m_tree ? const_iterator(m_tree, m_node + 1) : const_iterator(nullptr, 0);
}

JsonObject::const_iterator JsonObject::end() const
{
    return m_tree ? const_iterator(m_tree, m_tree->close(m_node)) : const_iterator(nullptr, 0);
}

JsonValue JsonObject::value(QLatin1StringView key) const
{
    if (!m_tree || key.isEmpty())
        return JsonValue();
    quint32 found = 0;
    for (quint32 at = m_node + 1, end = m_tree->close(m_node); at < end;
         at = m_tree->after(at + 1)) {
        if (m_tree->text(at) == QByteArrayView(key.data(), key.size()))
            found = at + 1;
    }
    return found ? JsonValue(m_tree, found) : JsonValue();
}

JsonDocument JsonDocument::parse(QByteArrayView body)
{
    // Documents beyond the usual sizes get a parser of their own, so that one large answer
    // does not hold its memory for good.
    static thread_local simdjson::dom::parser shared(keptCapacity);
    std::optional<simdjson::dom::parser> own;
    simdjson::dom::parser *parser = &shared;
    if (size_t(body.size()) > keptCapacity)
        parser = &own.emplace();

    auto tree = std::make_shared<JsonTree>();
    simdjson::error_code error =
        parser->parse_into_document(tree->document, body.data(), size_t(body.size()), true).error();
    if (error == simdjson::UNESCAPED_CHARS || error == simdjson::STRING_ERROR) {
        // Pages in the wild write both, and lenient parsers read them.
        const QByteArray strict = strictened(body);
        error = parser
                    ->parse_into_document(tree->document, strict.constData(), size_t(strict.size()),
                                          true)
                    .error();
    }
    if (error != simdjson::SUCCESS)
        return JsonDocument();
    JsonDocument document;
    document.m_tree = std::move(tree);
    return document;
}

// The root value follows the tape's opening word.
bool JsonDocument::isObject() const
{
    return m_tree && m_tree->kind(1) == '{';
}

bool JsonDocument::isArray() const
{
    return m_tree && m_tree->kind(1) == '[';
}

JsonObject JsonDocument::object() const
{
    return isObject() ? JsonObject(m_tree.get(), 1) : JsonObject();
}

JsonArray JsonDocument::array() const
{
    return isArray() ? JsonArray(m_tree.get(), 1) : JsonArray();
}

JsonValue JsonDecoder::find(const JsonObject &object, QLatin1StringView field)
{
    if (object.m_tree != m_membersOf.m_tree || object.m_node != m_membersOf.m_node) {
        m_membersOf = object;
        m_members.clear();
        if (const JsonTree *tree = object.m_tree) {
            for (quint32 at = object.m_node + 1, end = tree->close(object.m_node); at < end;
                 at = tree->after(at + 1))
                m_members.append({tree->text(at), JsonValue(tree, at + 1)});
        }
    }
    // The last of repeated keys counts.
    const auto last = [this](QByteArrayView key) {
        // Keys of one length mostly differ in their first byte: most need no full comparison.
        for (auto it = m_members.crbegin(); it != m_members.crend(); ++it) {
            if (it->key.size() == key.size() && it->key.front() == key.front() &&
                std::memcmp(it->key.data(), key.data(), size_t(key.size())) == 0)
                return it->value;
        }
        return JsonValue();
    };
    const QByteArrayView name(field.data(), field.size());
    if (name.isEmpty())
        return JsonValue();
    // The field's own spelling first, then its usual snake_case one ("group_id" for "groupId").
    if (const JsonValue exact = last(name); !exact.isUndefined() || m_style == KeyStyle::exact)
        return exact;
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
    if (length != field.size()) {
        if (const JsonValue snaked = last(QByteArrayView(snake, length)); !snaked.isUndefined())
            return snaked;
    }
    // Then any other key with an underscore that converts to it.
    for (const Member &member : m_members) {
        if (member.key.contains('_') && snakeKeyNamesField(member.key, field))
            return member.value;
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

QByteArrayView JsonDecoder::utf8(const JsonObject &object, QLatin1StringView field)
{
    return typed(object, field, JsonValue::String, true).value_or(JsonValue()).utf8();
}

std::optional<QByteArrayView> JsonDecoder::optionalUtf8(const JsonObject &object,
                                                        QLatin1StringView field)
{
    if (auto value = typed(object, field, JsonValue::String, false))
        return value->utf8();
    return std::nullopt;
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
