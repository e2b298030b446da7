#include "ui/panetext.h"

#include "model/feedtext.h"
#include "present/displaytext.h"

#include <QCollator>
#include <QCoreApplication>
#include <algorithm>

namespace lanternic::PaneText {

using namespace Qt::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(PaneText)
};

} // namespace

QString SilenceMenu::othersText() const
{
    if (othersCount == 0)
        return QString();
    return Text::tr("\u2026 (and %n other(s))", nullptr, int(othersCount));
}

SilenceMenu silenceMenu(const DisplayProvider &row,
                        const std::function<bool(const QString &id)> &isSilenced)
{
    const SourceResult &result = row.result;
    // Each piece is cut before it is joined: a feed's names may be of any length.
    const QString name = FeedText::clean(result.name);
    auto target = [&](const ComponentStatus &component) {
        const QString status = DisplayText::componentStatusText(component.status);
        return SilenceTarget{
            component.id.toString(),
            Text::tr("Silence %1 - %2 [%3]").arg(name, FeedText::clean(component.name), status),
            component.health, FeedText::clean(component.name)};
    };

    SilenceMenu menu;
    menu.whole = {result.id, Text::tr("Silence %1 (ALL)").arg(name), row.health, name};
    QList<const ComponentStatus *> operational;
    qsizetype unsilenced = 0;
    for (const ComponentStatus &component : result.components) {
        if (isSilenced(component.id.toString()))
            continue;
        ++unsilenced;
        if (component.health == Health::operational)
            operational.append(&component);
        else if (menu.affected.size() < SilenceMenu::maximumComponents)
            menu.affected.append(target(component));
    }

    // Only the first few by name are shown, so only those are put in order.
    const qsizetype room =
        std::min(operational.size(), SilenceMenu::maximumComponents - menu.affected.size());
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::partial_sort(
        operational.begin(), operational.begin() + room, operational.end(), [&](auto *a, auto *b) {
            // Compared as shown: no longer than feed text is ever shown.
            const int order = collator.compare(QStringView(a->name).left(FeedText::maximumLength),
                                               QStringView(b->name).left(FeedText::maximumLength));
            return order != 0 ? order < 0 : a < b; // equal names keep feed order
        });
    for (qsizetype i = 0; i < room; ++i)
        menu.operational.append(target(*operational[i]));
    menu.othersCount = unsilenced - menu.affected.size() - menu.operational.size();
    return menu;
}

} // namespace lanternic::PaneText
