#include "sources/jsonsource.h"

#include "model/newswords.h"
#include "sources/incidentiosource.h"
#include "sources/jsondecoder.h"
#include "sources/network.h"
#include "sources/newsreader.h"
#include "sources/platformreaders.h"
#include "sources/relayfeedsource.h"
#include "sources/statuspagesource.h"
#include "sources/updogsource.h"

#include <QCoreApplication>
#include <array>

namespace lanternic {

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

// Every reader has this shape: nothing when the document is not in its format.
using Reader = std::optional<SourceResult> (*)(const JSONSource &, const QJsonDocument &);

// In detection order: the first reader that accepts a document wins; the other platforms'
// readers come after the four built-in ones.
constexpr std::array<Reader, 4> builtIn{&RelayFeedSource::parse, &IncidentIOSource::parse,
                                        &UpdogSource::parse, &StatuspageSource::parse};

} // namespace

void JSONSource::check(network::Session &session, QObject *context, CheckCompletion done,
                       std::function<QDateTime()> clock) const
{
    session.get(
        url, context,
        [source = *this, done = std::move(done),
         clock = std::move(clock)](network::Response response) {
            if (response.transferFailure) {
                done(source.failure(unreachable(), *response.transferFailure));
            } else if (response.httpStatus &&
                       (*response.httpStatus < 200 || *response.httpStatus > 299)) {
                done(source.failure(unreachable(), badResponse(*response.httpStatus)));
            } else {
                done(source.read(response.body, clock ? clock() : QDateTime::currentDateTimeUtc()));
            }
        });
}

SourceResult JSONSource::read(const QByteArray &body, const QDateTime &now) const
{
    // Parsed once; every reader looks at the same document.
    const QJsonDocument document = parseJson(body);
    const auto accepted = [&](Reader reader) -> std::optional<SourceResult> {
        auto result = reader(*this, document);
        if (result) {
            result->makeWellFormed();
            result->checkedAt = now;
            // Every platform's news in one vocabulary; what a page calls over is dropped.
            for (Incident &incident : result->incidents) {
                incident.stage = NewsWords::stage(incident.stage);
                incident.impact = NewsWords::impact(incident.impact);
            }
            result->incidents.removeIf(
                [](const Incident &incident) { return incident.stage == "resolved"_L1; });
            for (Maintenance &window : result->maintenances)
                window.status = NewsWords::maintenanceStatus(window.status);
            result->maintenances = NewsReader::current(result->maintenances, now);
        }
        return result;
    };
    for (Reader reader : builtIn) {
        if (auto result = accepted(reader))
            return std::move(*result);
    }
    for (Reader reader : PlatformReaders::all) {
        if (auto result = accepted(reader))
            return std::move(*result);
    }
    return failure(
        unrecognizedFormat(),
        QCoreApplication::translate(
            "Sources",
            "Response was not lanternic.v1, incident.io, Updog, nor a Statuspage summary"));
}

bool JSONSource::pageMoved(const SourceResult &result)
{
    return result.error &&
           (result.detail == unrecognizedFormat() || *result.error == badResponse(404));
}

SourceResult JSONSource::failure(const QString &detail, const QString &error) const
{
    SourceResult result;
    result.id = id;
    result.name = name;
    result.health = Health::unknown;
    result.detail = detail;
    result.url = homeURL;
    result.checkedAt = QDateTime::currentDateTimeUtc();
    result.error = error;
    return result;
}

} // namespace lanternic
