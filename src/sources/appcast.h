#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <optional>

namespace lanternic {

// A Sparkle-style appcast: an RSS feed whose items carry a version and a download link.
namespace Appcast {

struct Release {
    QString version;
    QUrl link;
};

// The newest release the appcast lists; nothing when it lists none or is not one.
std::optional<Release> newestRelease(const QByteArray &appcast);
// Dotted versions compared number by number ("1.10" is newer than "1.9").
int compareVersions(const QString &a, const QString &b);

} // namespace Appcast

} // namespace lanternic
