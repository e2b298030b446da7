#include "ui/panetext.h"

#include <QCollator>
#include <algorithm>

namespace lanternic::PaneText {

using namespace Qt::StringLiterals;

QString SilenceMenu::othersText() const
{
    if (othersCount == 0)
        return QString();
    return u"\u2026 (and %1 others)"_s.arg(othersCount);
}

SilenceMenu silenceMenu(const DisplayProvider &row,
                        const std::function<bool(const QString &id)> &isSilenced)
{
    const SourceResult &result = row.result;
    auto target = [&](const ComponentStatus &component) {
        QString status = component.status;
        status.replace(u'_', u' ');
        return SilenceTarget{component.id,
                             u"Silence "_s + result.name + u" - "_s + component.name + u" ["_s +
                                 status + u']',
                             component.health};
    };

    SilenceMenu menu;
    menu.whole = {result.id, u"Silence "_s + result.name + u" (ALL)"_s, row.health};
    QList<const ComponentStatus *> operational;
    for (const ComponentStatus &component : result.components) {
        if (isSilenced(component.id))
            continue;
        if (component.health != Health::operational)
            menu.affected.append(target(component));
        else
            operational.append(&component);
    }

    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::stable_sort(operational.begin(), operational.end(),
                     [&](auto *a, auto *b) { return collator.compare(a->name, b->name) < 0; });
    for (const ComponentStatus *component :
         QList(operational.begin(),
               operational.begin() + std::min(operational.size(), SilenceMenu::maximumOperational)))
        menu.operational.append(target(*component));
    menu.othersCount = operational.size() - menu.operational.size();
    return menu;
}

} // namespace lanternic::PaneText
