#include "store/checkhistory.h"

#include "model/settingskeys.h"
#include "store/storedjson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <algorithm>

namespace lanternic {

using namespace Qt::StringLiterals;

void CheckHistory::record(const QString &id, Health health, const QDateTime &at)
{
    QList<HealthTick> &ticks = byId[id];
    ticks.append({at, rawValue(health)});
    if (ticks.size() > maximumTicks)
        ticks.remove(0, ticks.size() - maximumTicks);
}

CheckHistory CheckHistory::load(QSettings &defaults)
{
    const QVariant stored = defaults.value(SettingsKeys::checkHistory);
    if (stored.typeId() != QMetaType::QByteArray)
        return {};
    return decode(stored.toByteArray()).value_or(CheckHistory());
}

void CheckHistory::save(QSettings &defaults) const
{
    defaults.setValue(SettingsKeys::checkHistory, encode());
}

void CheckHistory::mergeAndSave(QSettings &defaults)
{
    merge(load(defaults));
    save(defaults);
}

void CheckHistory::merge(const CheckHistory &other)
{
    for (auto it = other.byId.constBegin(); it != other.byId.constEnd(); ++it) {
        QList<HealthTick> &ticks = byId[it.key()];
        if (ticks == it.value())
            continue;
        ticks += it.value();
        std::stable_sort(ticks.begin(), ticks.end(),
                         [](const HealthTick &a, const HealthTick &b) { return a.date < b.date; });
        ticks.erase(std::unique(ticks.begin(), ticks.end()), ticks.end());
        if (ticks.size() > maximumTicks)
            ticks.remove(0, ticks.size() - maximumTicks);
    }
}

QByteArray CheckHistory::encode() const
{
    // Reserved at about its size, then fitted: the settings keep the bytes with whatever room
    // they have.
    qsizetype ticks = 0;
    for (const QList<HealthTick> &list : byId)
        ticks += list.size();
    QByteArray out;
    out.reserve(byId.size() * 64 + ticks * 48);
    out += "{\"byId\":{";
    bool firstId = true;
    for (auto it = byId.constBegin(); it != byId.constEnd(); ++it) {
        if (!firstId)
            out += ',';
        firstId = false;
        appendJsonString(out, it.key());
        out += ":[";
        bool firstTick = true;
        for (const HealthTick &tick : it.value()) {
            out += firstTick ? "{\"date\":" : ",{\"date\":";
            firstTick = false;
            appendJsonNumber(out, referenceSeconds(tick.date));
            out += ",\"healthRaw\":";
            appendJsonString(out, tick.healthRaw);
            out += '}';
        }
        out += ']';
    }
    out += "}}";
    out.squeeze();
    return out;
}

std::optional<CheckHistory> CheckHistory::decode(const QByteArray &data)
{
    const QJsonDocument document = QJsonDocument::fromJson(data);
    const QJsonValue byIdValue = document.object().value("byId"_L1);
    if (!byIdValue.isObject())
        return std::nullopt;
    const QJsonObject byIdObject = byIdValue.toObject();
    CheckHistory history;
    for (auto it = byIdObject.begin(); it != byIdObject.end(); ++it) {
        if (!it.value().isArray())
            return std::nullopt;
        QList<HealthTick> ticks;
        for (const QJsonValue &value : it.value().toArray()) {
            const QJsonValue date = value.toObject().value("date"_L1);
            const QJsonValue health = value.toObject().value("healthRaw"_L1);
            if (!date.isDouble() || !health.isString())
                return std::nullopt;
            ticks.append({fromReferenceSeconds(date.toDouble()), health.toString()});
        }
        history.byId.insert(it.key(), ticks);
    }
    return history;
}

} // namespace lanternic
