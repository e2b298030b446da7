#pragma once

#include "present/forwardevent.h"
#include "present/metrics.h"
#include "sources/network.h"

#include <QHash>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QUrl>
#include <chrono>
#include <optional>

namespace lanternic {

class LanternicStore;
class NotificationRules;

// Where news is forwarded: "ntfy://HOST[:PORT]/TOPIC" or "json://HOST[:PORT]/PATH" over plain
// HTTP, "ntfys://…" or "jsons://…" over HTTPS.
struct ForwardTarget {
    enum class Kind { ntfy, json };
    Kind kind;
    QString address; // as written, which names its messages in the outbox
    QUrl endpoint;

    // Nothing, with why in reason, for anything else, or a link-local host.
    static std::optional<ForwardTarget> parse(const QString &text, QString *reason = nullptr);
    // One address a line; blank lines are skipped, and what cannot be read is left out and
    // told in rejected ("line 2: …").
    static QList<ForwardTarget> parseLines(const QString &text, QStringList *rejected = nullptr);
};

// Sends every change the desktop would notify, under the same notification rules and quiet
// hours, to each target. Messages wait in an outbox file until their target answers 2xx, in
// order, one at a time per target, with a wait that doubles after each failure: a receiver that
// is down, or a restart, loses nothing and repeats nothing delivered. Deliveries never hold up
// a pass.
class Forwarder : public QObject {
    Q_OBJECT

public:
    struct Options {
        std::chrono::milliseconds firstRetry = std::chrono::seconds(10);
        std::chrono::milliseconds longestWait = std::chrono::hours(24);
        std::chrono::milliseconds attemptLimit = std::chrono::seconds(30);
        qsizetype capacity = 1000; // messages in the outbox, all targets together
    };
    struct Services {
        const LanternicStore &store;
        const NotificationRules &rules;
        network::Session &session;
    };

    // Reads the outbox file; what it holds is sent once the targets are set.
    Forwarder(Services services, QString outboxFile, Options options, QObject *parent = nullptr);

    // Messages for targets no longer listed are let go.
    void setTargets(const QList<ForwardTarget> &targets);
    // Signs every JSON message's body with this secret; none when empty.
    void setSecret(const QByteArray &secret);

    const ForwardCounts &counts() const { return m_counts; }

Q_SIGNALS:
    void countsChanged();
    // A delivery to address failed (why: the HTTP status or the transfer's failure), and is
    // tried again after wait.
    void deliveryFailed(const QString &address, const QString &why, std::chrono::milliseconds wait);

private:
    struct Message {
        quint64 sequence; // the order they were made in, across targets
        QString id;
        ForwardEvent::Request request;
    };
    struct Queue {
        ForwardTarget target;
        QList<Message> messages;
        bool inFlight = false;
        std::chrono::milliseconds wait{0}; // after the last failure
        qint64 dueAt = 0;                  // on the monotonic clock
    };

    void passFinished();
    void enqueue(const QList<ForwardEvent::Event> &events);
    void dropOldest();
    void deliver();
    void send(Queue &queue);
    void delivered(const QString &address, const QString &id,
                   const std::optional<QString> &failure);
    void scheduleRetry();
    void load();
    void save();
    void countsMayHaveChanged();

    Services m_services;
    QString m_outboxFile;
    Options m_options;
    QByteArray m_secret;
    QHash<QString, Queue> m_queues; // by address
    // Read from the outbox before the targets are known.
    QHash<QString, QList<Message>> m_waiting;
    quint64 m_nextSequence = 0;
    bool m_outboxReadable = true;
    QTimer m_retry;
    ForwardCounts m_counts;
    ChangeNews::Follower m_follower;
};

} // namespace lanternic
