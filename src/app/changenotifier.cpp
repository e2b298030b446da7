#include "app/changenotifier.h"

#include "config/appsettings.h"
#include "platform/notifier.h"
#include "store/lanternicstore.h"

namespace lanternic {

ChangeNotifier::ChangeNotifier(Services services, Notifier &notifier, Fallback fallback,
                               QObject *parent)
    : QObject(parent), m_services(services), m_notifier(notifier), m_fallback(std::move(fallback))
{
    connect(&services.store, &LanternicStore::passFinished, this, &ChangeNotifier::passFinished);
    connect(&notifier, &Notifier::clicked, this, [this] { Q_EMIT openPanelRequested(); });
    connect(&notifier, &Notifier::closed, this, [this](quint32 id) { m_shown.remove(id); });
    connect(&notifier, &Notifier::actionInvoked, this, [this](quint32 id, Notifier::Action action) {
        const auto notice = m_shown.constFind(id);
        if (notice == m_shown.constEnd())
            return;
        if (action == Notifier::Action::silence) {
            m_services.silence.silenceUntil(notice->sourceId, m_services.store.now().addSecs(3600));
        } else if (notice->page) {
            Q_EMIT openPageRequested(*notice->page);
        }
    });
}

void ChangeNotifier::passFinished()
{
    const LanternicStore &store = m_services.store;
    if (store.isOffline())
        return;
    const bool notifications = m_services.settings.notifications();
    // Without notifications a quiet spell ends untold.
    const ChangeNews::Follower::Step step =
        m_follower.follow(ChangeNews::snapshot(store.results(), m_services.silence, store.now(),
                                               m_services.rules.entries()),
                          notifications && m_services.rules.isMuted(store.now()));
    if (!notifications)
        return;
    std::optional<ChangeNotice::Notice> notice;
    if (step == ChangeNews::Follower::Step::afterQuiet)
        notice = ChangeNotice::afterQuiet(m_follower.quietLog(), m_follower.current());
    else if (step == ChangeNews::Follower::Step::compared)
        notice = ChangeNotice::between(m_follower.previous(), m_follower.current());
    if (notice)
        show(*notice);
}

void ChangeNotifier::show(const ChangeNotice::Notice &notice)
{
    const bool critical = notice.worst == Health::down;
    if (!m_notifier.isAvailable()) {
        m_fallback(notice.title, notice.body, critical);
        return;
    }
    const Notifier::Urgency urgency = critical       ? Notifier::Urgency::critical
                                      : notice.quiet ? Notifier::Urgency::low
                                                     : Notifier::Urgency::normal;
    const quint32 id = m_notifier.notify(notice.title, notice.body, urgency, true);
    if (id != 0)
        m_shown.insert(id, notice);
}

} // namespace lanternic
