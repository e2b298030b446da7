#include "environment/appenvironment.h"

#include "config/settingsfile.h"
#include "config/sourceregistry.h"

#include <QSettings>

namespace lanternic {

AppEnvironment::AppEnvironment(QSettings &defaults, network::Session::Options sessionOptions,
                               LaunchPass launchPass)
    : session(std::move(sessionOptions)), settings(defaults), silence(defaults),
      notificationRules(defaults), kinds(defaults), m_defaults(defaults)
{
    SettingsFile::removeLeftovers(defaults.fileName(), QDateTime::currentDateTimeUtc());

    QList<std::pair<QString, QString>> current;
    for (const JSONSource &source : SourceRegistry::sources(settings.sourcesText(), kinds.cache()))
        current.append({source.id, source.urlHost});
    silence.rekey(current);
    notificationRules.rekey(current);

    store = std::make_unique<LanternicStore>(settings, silence, kinds, defaults, session);
    recorder = std::make_unique<PassRecorder>(*store, silence, defaults);
    if (launchPass == LaunchPass::none)
        return;
    // Queued, like a task that starts after construction, so callers can connect first.
    QMetaObject::invokeMethod(
        store.get(),
        [store = store.get(), launchPass] {
            if (launchPass == LaunchPass::loop)
                store->start();
            else
                store->refresh();
        },
        Qt::QueuedConnection);
}

void AppEnvironment::reload()
{
    m_defaults.sync();
    settings.reload();
    notificationRules.reload();
    store->start();
}

} // namespace lanternic
