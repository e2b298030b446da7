#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <functional>
#include <optional>

class QNetworkAccessManager;
class QObject;

namespace lanternic::network {

// Bodies beyond this are a failed transfer: no status document comes near it.
inline constexpr qint64 maximumBodySize = 16 * 1024 * 1024;
inline constexpr int transferTimeoutMs = 60'000;

// Gives a session the behaviour every fetch relies on: an inactivity time-out, redirects
// that never go from https to http, and the system's (or environment's) proxy settings.
void configureSession(QNetworkAccessManager &session);

QByteArray userAgent();

struct Response {
    std::optional<QString> transferFailure; // set when nothing usable arrived
    std::optional<int> httpStatus;          // absent for responses that are not HTTP
    QByteArray body;
};

// A plain GET. done runs once, on the session's thread, unless context is destroyed first:
// that aborts the request.
void get(QNetworkAccessManager &session, const QUrl &url, QObject *context,
         std::function<void(Response)> done);

} // namespace lanternic::network
