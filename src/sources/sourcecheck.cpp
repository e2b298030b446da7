#include "sources/sourcecheck.h"

#include "model/newswords.h"
#include "sources/network.h"
#include "sources/readers/feeddocument.h"
#include "sources/readers/jsondecoder.h"
#include "sources/readers/newsreader.h"
#include "sources/readers/platforms.h"

#include <QCoreApplication>

namespace lanternic::SourceCheck {

using namespace Qt::StringLiterals;

namespace {

// Made when asked, so that they are in the language of the translator installed then.
QString unrecognizedFormat()
{
    return QCoreApplication::translate("Sources", "Unrecognized status format");
}

QString badResponse(int status)
{
    return QCoreApplication::translate("Sources", "Bad server response (HTTP %1)").arg(status);
}

QString unreachable()
{
    return QCoreApplication::translate("Sources", "Could not reach status page");
}

// Every platform's news in one vocabulary; what a page calls over is dropped.
void settleNews(SourceResult &result, const QDateTime &now)
{
    for (Incident &incident : result.incidents) {
        incident.stage = NewsWords::stage(incident.stage);
        incident.impact = NewsWords::impact(incident.impact);
    }
    result.incidents.removeIf(
        [](const Incident &incident) { return incident.stage == "resolved"_L1; });
    for (Maintenance &window : result.maintenances)
        window.status = NewsWords::maintenanceStatus(window.status);
    result.maintenances = NewsReader::current(result.maintenances, now);
}

} // namespace

void check(const JSONSource &source, network::Session &session, QObject *context,
           CheckCompletion done, std::function<QDateTime()> clock)
{
    session.get(
        source.url, context,
        [source, done = std::move(done), clock = std::move(clock)](network::Response response) {
            if (response.transferFailure) {
                done(failure(source, unreachable(), *response.transferFailure));
            } else if (response.httpStatus &&
                       (*response.httpStatus < 200 || *response.httpStatus > 299)) {
                done(failure(source, unreachable(), badResponse(*response.httpStatus)));
            } else {
                done(
                    read(source, response.body, clock ? clock() : QDateTime::currentDateTimeUtc()));
            }
        });
}

SourceResult read(const JSONSource &source, const QByteArray &body, const QDateTime &now)
{
    // Parsed once; every reader looks at the same document. A feed is parsed only when every
    // JSON reader has declined.
    const JsonDocument document = parseJson(body);
    std::optional<std::optional<FeedDocument>> feed;
    const auto readWith = [&](const Platform &platform) -> std::optional<SourceResult> {
        if (platform.read)
            return platform.read(source, document);
        if (!feed)
            feed = document.isNull() ? FeedDocument::parse(body) : std::nullopt;
        return *feed ? platform.readFeed(source, **feed, now) : std::nullopt;
    };
    for (const Platform &platform : Platforms::all()) {
        if (auto result = readWith(platform)) {
            result->makeWellFormed();
            result->checkedAt = now;
            settleNews(*result, now);
            return std::move(*result);
        }
    }
    return failure(
        source, unrecognizedFormat(),
        QCoreApplication::translate(
            "Sources",
            "Response was not lanternic.v1, incident.io, Updog, nor a Statuspage summary"));
}

bool pageMoved(const SourceResult &result)
{
    return result.error &&
           (result.detail == unrecognizedFormat() || *result.error == badResponse(404));
}

SourceResult failure(const JSONSource &source, const QString &detail, const QString &error)
{
    SourceResult result;
    result.id = source.id;
    result.name = source.name;
    result.health = Health::unknown;
    result.detail = detail;
    result.url = source.homeURL;
    result.checkedAt = QDateTime::currentDateTimeUtc();
    result.error = error;
    return result;
}

} // namespace lanternic::SourceCheck
