#include "sources/readers/jsondecoder.h"

#include "model/urls.h"

namespace lanternic {

namespace {

// Compares the camel-case form of a snake-case key with a field name without building it.
// Leading and trailing underscores stay; the rest splits at "_" (empty pieces dropped), the
// first piece is lower-cased and the others capitalised. A key of one piece stays as it is.
bool snakeKeyNamesField(QStringView key, QLatin1StringView field)
{
    qsizetype begin = 0;
    qsizetype end = key.size();
    while (begin < end && key[begin] == u'_')
        ++begin;
    while (end > begin && key[end - 1] == u'_')
        --end;
    const QStringView middle = key.sliced(begin, end - begin);
    if (!middle.contains(u'_'))
        return key == field;

    qsizetype at = 0;
    auto expect = [&](QChar c) { return at < field.size() && field[at++] == c; };
    for (qsizetype i = 0; i < begin; ++i) {
        if (!expect(u'_'))
            return false;
    }
    bool firstPiece = true;
    bool pieceStart = true;
    for (QChar c : middle) {
        if (c == u'_') {
            pieceStart = true;
            continue;
        }
        const bool upper = pieceStart && !firstPiece;
        if (pieceStart && firstPiece)
            firstPiece = false;
        pieceStart = false;
        if (!expect(upper ? c.toUpper() : c.toLower()))
            return false;
    }
    for (qsizetype i = end; i < key.size(); ++i) {
        if (!expect(u'_'))
            return false;
    }
    return at == field.size();
}

QLatin1StringView typeName(QJsonValue::Type type)
{
    switch (type) {
    case QJsonValue::Bool:
        return QLatin1StringView("a boolean");
    case QJsonValue::Double:
        return QLatin1StringView("a number");
    case QJsonValue::String:
        return QLatin1StringView("a string");
    case QJsonValue::Array:
        return QLatin1StringView("an array");
    case QJsonValue::Object:
        return QLatin1StringView("an object");
    default:
        return QLatin1StringView("a value");
    }
}

} // namespace

bool keyNamesField(QStringView key, QLatin1StringView field, KeyStyle style)
{
    return style == KeyStyle::exact ? key == field : snakeKeyNamesField(key, field);
}

QJsonDocument parseJson(const QByteArray &body)
{
    return QJsonDocument::fromJson(body);
}

QJsonValue JsonDecoder::find(const QJsonObject &object, QLatin1StringView field) const
{
    // The field's own spelling is the common case and a direct lookup.
    if (auto it = object.constFind(field); it != object.constEnd())
        return it.value();
    if (m_style == KeyStyle::exact)
        return QJsonValue(QJsonValue::Undefined);
    // Next its usual snake_case spelling, "group_id" for "groupId", also a direct lookup.
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
        if (auto it = object.constFind(QLatin1StringView(snake, length)); it != object.constEnd())
            return it.value();
    }
    // Then any other key with an underscore that converts to it.
    for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
        const QString key = it.key();
        if (key.contains(u'_') && snakeKeyNamesField(key, field))
            return it.value();
    }
    return QJsonValue(QJsonValue::Undefined);
}

std::optional<QJsonValue> JsonDecoder::typed(const QJsonObject &object, QLatin1StringView field,
                                             QJsonValue::Type type, bool required)
{
    if (!ok())
        return std::nullopt;
    QJsonValue value = find(object, field);
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

std::optional<QString> JsonDecoder::optionalString(const QJsonObject &object,
                                                   QLatin1StringView field)
{
    if (auto value = typed(object, field, QJsonValue::String, false))
        return value->toString();
    return std::nullopt;
}

std::optional<bool> JsonDecoder::optionalBool(const QJsonObject &object, QLatin1StringView field)
{
    if (auto value = typed(object, field, QJsonValue::Bool, false))
        return value->toBool();
    return std::nullopt;
}

std::optional<QJsonObject> JsonDecoder::optionalObject(const QJsonObject &object,
                                                       QLatin1StringView field)
{
    if (auto value = typed(object, field, QJsonValue::Object, false))
        return value->toObject();
    return std::nullopt;
}

std::optional<QJsonArray> JsonDecoder::optionalArray(const QJsonObject &object,
                                                     QLatin1StringView field)
{
    if (auto value = typed(object, field, QJsonValue::Array, false))
        return value->toArray();
    return std::nullopt;
}

QString JsonDecoder::string(const QJsonObject &object, QLatin1StringView field)
{
    return typed(object, field, QJsonValue::String, true).value_or(QJsonValue()).toString();
}

QJsonObject JsonDecoder::object(const QJsonObject &object, QLatin1StringView field)
{
    return typed(object, field, QJsonValue::Object, true).value_or(QJsonValue()).toObject();
}

QJsonObject JsonDecoder::element(const QJsonValue &value, QLatin1StringView arrayField)
{
    if (ok() && !value.isObject())
        fail(arrayField, QStringLiteral("holds an element that is not an object"));
    return value.toObject();
}

QJsonObject JsonDecoder::root(const QJsonDocument &document)
{
    if (ok() && !document.isObject())
        m_failure = QStringLiteral("the document is not a JSON object");
    return document.object();
}

namespace JsonValues {

QString text(const QJsonValue &value)
{
    if (value.isDouble()) {
        const double number = value.toDouble();
        const qint64 whole = value.toInteger();
        return number == double(whole) ? QString::number(whole) : QString::number(number);
    }
    return value.toString().left(maximumTextLength);
}

QDateTime instant(const QString &text)
{
    QDateTime time = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!time.isValid())
        time = QDateTime::fromString(text, Qt::ISODate);
    return time.isValid() ? time.toUTC() : QDateTime();
}

QDateTime instant(const QJsonValue &value)
{
    return instant(value.toString());
}

std::optional<QUrl> link(const QJsonValue &value)
{
    return parseWebUrl(value.toString());
}

} // namespace JsonValues

} // namespace lanternic
