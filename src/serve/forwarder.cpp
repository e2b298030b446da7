#include "serve/forwarder.h"

#include "store/lanternicstore.h"
#include "store/notificationrules.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QUuid>
#include <algorithm>

namespace lanternic {

using namespace Qt::StringLiterals;
using std::chrono::milliseconds;

namespace {

qint64 monotonicNow()
{
    return QDeadlineTimer::current().deadline();
}

} // namespace

std::optional<ForwardTarget> ForwardTarget::parse(const QString &text, QString *reason)
{
    const auto refuse = [reason](const QString &why) {
        if (reason)
            *reason = why;
        return std::nullopt;
    };
    const QUrl url(text.trimmed(), QUrl::StrictMode);
    static const QHash<QString, std::pair<Kind, QString>> schemes{
        {u"ntfy"_s, {Kind::ntfy, u"http"_s}},
        {u"ntfys"_s, {Kind::ntfy, u"https"_s}},
        {u"json"_s, {Kind::json, u"http"_s}},
        {u"jsons"_s, {Kind::json, u"https"_s}}};
    const auto scheme = schemes.constFind(url.scheme());
    if (!url.isValid() || scheme == schemes.constEnd() || url.host().isEmpty())
        return refuse(u"not an ntfy://, ntfys://, json:// or jsons:// address"_s);
    if (scheme->first == Kind::ntfy && url.path().size() < 2)
        return refuse(u"an ntfy address needs a topic"_s);
    if (const QHostAddress literal(url.host());
        !literal.isNull() && network::scopeOf(literal) == network::AddressScope::linkLocal)
        return refuse(u"link-local addresses are never forwarded to"_s);
    QUrl endpoint = url;
    endpoint.setScheme(scheme->second);
    return ForwardTarget{scheme->first, text.trimmed(), endpoint};
}

QList<ForwardTarget> ForwardTarget::parseLines(const QString &text, QStringList *rejected)
{
    QList<ForwardTarget> targets;
    const QStringList lines = text.split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (lines[i].trimmed().isEmpty())
            continue;
        QString reason;
        if (auto target = parse(lines[i], &reason))
            targets.append(*target);
        else if (rejected)
            rejected->append(u"line %1: %2"_s.arg(i + 1).arg(reason));
    }
    return targets;
}

Forwarder::Forwarder(Services services, QString outboxFile, Options options, QObject *parent)
    : QObject(parent), m_services(services), m_outboxFile(std::move(outboxFile)), m_options(options)
{
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &Forwarder::deliver);
    connect(&services.store, &LanternicStore::passFinished, this, &Forwarder::passFinished);
    load();
}

void Forwarder::setTargets(const QList<ForwardTarget> &targets)
{
    QHash<QString, Queue> queues;
    for (const ForwardTarget &target : targets) {
        Queue queue = m_queues.take(target.address);
        queue.target = target;
        queue.messages += m_waiting.take(target.address);
        queues.insert(target.address, std::move(queue));
    }
    const bool letGo = !m_queues.isEmpty() || !m_waiting.isEmpty();
    m_queues = std::move(queues);
    m_waiting.clear();
    if (letGo)
        save();
    countsMayHaveChanged();
    deliver();
}

void Forwarder::setSecret(const QByteArray &secret)
{
    m_secret = secret;
}

void Forwarder::passFinished()
{
    const LanternicStore &store = m_services.store;
    // Offline nothing is watched; what is seen then is not compared with later passes. Without
    // targets too the passes are followed, so that forwards added by a reload tell the next
    // change.
    if (store.isOffline())
        return;
    const QDateTime now = store.now();
    const ChangeNews::Follower &passes = m_follower;
    switch (m_follower.follow(
        ChangeNews::snapshot(store.results(), store.silence(), now, m_services.rules.entries()),
        m_services.rules.isMuted(now))) {
    case ChangeNews::Follower::Step::afterQuiet:
        enqueue(ForwardEvent::afterQuiet(
            ChangeNews::afterQuiet(passes.quietLog(), passes.current()), passes.current(), now));
        break;
    case ChangeNews::Follower::Step::compared:
        if (const auto news = ChangeNews::between(passes.previous(), passes.current()))
            enqueue(ForwardEvent::ofNews(*news, now));
        break;
    case ChangeNews::Follower::Step::first:
    case ChangeNews::Follower::Step::quiet:
        break;
    }
}

void Forwarder::enqueue(const QList<ForwardEvent::Event> &events)
{
    if (events.isEmpty() || m_queues.isEmpty())
        return;
    for (Queue &queue : m_queues) {
        for (const ForwardEvent::Event &event : events) {
            queue.messages.append(
                {m_nextSequence++, QUuid::createUuid().toString(QUuid::WithoutBraces),
                 queue.target.kind == ForwardTarget::Kind::ntfy ? ForwardEvent::ntfy(event)
                                                                : ForwardEvent::webhook(event)});
        }
    }
    dropOldest();
    save();
    countsMayHaveChanged();
    deliver();
}

void Forwarder::dropOldest()
{
    qsizetype pending = 0;
    for (const Queue &queue : std::as_const(m_queues))
        pending += queue.messages.size();
    for (; pending > m_options.capacity; --pending) {
        Queue *oldest = nullptr;
        for (Queue &queue : m_queues) {
            if (!queue.messages.isEmpty() &&
                (!oldest || queue.messages.first().sequence < oldest->messages.first().sequence))
                oldest = &queue;
        }
        // One on its way is dropped too: its answer then finds nothing to take out.
        oldest->messages.removeFirst();
        ++m_counts.dropped;
    }
}

