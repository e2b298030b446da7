#pragma once

#include "store/silencestore.h"

#include <QDateTime>
#include <QString>
#include <optional>

namespace lanternic {

// Texts about time that the panel and lanternic-check both show.
namespace DisplayText {

// "Never updated", "Updated just now", "Updated 42s ago", … "Updated 3d ago".
QString lastCheckText(const std::optional<QDateTime> &lastChecked, const QDateTime &now);
// "until resolved", "forever", "2d 5h left", "1h 0m left", "0m left".
QString timeLeftText(const SilenceUntil &until, const QDateTime &now);

} // namespace DisplayText

} // namespace lanternic
