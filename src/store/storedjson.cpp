#include "store/storedjson.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace lanternic {

namespace {

constexpr qint64 referenceEpochMs = 978'307'200'000;

char *writeUnicodeEscape(char *to, char16_t unit)
{
    static const char hex[] = "0123456789abcdef";
    *to++ = '\\';
    *to++ = 'u';
    for (int shift = 12; shift >= 0; shift -= 4)
        *to++ = hex[(unit >> shift) & 0xf];
    return to;
}

// Writes text escaped at to, which has room for six bytes a unit (the longest escape), and
// gives where it ended. The escapes and the UTF-8 are QJsonDocument's, so that a report reads
// the same byte for byte whichever wrote it.
char *writeEscaped(char *to, QStringView text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        char escape = 0;
        switch (c) {
        case u'"':
            escape = '"';
            break;
        case u'\\':
            escape = '\\';
            break;
        case u'\b':
            escape = 'b';
            break;
        case u'\f':
            escape = 'f';
            break;
        case u'\n':
            escape = 'n';
            break;
        case u'\r':
            escape = 'r';
            break;
        case u'\t':
            escape = 't';
            break;
        }
        if (escape) {
            *to++ = '\\';
            *to++ = escape;
        } else if (c < 0x20) {
            to = writeUnicodeEscape(to, c);
        } else if (c < 0x80) {
            *to++ = char(c);
        } else if (c < 0x800) {
            *to++ = char(0xc0 | (c >> 6));
            *to++ = char(0x80 | (c & 0x3f));
        } else if (!QChar::isSurrogate(c)) {
            *to++ = char(0xe0 | (c >> 12));
            *to++ = char(0x80 | ((c >> 6) & 0x3f));
            *to++ = char(0x80 | (c & 0x3f));
        } else if (QChar::isHighSurrogate(c) && i + 1 < text.size() &&
                   QChar::isLowSurrogate(text[i + 1].unicode())) {
            const char32_t point = QChar::surrogateToUcs4(c, text[++i].unicode());
            *to++ = char(0xf0 | (point >> 18));
            *to++ = char(0x80 | ((point >> 12) & 0x3f));
            *to++ = char(0x80 | ((point >> 6) & 0x3f));
            *to++ = char(0x80 | (point & 0x3f));
        } else {
            // UTF-8 cannot hold a lone surrogate; escaped, it reads back as it was.
            to = writeUnicodeEscape(to, c);
        }
    }
    return to;
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
    // Room for the longest escapes, given back after: appending byte by byte cost more than
    // the escaping.
    const qsizetype start = out.size();
    out.resize(start + text.size() * 6 + 2);
    char *const begin = out.data() + start;
    char *to = begin;
    *to++ = '"';
    // Ids and health words are nearly always plain ASCII with nothing to escape: copy them.
    qsizetype plain = 0;
    for (; plain < text.size(); ++plain) {
        const char16_t u = text[plain].unicode();
        if (u < 0x20 || u >= 0x80 || u == u'"' || u == u'\\')
            break;
        *to++ = char(u);
    }
    to = writeEscaped(to, text.sliced(plain));
    *to++ = '"';
    out.truncate(start + (to - begin));
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
