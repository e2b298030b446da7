#pragma once

#include "model/healthsource.h"
#include "model/sourceresult.h"
#include "sources/relayfeedsource.h"

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QUrl>
#include <optional>

class QObject;

namespace lanternic {

// One configured source: fetches one URL and reads whichever known format comes back.
struct JSONSource {
    QString id;
    QString name;
    QUrl url;
    QUrl homeURL;
    QSet<QString> treatAsOperational;
    std::optional<QSet<QString>> includeGroups;
    std::optional<QString> updogProvider;
    std::optional<QString> updogService;
    // The host of url in the case the user wrote it (QUrl lower-cases hosts).
    QString urlHost;
    // For a bare-host line, the host whose page kind decides url.
    QString baseHost;

    // Our own relay feed document.
    using Native = RelayFeedSource::Document;

    // clock gives the check's time (the system's when none is given).
    void check(network::Session &session, QObject *context, CheckCompletion done,
               std::function<QDateTime()> clock = {}) const;

    // Reads a fetched body: relay feed, incident.io, Updog and Statuspage, the first that
    // accepts it wins. A body none of them accepts gives the unrecognised-format result. now
    // is the check's time, which decides the maintenance windows that are still news.
    SourceResult read(const QByteArray &body,
                      const QDateTime &now = QDateTime::currentDateTimeUtc()) const;

    // A check that went wrong: unknown health, the fixed detail and the underlying error.
    SourceResult failure(const QString &detail, const QString &error) const;

    // Whether a result says the page is not where its kind says (404, or a body no reader
    // accepts): the kind was right once, and the page has moved since.
    static bool pageMoved(const SourceResult &result);
};

static_assert(HealthSource<JSONSource>);

} // namespace lanternic
