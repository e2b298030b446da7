#include "store/storedjson.h"

#include <cmath>

namespace lanternic {

namespace {
constexpr qint64 referenceEpochMs = 978'307'200'000;
}

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
    static const char hex[] = "0123456789abcdef";
    out += '"';
    const QByteArray utf8 = text.toUtf8();
    for (char c : utf8) {
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
    out += '"';
}

void appendJsonNumber(QByteArray &out, double value)
{
    if (!std::isfinite(value)) {
        out += '0';
        return;
    }
    const QByteArray number = QByteArray::number(value, 'g', QLocale::FloatingPointShortest);
    out += number;
    if (!number.contains('.') && !number.contains('e'))
        out += ".0";
}

} // namespace lanternic
