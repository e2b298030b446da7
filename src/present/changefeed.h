#pragma once

#include "store/changenews.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QUrl>
#include <optional>

namespace lanternic {

// What changed between passes, as entries of an Atom feed that chat tools and feed readers
// follow: one entry per change of health and per incident that opened.
namespace ChangeFeed {

struct Entry {
    QString id; // stable: the item and the moment of the pass that saw it
    QString title;
    QString text;
    QDateTime at;
    std::optional<QUrl> link;

    bool operator==(const Entry &) const = default;
};

// The entries of one pass's news, worst change first, at the pass's moment.
QList<Entry> entries(const ChangeNews::News &news, const QDateTime &at);

// An Atom 1.0 document of entries (newest first), named name; feedId identifies the feed.
QByteArray atom(const QList<Entry> &entries, const QString &name, const QString &feedId,
                const QDateTime &updated);

} // namespace ChangeFeed

} // namespace lanternic
