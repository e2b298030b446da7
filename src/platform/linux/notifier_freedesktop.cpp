// Notifications through org.freedesktop.Notifications on the session bus.

#include "platform/notifier.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QImage>
#include <QStandardPaths>
#include <optional>

namespace lanternic {

namespace {

// An image as the notification specification's "image-data" hint carries it: (iiibiiay).
struct NotificationImage {
    QImage image;
};

QDBusArgument &operator<<(QDBusArgument &argument, const NotificationImage &picture)
{
    const QImage image = picture.image.convertToFormat(QImage::Format_RGBA8888);
    argument.beginStructure();
    argument << image.width() << image.height() << int(image.bytesPerLine()) << true << 8 << 4
             << QByteArray(reinterpret_cast<const char *>(image.constBits()),
                           qsizetype(image.sizeInBytes()));
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, NotificationImage &)
{
    return argument; // only ever sent
}

} // namespace
} // namespace lanternic

Q_DECLARE_METATYPE(lanternic::NotificationImage)

namespace lanternic {
namespace {

// The icon every server can show: the installed one by its path, or, running from the build
// tree, the pixels of the one built there.
std::optional<std::pair<QString, QVariant>> iconHint()
{
    for (const QString &icon : {QStringLiteral("icons/hicolor/128x128/apps/lanternic.png"),
                                QStringLiteral("icons/hicolor/scalable/apps/lanternic.svg")}) {
        const QString path = QStandardPaths::locate(QStandardPaths::GenericDataLocation, icon);
        if (!path.isEmpty())
            return std::pair{QStringLiteral("image-path"), QVariant(path)};
    }
    const QImage built(QStringLiteral(LANTERNIC_BUILD_ICON));
    if (built.isNull())
        return std::nullopt;
    static const QMetaType registered = qDBusRegisterMetaType<NotificationImage>();
    Q_UNUSED(registered);
    return std::pair{QStringLiteral("image-data"), QVariant::fromValue(NotificationImage{built})};
}

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");
const QString interface = QStringLiteral("org.freedesktop.Notifications");
const QString openPageKey = QStringLiteral("open-page");
const QString silenceKey = QStringLiteral("silence-1h");

class FreedesktopNotifier : public Notifier {
    Q_OBJECT

public:
    explicit FreedesktopNotifier(QDBusConnection bus)
        : m_bus(std::move(bus)), m_server(service, m_bus, QDBusServiceWatcher::WatchForOwnerChange)
    {
        if (!m_bus.isConnected())
            return;
        m_bus.connect(service, path, interface, QStringLiteral("ActionInvoked"), this,
                      SLOT(onActionInvoked(uint, QString)));
        m_bus.connect(service, path, interface, QStringLiteral("NotificationClosed"), this,
                      SLOT(onNotificationClosed(uint, uint)));
        // Another server may offer other things.
        connect(&m_server, &QDBusServiceWatcher::serviceOwnerChanged, this,
                [this] { m_capabilities.reset(); });
    }

    // Asked at each notification: a server may start after us, or only when called.
    bool isAvailable() const override
    {
        const QDBusConnectionInterface *bus = m_bus.isConnected() ? m_bus.interface() : nullptr;
        return bus && (bus->isServiceRegistered(service).value() ||
                       bus->activatableServiceNames().value().contains(service));
    }

    quint32 notify(const QString &title, const QString &body, Urgency urgency,
                   bool offerActions) override
    {
        if (!isAvailable())
            return 0;
        // Our own ids: the server's arrive later, and are matched when they do.
        const quint32 id = ++m_lastId;
        const Message message{id, title, body, urgency, offerActions};
        if (m_capabilities) {
            send(message);
            return id;
        }
        // Asking also starts a server that runs on demand.
        auto *call = new QDBusPendingCallWatcher(
            m_bus.asyncCall(QDBusMessage::createMethodCall(service, path, interface,
                                                           QStringLiteral("GetCapabilities"))),
            this);
        connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, message] {
            const QDBusPendingReply<QStringList> reply = *call;
            m_capabilities = reply.isValid() ? reply.value() : QStringList();
            call->deleteLater();
            send(message);
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
    struct Message {
        quint32 id;
        QString title;
        QString body;
        Urgency urgency;
        bool offerActions;
    };

    // The summary is plain text by the specification, but some servers render it: it is made
    // inert. The body is escaped where the server reads markup in it.
    void send(const Message &message)
    {
        QStringList actions{QStringLiteral("default"), Notifier::tr("Open panel")};
        if (message.offerActions && m_capabilities->contains(QStringLiteral("actions")))
            actions += {openPageKey, Notifier::tr("Open status page"), silenceKey,
                        Notifier::tr("Silence for 1 hour")};
        QVariantMap hints{{QStringLiteral("urgency"), QVariant::fromValue(uchar(message.urgency))},
                          {QStringLiteral("desktop-entry"), QStringLiteral("lanternic")}};
        if (const auto icon = iconHint())
            hints.insert(icon->first, icon->second);
        const QString body = m_capabilities->contains(QStringLiteral("body-markup"))
                                 ? message.body.toHtmlEscaped()
                                 : message.body;
        QDBusMessage call =
            QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Notify"));
        call << QStringLiteral("Lanternic") << quint32(0) << QStringLiteral("lanternic")
             << inert(message.title) << body << actions << hints << qint32(-1);
        auto *pending = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
        connect(pending, &QDBusPendingCallWatcher::finished, this,
                [this, pending, id = message.id] {
                    const QDBusPendingReply<quint32> reply = *pending;
                    if (reply.isValid())
                        m_ours.insert(reply.value(), id);
                    pending->deleteLater();
                });
    }

    QDBusConnection m_bus;
    QDBusServiceWatcher m_server;
    std::optional<QStringList> m_capabilities; // of the server that runs now, once asked
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
