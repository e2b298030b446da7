#pragma once

#include <QSet>
#include <QString>
#include <QUrl>
#include <optional>

namespace lanternic {

// One configured source as plain data: which URL to fetch and how to read what comes back.
// Built from the source list; fetching and reading it is the checker's job.
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
};

} // namespace lanternic
