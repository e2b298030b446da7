#include "app/updatechecker.h"

#include "model/settingskeys.h"
#include "model/urls.h"
#include "sources/appcast.h"
#include "sources/network.h"

#include <QSettings>
#include <QTimer>

namespace lanternic {

using namespace Qt::StringLiterals;

QString UpdateChecker::Outcome::message() const
{
    switch (kind) {
    case Kind::newerVersion:
        return UpdateChecker::tr("Lanternic %1 is available.").arg(release->version);
    case Kind::upToDate:
        return UpdateChecker::tr("You have the newest version of Lanternic.");
    case Kind::failed:
        return UpdateChecker::tr("Could not check for updates: %1").arg(error);
    case Kind::noFeed:
        break;
    }
    return UpdateChecker::tr("This build of Lanternic gets its updates from your package manager.");
}

UpdateChecker::UpdateChecker(QSettings &defaults, network::Session &session, QUrl feed,
                             QString currentVersion, QObject *parent)
    : QObject(parent), m_defaults(defaults), m_session(session), m_feed(std::move(feed)),
      m_currentVersion(std::move(currentVersion)), m_daily(new QTimer(this))
{
    m_daily->setInterval(std::chrono::hours(24));
    m_daily->setTimerType(Qt::VeryCoarseTimer);
    connect(m_daily, &QTimer::timeout, this, &UpdateChecker::checkInBackground);
    scheduleAutomaticChecks();
}

bool UpdateChecker::automaticallyChecksForUpdates() const
{
    return SettingsKeys::read(m_defaults, SettingsKeys::automaticallyChecksForUpdates);
}

void UpdateChecker::setAutomaticallyChecksForUpdates(bool enabled)
{
    m_defaults.setValue(SettingsKeys::automaticallyChecksForUpdates, enabled);
    scheduleAutomaticChecks();
}

void UpdateChecker::scheduleAutomaticChecks()
{
    if (automaticallyChecksForUpdates() && !m_feed.isEmpty())
        m_daily->start();
    else
        m_daily->stop();
}

void UpdateChecker::checkForUpdates()
{
    check(true);
}

void UpdateChecker::checkInBackground()
{
    check(false);
}

void UpdateChecker::check(bool requested)
{
    // Every outcome leaves through here, so none can forget whose check it answers.
    auto report = [this, requested](Outcome::Kind kind, std::optional<Release> release = {},
                                    const QString &error = {}) {
        Q_EMIT checked({kind, std::move(release), error, requested});
    };
    if (!hasFeed()) {
        report(Outcome::Kind::noFeed);
        return;
    }
    m_session.get(m_feed, this, [this, report](network::Response response) {
        if (response.transferFailure) {
            report(Outcome::Kind::failed, std::nullopt, *response.transferFailure);
            return;
        }
        if (response.httpStatus && (*response.httpStatus < 200 || *response.httpStatus > 299)) {
            report(Outcome::Kind::failed, std::nullopt,
                   tr("the update feed answered with HTTP status %1").arg(*response.httpStatus));
            return;
        }
        const auto newest = Appcast::newestRelease(response.body);
        if (!newest)
            report(Outcome::Kind::failed, std::nullopt, tr("the update feed lists no release"));
        else if (Appcast::compareVersions(newest->version, m_currentVersion) > 0)
            report(Outcome::Kind::newerVersion, newest);
        else
            report(Outcome::Kind::upToDate);
    });
}

} // namespace lanternic
