#pragma once

#include "sources/appcast.h"

#include <QObject>
#include <QString>
#include <QUrl>
#include <optional>

class QSettings;
class QTimer;

namespace lanternic {

namespace network {
class Session;
}

// Looks for a newer release in an appcast at an address fixed at build time. Without an address it
// never checks.
class UpdateChecker : public QObject {
    Q_OBJECT

public:
    using Release = Appcast::Release;

    struct Outcome {
        enum class Kind { newerVersion, upToDate, failed, noFeed };
        Kind kind;
        std::optional<Release> release; // for newerVersion
        QString error;                  // for failed
        bool requested;                 // false for the daily automatic check

        // What to tell the user, in one or two sentences.
        QString message() const;
    };

    UpdateChecker(QSettings &defaults, network::Session &session, QUrl feed, QString currentVersion,
                  QObject *parent = nullptr);

    // Builds without a feed leave updates to the package manager.
    bool hasFeed() const { return !m_feed.isEmpty(); }
    bool automaticallyChecksForUpdates() const;
    void setAutomaticallyChecksForUpdates(bool enabled);
    // Checks now; the outcome arrives through checked().
    void checkForUpdates();
    // The daily check: its outcome says it was not asked for.
    void checkInBackground();

Q_SIGNALS:
    void checked(const lanternic::UpdateChecker::Outcome &outcome);

private:
    void scheduleAutomaticChecks();
    void check(bool requested);

    QSettings &m_defaults;
    network::Session &m_session;
    QUrl m_feed;
    QString m_currentVersion;
    QTimer *m_daily;
};

} // namespace lanternic
