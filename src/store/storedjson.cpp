#include "store/storedjson.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace lanternic {

namespace {

constexpr qint64 referenceEpochMs = 978'307'200'000;

void appendUnicodeEscape(QByteArray &out, char16_t unit)
{
    static const char hex[] = "0123456789abcdef";
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4)
        out += hex[(unit >> shift) & 0xf];
}

void appendEscaped(QByteArray &out, QStringView text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        switch (c) {
        case u'"':
            out += "\\\"";
            continue;
        case u'\\':
            out += "\\\\";
            continue;
        case u'\n':
            out += "\\n";
            continue;
        case u'\r':
            out += "\\r";
            continue;
        case u'\t':
            out += "\\t";
            continue;
        }
        if (c < 0x20) {
            appendUnicodeEscape(out, c);
        } else if (QChar::isHighSurrogate(c) && i + 1 < text.size() &&
                   QChar::isLowSurrogate(text[i + 1].unicode())) {
            out += text.sliced(i, 2).toUtf8();
            ++i;
        } else if (QChar::isSurrogate(c)) {
            // UTF-8 cannot hold a lone surrogate; escaped, it reads back as it was.
            appendUnicodeEscape(out, c);
        } else {
            out += text.sliced(i, 1).toUtf8();
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
    // About 3,000 years either way: beyond any real date, and small enough that every
    // millisecond survives the trip through a double and back.
    constexpr double limit = 1.0e11;
    const double clamped = std::isnan(seconds) ? 0.0 : std::clamp(seconds, -limit, limit);
    return QDateTime::fromMSecsSinceEpoch(qint64(std::llround(clamped * 1000.0)) + referenceEpochMs,
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
    // Plain digits, as stored dates have always been written ("900000000.0", not "9e+08").
    char buffer[512];
    const auto [end, error] =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
    const std::string_view number(buffer, error == std::errc() ? end - buffer : 0);
    out.append(number.data(), qsizetype(number.size()));
    if (number.find_first_of(".e") == std::string_view::npos)
        out += ".0";
}

} // namespace lanternic
