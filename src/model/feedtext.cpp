#include "model/feedtext.h"

#include <QTextBoundaryFinder>
#include <algorithm>

namespace lanternic::FeedText {

namespace {

bool isControl(char16_t c)
{
    return c < 0x20 || (c >= 0x7f && c <= 0x9f) || c == 0x2028 || c == 0x2029;
}

bool isBidiControl(char16_t c)
{
    return (c >= 0x202a && c <= 0x202e) || (c >= 0x2066 && c <= 0x2069);
}

// Where to cut so that at most maximum characters stay: the last grapheme boundary that fits,
// or maximum itself when one cluster is longer than that (a base with thousands of marks).
qsizetype cutPosition(const QString &text, qsizetype maximum)
{
    if (maximum <= 0)
        return 0;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype fits = 0;
    for (qsizetype at = finder.toNextBoundary(); at != -1 && at <= maximum;
         at = finder.toNextBoundary())
        fits = at;
    if (fits > 0)
        return fits;
    return text.at(maximum - 1).isHighSurrogate() ? maximum - 1 : maximum;
}

} // namespace

void makeWellFormed(QString &text)
{
    // Read without detaching: a text shared with others is copied only when it changes.
    const QString &read = text;
    const auto lone = [&read](qsizetype i) {
        const QChar c = read[i];
        if (c.isHighSurrogate())
            return i + 1 >= read.size() || !read[i + 1].isLowSurrogate();
        return c.isLowSurrogate() && (i == 0 || !read[i - 1].isHighSurrogate());
    };
    // Nearly every text has no surrogate at all: it is only read, in one tight scan.
    const QChar *const chars = text.constData();
    const QChar *const first =
        std::find_if(chars, chars + text.size(), [](QChar c) { return c.isSurrogate(); });
    for (qsizetype i = first - chars; i < text.size(); ++i) {
        if (read[i].isSurrogate() && lone(i))
            text[i] = QChar(QChar::ReplacementCharacter);
    }
}

QString clean(QStringView text, qsizetype maximum)
{
    // Only as much as can be shown is kept: the rest is cut anyway. Dropped characters do not
    // count, so that a text of nothing but bidirectional controls is read to its end.
    const qsizetype enough = maximum + 64;
    QString cleaned;
    cleaned.reserve(std::min(text.size(), enough));
    qsizetype read = 0;
    for (; read < text.size() && cleaned.size() < enough; ++read) {
        const char16_t c = text[read].unicode();
        if (isBidiControl(c))
            continue;
        if (QChar::isSurrogate(c)) {
            // A pair is kept whole; a lone half has no UTF-8 form, and strict JSON readers
            // refuse what it would be written as.
            if (QChar::isHighSurrogate(c) && read + 1 < text.size() &&
                text[read + 1].isLowSurrogate()) {
                cleaned.append(text[read]);
                cleaned.append(text[++read]);
            } else {
                cleaned.append(QChar(QChar::ReplacementCharacter));
            }
            continue;
        }
        cleaned.append(isControl(c) ? QChar(u' ') : QChar(c));
    }
    if (cleaned.size() <= maximum && read == text.size())
        return cleaned;
    // Room for the ellipsis; more than maximum characters are left here.
    cleaned.truncate(cutPosition(cleaned, maximum - 1));
    return cleaned + QChar(0x2026);
}

} // namespace lanternic::FeedText
