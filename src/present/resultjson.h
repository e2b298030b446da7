#pragma once

#include "model/sourceresult.h"

#include <QByteArray>
#include <QJsonValue>
#include <QUrl>
#include <optional>

namespace lanternic {

class JsonWriter;

// A result as the command-line tool prints it: compact JSON.
QByteArray resultJson(const SourceResult &result);
void writeResult(JsonWriter &out, const SourceResult &result);

// A date in UTC as Qt::ISODate or Qt::ISODateWithMs writes it.
QString isoTimestamp(const QDateTime &time, Qt::DateFormat format = Qt::ISODate);
// That date as JSON, null for none.
void writeTime(JsonWriter &out, const QDateTime &time, Qt::DateFormat format = Qt::ISODate);
// A link as JSON, null for none.
QJsonValue urlOrNull(const std::optional<QUrl> &url);
void writeLink(JsonWriter &out, const std::optional<WebLink> &link);

// An incident or a maintenance window in the command line's and the relay feed's form, under
// the id and name given (the relay feed prefixes both with their source's).
void writeIncident(JsonWriter &out, const Incident &incident, const QString &id,
                   const QString &name);
void writeMaintenance(JsonWriter &out, const Maintenance &window, const QString &id,
                      const QString &name);

} // namespace lanternic
