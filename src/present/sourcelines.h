#pragma once

#include "config/sourceregistry.h"

#include <QString>

namespace lanternic {

// What each line of the sources text became, in words: the settings window's notes beside
// the lines and lanternic-check sources.
namespace SourceLines {

// "feed", "Statuspage", "Updog", "to be probed"; for a line with a source.
QString kindText(const LineReading &reading);
// "no “=”", "no label", "no address", "ftp:// is not supported", "no host"; for one without.
QString ignoredText(const LineReading &reading);
// "line 3: GitHub → https://…/api/v2/summary.json (Statuspage)", "line 4: ignored — no host".
QString describe(const LineReading &reading);

} // namespace SourceLines

} // namespace lanternic