void Forwarder::deliver()
{
    const qint64 now = monotonicNow();
    for (Queue &queue : m_queues) {
        if (!queue.inFlight && !queue.messages.isEmpty() && queue.dueAt <= now)
            send(queue);
    }
    scheduleRetry();
}

void Forwarder::send(Queue &queue)
{
    const Message &message = queue.messages.first();
    network::Session::Headers headers = message.request.headers;
    if (queue.target.kind == ForwardTarget::Kind::json) {
        headers.append({"X-Lanternic-Delivery", message.id.toLatin1()});
        if (!m_secret.isEmpty())
            headers.append(
                {"X-Lanternic-Signature", ForwardEvent::signature(message.request.body, m_secret)});
    }
    queue.inFlight = true;
    m_services.session.post(
        queue.target.endpoint, message.request.body, headers, this,
        [this, address = queue.target.address, id = message.id](network::Response response) {
            std::optional<QString> failure = response.transferFailure;
            if (!failure &&
                (!response.httpStatus || *response.httpStatus < 200 || *response.httpStatus >= 300))
                failure = u"HTTP %1"_s.arg(response.httpStatus.value_or(0));
            delivered(address, id, failure);
        },
        m_options.attemptLimit);
}

void Forwarder::delivered(const QString &address, const QString &id,
                          const std::optional<QString> &failure)
{
    const auto queue = m_queues.find(address);
    // Its target was let go while the message was on its way.
    if (queue == m_queues.end() || !queue->inFlight)
        return;
    queue->inFlight = false;
    if (!failure) {
        if (!queue->messages.isEmpty() && queue->messages.first().id == id)
            queue->messages.removeFirst();
        queue->wait = milliseconds(0);
        queue->dueAt = 0;
        save();
    } else {
        ++m_counts.failures;
        queue->wait = queue->wait.count() == 0 ? m_options.firstRetry
                                               : std::min(queue->wait * 2, m_options.longestWait);
        queue->dueAt = monotonicNow() + queue->wait.count();
        Q_EMIT deliveryFailed(address, *failure, queue->wait);
    }
    countsMayHaveChanged();
    deliver();
}

void Forwarder::scheduleRetry()
{
    std::optional<qint64> next;
    for (const Queue &queue : std::as_const(m_queues)) {
        if (!queue.inFlight && !queue.messages.isEmpty())
            next = std::min(next.value_or(queue.dueAt), queue.dueAt);
    }
    if (!next) {
        m_retry.stop();
        return;
    }
    m_retry.start(int(std::clamp<qint64>(*next - monotonicNow(), 0, 24 * 3600 * 1000)));
}

void Forwarder::countsMayHaveChanged()
{
    ForwardCounts counts = m_counts;
    counts.pending = 0;
    for (const Queue &queue : std::as_const(m_queues))
        counts.pending += queue.messages.size();
    if (counts == m_counts)
        return;
    m_counts = counts;
    Q_EMIT countsChanged();
}

// {"version": 1, "messages": [{"target", "id", "body" (base64), "headers": [[name, value]]}]},
// oldest first.
void Forwarder::load()
{
    QFile file(m_outboxFile);
    if (!file.exists())
        return;
    const QJsonDocument document =
        file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()) : QJsonDocument();
    file.close();
    if (!document.isObject()) {
        // Kept aside, not saved over: what is in it may still be wanted.
        QFile::remove(m_outboxFile + u".unreadable"_s);
        m_outboxReadable = QFile::rename(m_outboxFile, m_outboxFile + u".unreadable"_s);
        return;
    }
    // Each message stands alone: one that cannot be read is left out, not the rest.
    for (const QJsonValue &value : document[u"messages"_s].toArray()) {
        const QJsonObject entry = value.toObject();
        const QString target = entry[u"target"_s].toString();
        const auto body = QByteArray::fromBase64Encoding(entry[u"body"_s].toString().toLatin1());
        if (target.isEmpty() || !body)
            continue;
        Message message{m_nextSequence++, entry[u"id"_s].toString(), {*body, {}}};
        if (message.id.isEmpty())
            message.id = QUuid::createUuid().toString(QUuid::WithoutBraces);
        for (const QJsonValue &header : entry[u"headers"_s].toArray()) {
            const QJsonArray pair = header.toArray();
            message.request.headers.append(
                {pair[0].toString().toLatin1(), pair[1].toString().toLatin1()});
        }
        m_waiting[target].append(message);
    }
}

void Forwarder::save()
{
    if (!m_outboxReadable)
        return;
    QList<std::pair<QString, const Message *>> all;
    for (const Queue &queue : std::as_const(m_queues)) {
        for (const Message &message : queue.messages)
            all.append({queue.target.address, &message});
    }
    if (all.isEmpty()) {
        QFile::remove(m_outboxFile);
        return;
    }
    std::sort(all.begin(), all.end(),
              [](const auto &a, const auto &b) { return a.second->sequence < b.second->sequence; });
    QJsonArray messages;
    for (const auto &[target, message] : all) {
        QJsonArray headers;
        for (const auto &[name, value] : message->request.headers)
            headers.append(QJsonArray{QString::fromLatin1(name), QString::fromLatin1(value)});
        messages.append(
            QJsonObject{{u"target"_s, target},
                        {u"id"_s, message->id},
                        {u"body"_s, QString::fromLatin1(message->request.body.toBase64())},
                        {u"headers"_s, headers}});
    }
    QDir().mkpath(QFileInfo(m_outboxFile).absolutePath());
    QSaveFile file(m_outboxFile);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(QJsonDocument(QJsonObject{{u"version"_s, 1}, {u"messages"_s, messages}})
                       .toJson(QJsonDocument::Compact));
        file.commit();
    }
}

} // namespace lanternic
