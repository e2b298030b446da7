#pragma once

#include "model/jsonsource.h"
#include "model/sourceresult.h"

#include <QByteArray>
#include <QDateTime>
#include <functional>

class QObject;

namespace lanternic::network {
class Session;
}

namespace lanternic {

using CheckCompletion = std::function<void(SourceResult)>;

// Fetches a source's URL and reads whichever known platform's document comes back.
namespace SourceCheck {

// Calls done exactly once with the result (failures are results too), unless context is
// destroyed first, which cancels the check. clock gives the check's time (the system's when
// none is given).
void check(const JSONSource &source, network::Session &session, QObject *context,
           CheckCompletion done, std::function<QDateTime()> clock = {});

// Reads a fetched body with the platforms' readers in their table's order; the first that
// accepts it wins. A body none of them accepts gives the unrecognised-format result. now is the
// check's time, which decides the maintenance windows that are still news.
SourceResult read(const JSONSource &source, const QByteArray &body,
                  const QDateTime &now = QDateTime::currentDateTimeUtc());

// A check that went wrong: unknown health, the fixed detail and the underlying error.
SourceResult failure(const JSONSource &source, const QString &detail, const QString &error);

// Whether a result says the page is not where its kind says (404, or a body no reader
// accepts): the kind was right once, and the page has moved since.
bool pageMoved(const SourceResult &result);

} // namespace SourceCheck

} // namespace lanternic
