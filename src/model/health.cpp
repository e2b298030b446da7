#include "model/health.h"

#include <QCoreApplication>
#include <algorithm>
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

namespace {

using namespace Qt::StringLiterals;

// A component's status, an incident's stage, its impact, a maintenance's status.
constexpr std::array commonWords{"operational"_L1,
                                 "degraded_performance"_L1,
                                 "partial_outage"_L1,
                                 "major_outage"_L1,
                                 "under_maintenance"_L1,
                                 "investigating"_L1,
                                 "identified"_L1,
                                 "monitoring"_L1,
                                 "none"_L1,
                                 "minor"_L1,
                                 "major"_L1,
                                 "critical"_L1,
                                 "maintenance"_L1,
                                 "scheduled"_L1,
                                 "in_progress"_L1,
                                 "verifying"_L1};

const std::array<QString, commonWords.size()> &sharedWords()
{
    static const std::array<QString, commonWords.size()> shared = [] {
        std::array<QString, commonWords.size()> made;
        std::transform(commonWords.begin(), commonWords.end(), made.begin(),
                       [](QLatin1StringView word) { return QString(word); });
        return made;
    }();
    return shared;
}

} // namespace

QString sharedFeedWord(QString word)
{
    for (const QString &shared : sharedWords()) {
        if (word == shared)
            return shared;
    }
    return word;
}

QString sharedFeedWordFromUtf8(QByteArrayView utf8)
{
    for (std::size_t i = 0; i < commonWords.size(); ++i) {
        if (utf8 == QByteArrayView(commonWords[i].data(), commonWords[i].size()))
            return sharedWords()[i];
    }
    return QString::fromUtf8(utf8);
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
