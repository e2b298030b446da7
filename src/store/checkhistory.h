#pragma once

#include "model/health.h"

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>
#include <optional>

class QSettings;

namespace lanternic {

// One sample of a source's health at the end of a check pass.
struct HealthTick {
    QDateTime date;
    QString healthRaw; // kept as stored, even when it names no health

    bool operator==(const HealthTick &) const = default;
};

// The newest samples per source id, oldest first, for the sparklines.
struct CheckHistory {
    static constexpr qsizetype maximumTicks = 40;

    QHash<QString, QList<HealthTick>> byId;

    bool operator==(const CheckHistory &) const = default;

    void record(const QString &id, Health health, const QDateTime &at);

    // Anything unreadable under "Lanternic.checkHistory" gives an empty history.
    static CheckHistory load(QSettings &defaults);
    void save(QSettings &defaults) const;
    // Takes in the ticks stored meanwhile (by another program on the same settings), then saves.
    void mergeAndSave(QSettings &defaults);
    // Both histories' ticks per id, by time, the newest maximumTicks of them.
    void merge(const CheckHistory &other);

    QByteArray encode() const;
    static std::optional<CheckHistory> decode(const QByteArray &data);
};

} // namespace lanternic
