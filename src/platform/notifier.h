#pragma once

#include <QObject>
#include <QString>
#include <QStringView>
#include <memory>

namespace lanternic {

// Desktop notifications. Each platform has its own implementation, chosen by the build; where
// there is no notification service the app shows its tray icon's message instead.
class Notifier : public QObject {
    Q_OBJECT

public:
    enum class Urgency { low, normal, critical };
    // Actions a notification may offer besides clicking its body.
    enum class Action { openPage, silence };

    using QObject::QObject;

    virtual bool isAvailable() const = 0;
    // Shows a notification of plain text, made safe for whatever the server reads it as;
    // returns an id for the signals below, 0 when none was shown.
    virtual quint32 notify(const QString &title, const QString &body, Urgency urgency,
                           bool offerActions) = 0;

    // Text that no markup reader takes for markup, and that reads the same where none is read:
    // angle brackets and ampersands become look-alike characters. For the places that may
    // render markup they were not promised: notification summaries, which the specification
    // makes plain text but some servers render, and the tray's own message balloon.
    static QString inert(QStringView text);

    // The service on this platform, talking to the session's notification server.
    static std::unique_ptr<Notifier> forThisSession();

Q_SIGNALS:
    void clicked(quint32 id);
    void actionInvoked(quint32 id, lanternic::Notifier::Action action);
    // The notification is gone: nothing more will come of it.
    void closed(quint32 id);
};

} // namespace lanternic
