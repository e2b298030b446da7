#pragma once

#include "model/urls.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QDateTime>
#include <QLatin1StringView>
#include <QString>
#include <QUrl>
#include <QVarLengthArray>
#include <memory>
#include <optional>

namespace lanternic {

struct JsonTree;
class JsonArray;
class JsonObject;

// A read-only view of one value in a parsed document. Values, arrays and objects point into
// the JsonDocument they came from and must not outlive it. Reads of the wrong type give empty
// results, as Qt's JSON classes do.
class JsonValue {
public:
    enum Type : quint8 { Undefined, Null, Bool, Double, String, Array, Object };

    JsonValue() = default;

    Type type() const;
    bool isUndefined() const { return type() == Undefined; }
    bool isNull() const { return type() == Null; }
    bool isBool() const { return type() == Bool; }
    bool isDouble() const { return type() == Double; }
    bool isString() const { return type() == String; }
    bool isArray() const { return type() == Array; }
    bool isObject() const { return type() == Object; }

    bool toBool(bool fallback = false) const;
    double toDouble(double fallback = 0) const;
    // The number when it is a whole one that fits; fallback otherwise.
    qint64 toInteger(qint64 fallback = 0) const;
    int toInt(int fallback = 0) const;
    QString toString() const;
    JsonArray toArray() const;
    JsonObject toObject() const;

    // Whether this is the string text (ASCII, as the readers' literals are).
    bool operator==(QLatin1StringView text) const;

private:
    friend class JsonArray;
    friend class JsonObject;
    friend class JsonDocument;
    friend class JsonDecoder;
    JsonValue(const JsonTree *tree, quint32 node) : m_tree(tree), m_node(node) {}
    // A string's UTF-8, as the document has it.
    QByteArrayView utf8() const;

    const JsonTree *m_tree = nullptr;
    quint32 m_node = 0;
};

class JsonArray {
public:
    class const_iterator {
    public:
        JsonValue operator*() const { return JsonValue(m_tree, m_node); }
        const_iterator &operator++();
        bool operator==(const const_iterator &other) const { return m_node == other.m_node; }

    private:
        friend class JsonArray;
        const_iterator(const JsonTree *tree, quint32 node) : m_tree(tree), m_node(node) {}
        const JsonTree *m_tree;
        quint32 m_node;
    };

    JsonArray() = default;

    qsizetype size() const;
    bool isEmpty() const { return size() == 0; }
    JsonValue first() const;
    JsonValue last() const;
    const_iterator begin() const;
    const_iterator end() const;

private:
    friend class JsonValue;
    friend class JsonDocument;
    JsonArray(const JsonTree *tree, quint32 node) : m_tree(tree), m_node(node) {}

    const JsonTree *m_tree = nullptr;
    quint32 m_node = 0;
};

class JsonObject {
public:
    // One member: its key (UTF-8) and its value.
    class const_iterator {
    public:
        QByteArrayView key() const;
        JsonValue value() const { return JsonValue(m_tree, m_node + 1); }
        const_iterator &operator++();
        bool operator==(const const_iterator &other) const { return m_node == other.m_node; }
        const const_iterator &operator*() const { return *this; }

    private:
        friend class JsonObject;
        const_iterator(const JsonTree *tree, quint32 node) : m_tree(tree), m_node(node) {}
        const JsonTree *m_tree;
        quint32 m_node; // the key's
    };

    JsonObject() = default;

    qsizetype size() const;
    bool isEmpty() const { return size() == 0; }
    // The member of that key (the last one, where a document repeats a key); undefined when
    // there is none. Keys are compared as ASCII, as the readers write them.
    JsonValue value(QLatin1StringView key) const;
    bool contains(QLatin1StringView key) const { return !value(key).isUndefined(); }
    const_iterator begin() const;
    const_iterator end() const;

private:
    friend class JsonValue;
    friend class JsonDocument;
    friend class JsonDecoder;
    JsonObject(const JsonTree *tree, quint32 node) : m_tree(tree), m_node(node) {}

    const JsonTree *m_tree = nullptr;
    quint32 m_node = 0;
};

// A parsed document. Anything that is not JSON (including text that is not UTF-8) gives an
// empty one, whose object and array are empty.
class JsonDocument {
public:
    JsonDocument() = default;
    static JsonDocument parse(QByteArrayView body);

    bool isNull() const { return !m_tree; }
    bool isObject() const;
    bool isArray() const;
    JsonObject object() const;
    JsonArray array() const;

private:
    std::shared_ptr<const JsonTree> m_tree;
};

// How JSON keys are matched to field names.
enum class KeyStyle {
    exact,
    // "group_id", "GROUP_ID" and "groupId" all name the field groupId.
    fromSnakeCase,
};

inline JsonDocument parseJson(QByteArrayView body)
{
    return JsonDocument::parse(body);
}

// Lenient reads of single values, for the platforms whose documents are read field by field:
// whatever a value holds gives a usable (if empty) result, and texts are capped.
namespace JsonValues {

inline constexpr qsizetype maximumTextLength = 4096;

// Text of a string, or of a whole number (some platforms write ids as numbers).
QString text(const JsonValue &value);
// An instant as the feeds write it (ISO 8601, with or without milliseconds); invalid otherwise.
QDateTime instant(const QString &text);
QDateTime instant(const JsonValue &value);
// An http or https link; nothing for anything else.
std::optional<WebLink> link(const JsonValue &value);

} // namespace JsonValues

// Strict typed reads of JSON objects. A missing required field or a value of the wrong type
// marks the whole decode as failed; reads after a failure return empty values, so a decoder
// can read straight through and check ok() once at the end. Null counts as absent. Like the
// values it reads, a decoder must not outlive the document.
class JsonDecoder {
public:
    explicit JsonDecoder(KeyStyle style) : m_style(style) {}

    bool ok() const { return m_failure.isEmpty(); }
    // The first problem met, for diagnostics; empty while ok().
    const QString &failure() const { return m_failure; }

    std::optional<QString> optionalString(const JsonObject &object, QLatin1StringView field);
    std::optional<bool> optionalBool(const JsonObject &object, QLatin1StringView field);
    std::optional<JsonObject> optionalObject(const JsonObject &object, QLatin1StringView field);
    std::optional<JsonArray> optionalArray(const JsonObject &object, QLatin1StringView field);

    QString string(const JsonObject &object, QLatin1StringView field);
    // A string as the document holds it, in UTF-8 and valid while the document lives, for a
    // text made only where one is needed.
    QByteArrayView utf8(const JsonObject &object, QLatin1StringView field);
    std::optional<QByteArrayView> optionalUtf8(const JsonObject &object, QLatin1StringView field);
    JsonObject object(const JsonObject &object, QLatin1StringView field);

    // An element of an array of objects; anything else, null included, fails the decode.
    JsonObject element(const JsonValue &value, QLatin1StringView arrayField);

    // The top level of a document, which must be an object.
    JsonObject root(const JsonDocument &document);

private:
    JsonValue find(const JsonObject &object, QLatin1StringView field);
    std::optional<JsonValue> typed(const JsonObject &object, QLatin1StringView field,
                                   JsonValue::Type type, bool required);
    void fail(QLatin1StringView field, const QString &problem);

    // The members of the object read last, gathered in one walk: decoders read several fields
    // of each object in turn.
    struct Member {
        QByteArrayView key;
        JsonValue value;
    };
    JsonObject m_membersOf;
    QVarLengthArray<Member, 16> m_members;

    KeyStyle m_style;
    QString m_failure;
};

} // namespace lanternic
