#pragma once

#include "present/changenotice.h"

#include <QHash>
#include <QObject>
#include <QUrl>
#include <functional>
#include <optional>

namespace lanternic {

class AppSettings;
class LanternicStore;
class NotificationRules;
class SilenceStore;
class Notifier;

// Tells the user what changed between two passes (the first after start excepted), in one
// notification per pass: through the session's notification server, or through fallback (the
// tray icon's message) where there is none. Silences, the notification rules and the settings
// switch are honoured; during quiet hours or a pause nothing pops up, and the first pass
// after them sums up what changed meanwhile.
// While the system reports no network nothing is announced, and what is seen then is not
// compared with later passes.
class ChangeNotifier : public QObject {
    Q_OBJECT

public:
    using Fallback = std::function<void(const QString &title, const QString &body, bool critical)>;

    // What it reads, and the silences its notifications' action sets.
    struct Services {
        const LanternicStore &store;
        SilenceStore &silence;
        const NotificationRules &rules;
        const AppSettings &settings;
    };

    ChangeNotifier(Services services, Notifier &notifier, Fallback fallback,
                   QObject *parent = nullptr);

Q_SIGNALS:
    void openPanelRequested();
    void openPageRequested(const QUrl &url);

private:
    void passFinished();

    Services m_services;
    Notifier &m_notifier;
    Fallback m_fallback;
    void show(const ChangeNotice::Notice &notice);

    ChangeNews::Follower m_follower;
    QHash<quint32, ChangeNotice::Notice> m_shown;
};

} // namespace lanternic
