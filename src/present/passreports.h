#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <optional>

namespace lanternic {

class LanternicStore;

// How a pass is printed, and what the printing needs.
enum class ReportFormat { text, json, relay, waybar, nagios, i3blocks, line };
struct ReportOptions {
    ReportFormat format = ReportFormat::text;
    QString relayName = QStringLiteral("Lanternic"); // relay: the feed's name, and its page
    std::optional<QUrl> relayUrl;
    bool shortText = false; // waybar: a glyph and the issue count instead of the summary
};

// The outcome of a pass in the form asked for, ending in a line feed.
QByteArray report(const LanternicStore &store, const ReportOptions &options);

} // namespace lanternic
