#include "store/storedjson.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace lanternic {

namespace {

constexpr qint64 referenceEpochMs = 978'307'200'000;

void appendEscaped(QByteArray &out, QStringView text)
{
    static const char hex[] = "0123456789abcdef";
    for (char c : text.toUtf8()) {
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (static_cast<unsigned char>(c) < 0x20) {
                out += "\\u00";
                out += hex[(c >> 4) & 0xf];
                out += hex[c & 0xf];
            } else {
                out += c;
            }
        }
    }
}

} // namespace

double referenceSeconds(const QDateTime &time)
{
    return double(time.toMSecsSinceEpoch() - referenceEpochMs) / 1000.0;
}

QDateTime fromReferenceSeconds(double seconds)
{
    return QDateTime::fromMSecsSinceEpoch(qint64(std::llround(seconds * 1000.0)) + referenceEpochMs,
                                          Qt::UTC);
}

void appendJsonString(QByteArray &out, QStringView text)
{
    out += '"';
    // Ids and health words are nearly always plain ASCII with nothing to escape: copy them.
    const qsizetype start = out.size();
    out.resize(start + text.size());
    char *to = out.data() + start;
    for (QChar c : text) {
        const char16_t u = c.unicode();
        if (u < 0x20 || u >= 0x80 || u == u'"' || u == u'\\') {
            out.truncate(start);
            appendEscaped(out, text);
            break;
        }
        *to++ = char(u);
    }
    out += '"';
}

void appendJsonNumber(QByteArray &out, double value)
{
    if (!std::isfinite(value)) {
        out += '0';
        return;
    }
    char buffer[32];
    const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
    const std::string_view number(buffer, error == std::errc() ? end - buffer : 0);
    out.append(number.data(), qsizetype(number.size()));
    if (number.find_first_of(".e") == std::string_view::npos)
        out += ".0";
}

} // namespace lanternic
