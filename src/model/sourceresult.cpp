#include "model/sourceresult.h"

#include "model/feedtext.h"

#include <QCoreApplication>
#include <QSet>
#include <algorithm>

namespace lanternic {

namespace {

bool isAscii(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

bool isAscii(QByteArrayView text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return uchar(c) < 0x80; });
}

} // namespace

ComponentId::ComponentId(QStringView sourceId, QStringView key)
{
    if (!isAscii(sourceId) || !isAscii(key)) {
        QString text = sourceId.toString();
        text += QStringView(u"::");
        text += key;
        *this = ComponentId(text);
        return;
    }
    const auto byte = [](QChar c) { return char(c.unicode()); };
    m_utf8 = QByteArray(sourceId.size() + 2 + key.size(), Qt::Uninitialized);
    char *out = std::transform(sourceId.begin(), sourceId.end(), m_utf8.data(), byte);
    *out++ = ':';
    *out++ = ':';
    std::transform(key.begin(), key.end(), out, byte);
}

ComponentId::ComponentId(const QString &text)
{
    QString wellFormed = text;
    FeedText::makeWellFormed(wellFormed);
    m_utf8 = wellFormed.toUtf8();
    m_utf8.squeeze();
}

ComponentIds::ComponentIds(QStringView sourceId)
    : m_sourceId(sourceId.toString()), m_prefix(ComponentId(sourceId, QStringView()).m_utf8)
{
}

ComponentId ComponentIds::operator()(QByteArrayView key) const
{
    // Making the whole id well-formed changes only the source's part, made so once: "::" and
    // an ASCII key hold no surrogates.
    if (!isAscii(key))
        return ComponentId(m_sourceId, QStringView(QString::fromUtf8(key)));
    ComponentId id;
    id.m_utf8 = QByteArray(m_prefix.size() + key.size(), Qt::Uninitialized);
    std::copy(key.begin(), key.end(),
              std::copy(m_prefix.begin(), m_prefix.end(), id.m_utf8.data()));
    return id;
}

void SourceResult::makeWellFormed()
{
    using FeedText::makeWellFormed;
    for (QString *text : {&id, &name, &detail})
        makeWellFormed(*text);
    if (error)
        makeWellFormed(*error);
    for (ComponentStatus &component : components) {
        for (QString *text : {&component.name, &component.status})
            makeWellFormed(*text);
    }
    for (Incident &incident : incidents) {
        for (QString *text :
             {&incident.id, &incident.name, &incident.stage, &incident.impact, &incident.update})
            makeWellFormed(*text);
    }
    for (Maintenance &window : maintenances) {
        for (QString *text : {&window.id, &window.name, &window.status})
            makeWellFormed(*text);
    }
    for (QString &watcher : relayedVia)
        makeWellFormed(watcher);
}

QList<ComponentStatus> SourceResult::affectedComponents() const
{
    QList<ComponentStatus> affected;
    for (const ComponentStatus &component : components) {
        if (component.health != Health::operational)
            affected.append(component);
    }
    return affected;
}

bool Maintenance::isInProgress(const QDateTime &now) const
{
    if (status == QLatin1StringView("in_progress") || status == QLatin1StringView("verifying"))
        return true;
    return startsAt.isValid() && startsAt <= now && (!endsAt.isValid() || now < endsAt);
}

void SourceResult::keepFirstOfEachId(QList<ComponentStatus> &components)
{
    // Most pages list tens of components: comparing each with those kept before it costs less
    // than hashing them all.
    if (components.size() <= 32) {
        ComponentStatus *const first = components.data();
        ComponentStatus *kept = first;
        for (ComponentStatus *at = first; at != first + components.size(); ++at) {
            const auto sameId = [at](const ComponentStatus &before) { return before.id == at->id; };
            if (std::none_of(first, kept, sameId)) {
                if (kept != at)
                    *kept = std::move(*at);
                ++kept;
            }
        }
        components.resize(kept - first);
        return;
    }
    QSet<ComponentId> seen;
    seen.reserve(components.size());
    components.removeIf([&seen](const ComponentStatus &component) {
        const qsizetype before = seen.size();
        seen.insert(component.id);
        return seen.size() == before;
    });
}

std::pair<Health, QString> SourceResult::summarize(const QList<ComponentStatus> &components,
                                                   const QString &allClearText)
{
    const ComponentStatus *first = nullptr;
    qsizetype count = 0;
    Health worst = Health::operational;
    for (const ComponentStatus &component : components) {
        if (component.health == Health::operational)
            continue;
        if (count++ == 0) {
            first = &component;
            worst = component.health;
        } else if (severity(component.health) > severity(worst)) {
            worst = component.health;
        }
    }
    if (count == 0)
        return {Health::operational, allClearText};
    return {worst, affectedDetail(*first, count, worst)};
}

QString SourceResult::affectedDetail(const ComponentStatus &first, qsizetype count, Health health)
{
    if (count == 1)
        return QCoreApplication::translate("SourceResult", "%1 \u2014 %2")
            .arg(first.name, stateWord(health));
    return QCoreApplication::translate("SourceResult", "%n components affected", nullptr,
                                       int(count));
}

} // namespace lanternic
