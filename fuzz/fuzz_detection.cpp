// Any response body through the detection chain: every reader may look at it. Where Qt's own
// parser reads the body as JSON, the readers' decoder must read the same values from it.

#include "model/feedtext.h"
#include "sources/readers/jsondecoder.h"
#include "sources/sourcecheck.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStringDecoder>
#include <cmath>

using namespace lanternic;

namespace {

bool same(const JsonValue &ours, const QJsonValue &qt);

bool sameArray(const JsonArray &ours, const QJsonArray &qt)
{
    qsizetype i = 0;
    for (const JsonValue value : ours) {
        if (i == qt.size() || !same(value, qt.at(i++)))
            return false;
    }
    return i == qt.size() && ours.size() == qt.size();
}

// Texts as the decoder gives them: Qt's UTF-8 decoding drops a leading byte order mark.
QString asRead(const QString &text)
{
    return QString::fromUtf8(text.toUtf8());
}

bool sameObject(const JsonObject &ours, const QJsonObject &qt)
{
    // Qt keeps one member of each key, the last, as the decoder reads it.
    QSet<QByteArrayView> keys;
    for (const JsonObject::const_iterator &member : ours) {
        keys.insert(member.key());
        const QLatin1StringView bytes(member.key().data(), member.key().size());
        QStringDecoder exact(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
        if (!bytes.isEmpty() && !same(ours.value(bytes), qt.value(QString(exact(member.key())))))
            return false;
    }
    return keys.size() == qt.size();
}

bool same(const JsonValue &ours, const QJsonValue &qt)
{
    switch (qt.type()) {
    case QJsonValue::Null:
        return ours.isNull();
    case QJsonValue::Bool:
        return ours.isBool() && ours.toBool() == qt.toBool();
    case QJsonValue::Double: {
        const double a = ours.toDouble();
        const double b = qt.toDouble();
        return ours.isDouble() && (a == b || std::abs(a - b) <= 1e-12 * std::abs(b));
    }
    case QJsonValue::String:
        return ours.isString() && ours.toString() == asRead(qt.toString());
    case QJsonValue::Array:
        return ours.isArray() && sameArray(ours.toArray(), qt.toArray());
    case QJsonValue::Object:
        return ours.isObject() && sameObject(ours.toObject(), qt.toObject());
    default:
        return false;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const JSONSource source = [] {
        JSONSource s;
        s.id = QStringLiteral("fuzz");
        s.name = QStringLiteral("Fuzz");
        s.homeURL = QUrl(QStringLiteral("https://status.example.com"));
        s.updogProvider = QStringLiteral("amazonaws");
        s.includeGroups = QSet<QString>{QStringLiteral("Sites")};
        return s;
    }();
    const QByteArray body =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
    // Where both read the body: Qt's parser is the more lenient (it takes unknown escapes, and
    // keeps a lone surrogate escape, which the decoder replaces).
    static const QRegularExpression surrogate(QStringLiteral("\\\\u[dD][89a-fA-F]"));
    QJsonParseError error;
    const QJsonDocument qt = QJsonDocument::fromJson(body, &error);
    const JsonDocument ours = JsonDocument::parse(body);
    if (error.error == QJsonParseError::NoError && !ours.isNull() &&
        !QString::fromUtf8(body).contains(surrogate)) {
        if (qt.isObject() ? !ours.isObject() || !sameObject(ours.object(), qt.object())
                          : !ours.isArray() || !sameArray(ours.array(), qt.array()))
            __builtin_trap();
    }
    const SourceResult result = SourceCheck::read(source, body);
    // What a reader keeps is shown through the same cleaning, and so is any text at all.
    for (const ComponentStatus &component : result.components)
        FeedText::clean(component.name, 40);
    FeedText::clean(result.name, 40);
    FeedText::clean(result.detail, 40);
    FeedText::clean(QString::fromUtf8(body), 40);
    // Whatever the body, the result links only to the web.
    if (result.url && result.url->url().scheme() != QLatin1StringView("https") &&
        result.url->url().scheme() != QLatin1StringView("http"))
        __builtin_trap();
    return 0;
}
