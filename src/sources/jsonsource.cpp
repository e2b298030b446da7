#include "sources/jsonsource.h"

#include "sources/incidentiosource.h"
#include "sources/jsondecoder.h"
#include "sources/network.h"
#include "sources/statuspagesource.h"
#include "sources/updogsource.h"

namespace lanternic {

using namespace Qt::StringLiterals;

void JSONSource::check(QNetworkAccessManager &session, QObject *context, CheckCompletion done) const
{
    network::get(
        session, url, context,
        [source = *this, done = std::move(done)](network::Response response) {
            if (response.transferFailure) {
                done(source.failure(u"Could not reach status page"_s, *response.transferFailure));
            } else if (response.httpStatus &&
                       (*response.httpStatus < 200 || *response.httpStatus > 299)) {
                done(source.failure(u"Could not reach status page"_s,
                                    u"Bad server response (HTTP %1)"_s.arg(*response.httpStatus)));
            } else {
                done(source.read(response.body));
            }
        });
}

SourceResult JSONSource::read(const QByteArray &body) const
{
    // Parsed once; every reader looks at the same document.
    const QJsonDocument document = parseJson(body);
    if (auto result = Native::parse(id, name, homeURL, document))
        return *result;
    if (auto result = IncidentIOSource::parse(id, name, homeURL, document))
        return *result;
    if (auto result = UpdogSource::parse(id, name, homeURL, updogProvider, updogService, document))
        return *result;
    auto reading =
        StatuspageSource::parse(id, name, homeURL, treatAsOperational, includeGroups, document);
    if (auto *result = std::get_if<SourceResult>(&reading))
        return std::move(*result);
    return failure(
        u"Unrecognized status format"_s,
        u"Response was not lanternic.v1, incident.io, Updog, nor a Statuspage summary"_s);
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
