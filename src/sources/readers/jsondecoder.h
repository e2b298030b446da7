#pragma once

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QLatin1StringView>
#include <QString>
#include <QUrl>
#include <optional>

namespace lanternic {

// How JSON keys are matched to field names.
enum class KeyStyle {
    exact,
    // "group_id", "GROUP_ID" and "groupId" all name the field groupId.
    fromSnakeCase,
};

// Whether a JSON key names the (camel-case) field under the given style.
bool keyNamesField(QStringView key, QLatin1StringView field, KeyStyle style);

// Parses a body into a document; anything that is not JSON yields an empty document.
QJsonDocument parseJson(const QByteArray &body);

// Lenient reads of single values, for the platforms whose documents are read field by field:
// whatever a value holds gives a usable (if empty) result, and texts are capped.
namespace JsonValues {

inline constexpr qsizetype maximumTextLength = 4096;

// Text of a string, or of a whole number (some platforms write ids as numbers).
QString text(const QJsonValue &value);
// An instant as the feeds write it (ISO 8601, with or without milliseconds); invalid otherwise.
QDateTime instant(const QString &text);
QDateTime instant(const QJsonValue &value);
// An http or https link; nothing for anything else.
std::optional<QUrl> link(const QJsonValue &value);

} // namespace JsonValues

// Strict typed reads of JSON objects. A missing required field or a value of the wrong type
// marks the whole decode as failed; reads after a failure return empty values, so a decoder
// can read straight through and check ok() once at the end. Null counts as absent.
class JsonDecoder {
public:
    explicit JsonDecoder(KeyStyle style) : m_style(style) {}

    bool ok() const { return m_failure.isEmpty(); }
    // The first problem met, for diagnostics; empty while ok().
    const QString &failure() const { return m_failure; }

    std::optional<QString> optionalString(const QJsonObject &object, QLatin1StringView field);
    std::optional<bool> optionalBool(const QJsonObject &object, QLatin1StringView field);
    std::optional<QJsonObject> optionalObject(const QJsonObject &object, QLatin1StringView field);
    std::optional<QJsonArray> optionalArray(const QJsonObject &object, QLatin1StringView field);

    QString string(const QJsonObject &object, QLatin1StringView field);
    QJsonObject object(const QJsonObject &object, QLatin1StringView field);

    // An element of an array of objects; anything else, null included, fails the decode.
    QJsonObject element(const QJsonValue &value, QLatin1StringView arrayField);

    // The top level of a document, which must be an object.
    QJsonObject root(const QJsonDocument &document);

private:
    QJsonValue find(const QJsonObject &object, QLatin1StringView field) const;
    std::optional<QJsonValue> typed(const QJsonObject &object, QLatin1StringView field,
                                    QJsonValue::Type type, bool required);
    void fail(QLatin1StringView field, const QString &problem);

    KeyStyle m_style;
    QString m_failure;
};

} // namespace lanternic
