#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QStringView>

namespace lanternic {

// Stored documents keep dates as seconds since 2001-01-01T00:00:00Z.
double referenceSeconds(const QDateTime &time);
QDateTime fromReferenceSeconds(double seconds);

// Pieces of compact JSON for the stored documents and the reports, written directly for speed,
// strings escaped as QJsonDocument escapes them. Numbers keep a fraction (816541200.0), as the
// stored form has always had them.
void appendJsonString(QByteArray &out, QStringView text);
void appendJsonNumber(QByteArray &out, double value);

} // namespace lanternic
