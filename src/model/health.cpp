#include "model/health.h"

#include <QCoreApplication>
#include <array>

namespace lanternic {

std::optional<Health> healthFromRawValue(QStringView text)
{
    for (Health health : allHealths) {
        if (text == rawValue(health))
            return health;
    }
    return std::nullopt;
}

QString rawValue(Health health)
{
    switch (health) {
    case Health::operational:
        return QStringLiteral("operational");
    case Health::degraded:
        return QStringLiteral("degraded");
    case Health::down:
        return QStringLiteral("down");
    case Health::unknown:
        break;
    }
    return QStringLiteral("unknown");
}

// Translated where the app installs a translator; the command line and the watcher do not.
QString label(Health health)
{
    switch (health) {
    case Health::operational:
        return QCoreApplication::translate("Health", "Operational");
    case Health::degraded:
        return QCoreApplication::translate("Health", "Degraded");
    case Health::down:
        return QCoreApplication::translate("Health", "Down");
    case Health::unknown:
        break;
    }
    return QCoreApplication::translate("Health", "Unknown");
}

QString stateWord(Health health)
{
    switch (health) {
    case Health::operational:
        return QCoreApplication::translate("Health", "operational");
    case Health::degraded:
        return QCoreApplication::translate("Health", "degraded");
    case Health::down:
        return QCoreApplication::translate("Health", "down");
    case Health::unknown:
        break;
    }
    return QCoreApplication::translate("Health", "unknown");
}

int severity(Health health)
{
    switch (health) {
    case Health::operational:
        return 0;
    case Health::unknown:
        return 1;
    case Health::degraded:
        return 2;
    case Health::down:
        break;
    }
    return 3;
}

std::optional<Health> worstHealth(const QList<Health> &healths)
{
    if (healths.isEmpty())
        return std::nullopt;
    Health worst = healths.first();
    for (Health health : healths) {
        if (severity(health) > severity(worst))
            worst = health;
    }
    return worst;
}

Health componentHealth(const QString &status, const QSet<QString> &treatAsOperational)
{
    if (treatAsOperational.contains(status) || status == QLatin1StringView("operational"))
        return Health::operational;
    if (status == QLatin1StringView("major_outage") || status == QLatin1StringView("full_outage"))
        return Health::down;
    return Health::degraded;
}

QString sharedFeedWord(QString word)
{
    using namespace Qt::StringLiterals;
    // A component's status, an incident's stage, its impact, a maintenance's status.
    static const std::array<QString, 16> words{u"operational"_s,
                                               u"degraded_performance"_s,
                                               u"partial_outage"_s,
                                               u"major_outage"_s,
                                               u"under_maintenance"_s,
                                               u"investigating"_s,
                                               u"identified"_s,
                                               u"monitoring"_s,
                                               u"none"_s,
                                               u"minor"_s,
                                               u"major"_s,
                                               u"critical"_s,
                                               u"maintenance"_s,
                                               u"scheduled"_s,
                                               u"in_progress"_s,
                                               u"verifying"_s};
    for (const QString &shared : words) {
        if (word == shared)
            return shared;
    }
    return word;
}

bool isMaintenanceStatus(QStringView status)
{
    QString folded;
    for (const QChar c : status) {
        if (c.isLetter())
            folded.append(c.toLower());
    }
    return folded == QLatin1StringView("undermaintenance") ||
           folded == QLatin1StringView("maintenance") ||
           folded == QLatin1StringView("inmaintenance");
}

int monitoringCode(Health health)
{
    switch (health) {
    case Health::operational:
        return 0;
    case Health::degraded:
        return 1;
    case Health::down:
        return 2;
    case Health::unknown:
        break;
    }
    return 3;
}

} // namespace lanternic
