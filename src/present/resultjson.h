#pragma once

#include "model/sourceresult.h"

#include <QJsonObject>

namespace lanternic {

// A result as the command-line tool prints it.
QJsonObject resultToJson(const SourceResult &result);

QString isoTimestamp(const QDateTime &time);

} // namespace lanternic
