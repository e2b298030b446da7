#pragma once

#include <QByteArray>
#include <QLatin1StringView>
#include <QStringView>

namespace lanternic {

// Compact JSON written straight into one buffer, byte for byte as QJsonDocument writes it
// (the same escapes, keys in the order given, which callers give sorted, as a QJsonObject
// keeps them): building a QJsonObject for each of a thousand results cost more than the pass.
class JsonWriter {
public:
    JsonWriter &beginObject() { return open('{'); }
    JsonWriter &endObject() { return close('}'); }
    JsonWriter &beginArray() { return open('['); }
    JsonWriter &endArray() { return close(']'); }

    // The next member's name; its value follows.
    JsonWriter &key(QLatin1StringView name);
    JsonWriter &value(QStringView text);
    JsonWriter &value(const QString &text) { return value(QStringView(text)); }
    JsonWriter &value(qint64 number);
    JsonWriter &boolean(bool value);
    JsonWriter &null();
    // Null for an empty text, as a page that gives none.
    JsonWriter &textOrNull(const QString &text) { return text.isEmpty() ? null() : value(text); }

    QByteArray take() { return std::move(m_out); }

private:
    JsonWriter &open(char bracket);
    JsonWriter &close(char bracket);
    void separate();

    QByteArray m_out;
    bool m_afterValue = false;
};

} // namespace lanternic
