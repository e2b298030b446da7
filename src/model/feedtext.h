#pragma once

#include <QString>
#include <QStringView>

namespace lanternic {

// Text from a feed is untrusted wherever it is shown: a terminal, a label, a menu, a tooltip.
namespace FeedText {

// Enough for any real name or detail line; layout never sees more.
inline constexpr qsizetype maximumLength = 300;

// One line of plain text: control characters (C0, DEL, C1) and the line and paragraph
// separators become spaces, bidirectional overrides and isolates are dropped so that nothing
// displays reversed, and text longer than maximum is cut at a grapheme boundary with "…".
QString clean(QStringView text, qsizetype maximum = maximumLength);

// Replaces each lone surrogate (which has no UTF-8 form, so that strict JSON readers refuse
// the text written out) with U+FFFD, leaving everything else as it is.
void makeWellFormed(QString &text);

} // namespace FeedText

} // namespace lanternic
