#pragma once

#include "store/displaysummary.h"
#include "store/silencestore.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <functional>
#include <optional>

namespace lanternic {

// The texts and menu contents of the panel, apart from the widgets that show them.
namespace PaneText {

// One submenu of a row's silence menu: what it silences, and how it is titled.
struct SilenceTarget {
    QString id;
    QString title;
    Health health;
    QString name; // of the source or the component alone, cleaned

    bool operator==(const SilenceTarget &) const = default;
};

struct SilenceMenu {
    // However many a feed lists, the menu lays out no more than this.
    static constexpr qsizetype maximumComponents = 200;

    SilenceTarget whole;
    QList<SilenceTarget> affected;    // unsilenced affected components, in result order
    QList<SilenceTarget> operational; // then unsilenced operational ones, by name
    qsizetype othersCount = 0;        // components beyond the 200 in all

    // "… (and N others)", or empty when nothing was left out.
    QString othersText() const;
};

SilenceMenu silenceMenu(const DisplayProvider &row,
                        const std::function<bool(const QString &id)> &isSilenced);

} // namespace PaneText

} // namespace lanternic
