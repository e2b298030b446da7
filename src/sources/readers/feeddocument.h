#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <optional>

namespace lanternic {

// An RSS 2.0 or Atom 1.0 feed, read strictly and within bounds: no DTD (so no entity of ours
// or anyone's is ever expanded), at most maximumDepth elements deep, maximumItems items, and
// texts cut to maximumTextLength. Anything else, HTML included, is no feed.
struct FeedDocument {
    struct Item {
        QString title; // as written, markup and all
        QString link;
        QString id;   // guid or id
        QString text; // description, summary or content, as written
        QDateTime published;
        QDateTime updated; // the published time where the feed gives no other

        // The newest of the item's times; invalid when it has none.
        QDateTime when() const { return updated.isValid() ? updated : published; }
    };

    enum class Format { rss, atom };

    static constexpr int maximumDepth = 32;
    static constexpr qsizetype maximumItems = 1000;
    static constexpr qsizetype maximumTextLength = 16 * 1024;

    Format format = Format::rss;
    QList<Item> items; // in document order

    static std::optional<FeedDocument> parse(const QByteArray &body);
};

// Feed text as plain text: tags dropped, the common entities decoded, white space collapsed.
// Escaped HTML in a title, a summary or a description reads as what it shows.
QString plainFeedText(const QString &markup);

// An RSS date (RFC 822: "Tue, 25 Nov 2026 10:00:00 GMT", "… -0800", "… PST"); invalid when it
// is none.
QDateTime parseFeedDate(QStringView text);

} // namespace lanternic
