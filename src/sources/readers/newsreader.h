#pragma once

#include "model/sourceresult.h"
#include "sources/readers/jsondecoder.h"

#include <QDateTime>
#include <QList>
#include <QUrl>

namespace lanternic {

// Reads the incidents and maintenance windows a page publishes beside its status. Each entry is
// read on its own: one that does not decode is left out, and never costs the page its status.
// Texts are capped, and so is the number of entries, whatever a hostile feed sends.
namespace NewsReader {

inline constexpr qsizetype maximumEntries = 50;
inline constexpr qsizetype maximumTextLength = JsonValues::maximumTextLength;

// Statuspage's "incidents" and "scheduled_maintenances"; page is the status page's address.
QList<Incident> statuspageIncidents(const JsonObject &root, const WebLink &page);
QList<Maintenance> statuspageMaintenances(const JsonObject &root, const WebLink &page);

// The incident.io widget summary's "ongoing_incidents", "in_progress_maintenances" and
// "scheduled_maintenances".
QList<Incident> incidentioIncidents(const JsonObject &summary, const WebLink &page);
QList<Maintenance> incidentioMaintenances(const JsonObject &summary, const WebLink &page);

// The relay feed's "incidents" and "maintenances", in the form the relay document writes.
QList<Incident> relayIncidents(const JsonObject &root);
QList<Maintenance> relayMaintenances(const JsonObject &root);

// What a result keeps of the windows read at now: not completed, not over, and begun or
// beginning within the next seven days.
QList<Maintenance> current(const QList<Maintenance> &windows, const QDateTime &now);

} // namespace NewsReader

} // namespace lanternic
