// Notifications through org.freedesktop.Notifications on the session bus.

#include "platform/notifier.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace lanternic {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");
const QString interface = QStringLiteral("org.freedesktop.Notifications");
const QString openPageKey = QStringLiteral("open-page");
const QString silenceKey = QStringLiteral("silence-1h");

class FreedesktopNotifier : public Notifier {
    Q_OBJECT

public:
    explicit FreedesktopNotifier(QDBusConnection bus) : m_bus(std::move(bus))
    {
        if (!m_bus.isConnected())
            return;
        m_available = m_bus.interface() && m_bus.interface()->isServiceRegistered(service);
        m_bus.connect(service, path, interface, QStringLiteral("ActionInvoked"), this,
                      SLOT(onActionInvoked(uint, QString)));
        m_bus.connect(service, path, interface, QStringLiteral("NotificationClosed"), this,
                      SLOT(onNotificationClosed(uint, uint)));
        if (!m_available)
            return;
        // Asked once: servers either offer actions or they do not.
        auto *call = new QDBusPendingCallWatcher(
            m_bus.asyncCall(QDBusMessage::createMethodCall(service, path, interface,
                                                           QStringLiteral("GetCapabilities"))),
            this);
        connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
            const QDBusPendingReply<QStringList> reply = *call;
            m_actions = reply.isValid() && reply.value().contains(QStringLiteral("actions"));
            call->deleteLater();
        });
    }

    bool isAvailable() const override { return m_available; }

    quint32 notify(const QString &title, const QString &body, Urgency urgency,
                   bool offerActions) override
    {
        if (!m_available)
            return 0;
        QStringList actions{QStringLiteral("default"), QStringLiteral("Open panel")};
        if (offerActions && m_actions)
            actions += {openPageKey, QStringLiteral("Open status page"), silenceKey,
                        QStringLiteral("Silence for 1 hour")};
        const QVariantMap hints{{QStringLiteral("urgency"),
                                 QVariant::fromValue(uchar(urgency == Urgency::critical ? 2 : 1))},
                                {QStringLiteral("desktop-entry"), QStringLiteral("lanternic")}};
        QDBusMessage message =
            QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Notify"));
        message << QStringLiteral("Lanternic") << quint32(0) << QStringLiteral("lanternic") << title
                << body << actions << hints << qint32(-1);
        // Our own ids: the server's arrive later, and are matched when they do.
        const quint32 id = ++m_lastId;
        auto *call = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
        connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, id] {
            const QDBusPendingReply<quint32> reply = *call;
            if (reply.isValid())
                m_ours.insert(reply.value(), id);
            call->deleteLater();
        });
        return id;
    }

private Q_SLOTS:
    void onActionInvoked(uint serverId, const QString &key)
    {
        const auto ours = m_ours.constFind(serverId);
        if (ours == m_ours.constEnd())
            return;
        if (key == openPageKey)
            Q_EMIT actionInvoked(*ours, Action::openPage);
        else if (key == silenceKey)
            Q_EMIT actionInvoked(*ours, Action::silence);
        else
            Q_EMIT clicked(*ours);
    }

    void onNotificationClosed(uint serverId, uint)
    {
        if (auto ours = m_ours.take(serverId))
            Q_EMIT closed(ours);
    }

private:
    QDBusConnection m_bus;
    bool m_available = false;
    bool m_actions = false;
    quint32 m_lastId = 0;
    QHash<quint32, quint32> m_ours; // the server's ids to ours
};

} // namespace

std::unique_ptr<Notifier> Notifier::forThisSession()
{
    return std::make_unique<FreedesktopNotifier>(QDBusConnection::sessionBus());
}

} // namespace lanternic

#include "notifier_freedesktop.moc"
