#pragma once

#include <QByteArrayView>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringView>
#include <array>
#include <optional>

namespace lanternic {

// How well a service or one of its components is doing.
enum class Health { operational, degraded, down, unknown };

inline constexpr std::array<Health, 4> allHealths{Health::operational, Health::degraded,
                                                  Health::down, Health::unknown};

// Only the exact raw value is accepted: stored and feed vocabulary is case-sensitive.
std::optional<Health> healthFromRawValue(QStringView text);
QString rawValue(Health health);
QString label(Health health);
// The label as a word within a sentence: "operational", "degraded", …
QString stateWord(Health health);

// The monitoring convention shared by exit statuses and metrics: 0 operational, 1 degraded,
// 2 down, 3 unknown.
int monitoringCode(Health health);

// operational < unknown < degraded < down: not knowing is better than reported trouble.
int severity(Health health);

// The health a feed's component status word stands for ("operational", "major_outage", …);
// words nobody lists count as degraded, and treatAsOperational lets a source relax some.
Health componentHealth(const QString &status, const QSet<QString> &treatAsOperational = {});

// word itself, or the one shared copy of it when it is one of the status pages' common words
// for a component's status, an incident's stage or impact, or a maintenance's status:
// thousands of components and incidents hold the same few words.
QString sharedFeedWord(QString word);
// The same for a word written in UTF-8, made into a text only when it is none of those.
QString sharedFeedWordFromUtf8(QByteArrayView utf8);

// Whether a component status word says planned work ("under_maintenance",
// "UNDERMAINTENANCE", "Maintenance"), which counts as degraded but is no outage.
bool isMaintenanceStatus(QStringView status);

// The most severe of the list; on a tie the first one met stands. Empty lists have no worst.
std::optional<Health> worstHealth(const QList<Health> &healths);

} // namespace lanternic
