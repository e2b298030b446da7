#include "sources/readers/readerkit.h"

#include "sources/readers/newsreader.h"

#include <QCoreApplication>

namespace lanternic::ReaderKit {

using namespace Qt::StringLiterals;

SourceResult start(const JSONSource &source)
{
    SourceResult result;
    result.id = source.id;
    result.name = source.name;
    result.url = source.homeURL;
    return result;
}

SourceResult settle(SourceResult result, Health pageHealth)
{
    SourceResult::keepFirstOfEachId(result.components);
    result.incidents = result.incidents.mid(0, NewsReader::maximumEntries);
    result.maintenances = result.maintenances.mid(0, NewsReader::maximumEntries);
    if (!result.components.isEmpty()) {
        std::tie(result.health, result.detail) = SourceResult::summarize(
            result.components, QCoreApplication::translate("Sources", "All Systems Operational"));
    } else {
        result.health = pageHealth;
        result.detail =
            result.incidents.isEmpty() ? label(pageHealth) : result.incidents.first().name;
    }
    return result;
}

void addComponent(SourceResult &result, const QString &key, const QString &name, Health health,
                  const QString &status)
{
    result.components.append({ComponentId(result.id, key), name, health, status});
}

void worstOf(SourceResult &result, QHash<QString, qsizetype> &known, const QString &key,
             const QString &name, Health health, const QString &status)
{
    if (auto place = known.constFind(key); place != known.constEnd()) {
        ComponentStatus &component = result.components[*place];
        if (severity(health) > severity(component.health)) {
            component.health = health;
            component.status = status;
        }
        return;
    }
    known.insert(key, result.components.size());
    addComponent(result, key, name, health, status);
}

Health worse(Health a, Health b)
{
    return severity(b) > severity(a) ? b : a;
}

Health wordHealth(const QString &word)
{
    if (word == "operational"_L1)
        return Health::operational;
    if (word == "downtime"_L1 || word == "major_outage"_L1)
        return Health::down;
    if (word == "unknown"_L1)
        return Health::unknown;
    return Health::degraded;
}

} // namespace lanternic::ReaderKit
