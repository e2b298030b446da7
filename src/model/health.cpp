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

QString sharedStatusWord(QString status)
{
    static const std::array<QString, 5> words{
        QStringLiteral("operational"), QStringLiteral("degraded_performance"),
        QStringLiteral("partial_outage"), QStringLiteral("major_outage"),
        QStringLiteral("under_maintenance")};
    for (const QString &word : words) {
        if (status == word)
            return word;
    }
    return status;
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
