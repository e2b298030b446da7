#include "sources/network.h"

#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <memory>

namespace lanternic::network {

using namespace Qt::StringLiterals;

void configureSession(QNetworkAccessManager &session)
{
    QNetworkProxyFactory::setUseSystemConfiguration(true);
    session.setTransferTimeout(transferTimeoutMs);
    session.setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
}

QByteArray userAgent()
{
    return QByteArrayLiteral("Lanternic/" LANTERNIC_VERSION);
}

void get(QNetworkAccessManager &session, const QUrl &url, QObject *context,
         std::function<void(Response)> done)
{
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::UserAgentHeader, userAgent());
    QNetworkReply *reply = session.get(request);
    // Owned by the context, so that destroying it aborts the transfer.
    reply->setParent(context);

    struct Transfer {
        QByteArray body;
        bool tooLarge = false;
    };
    auto transfer = std::make_shared<Transfer>();

    QObject::connect(reply, &QNetworkReply::readyRead, reply, [reply, transfer] {
        transfer->body += reply->readAll();
        if (transfer->body.size() > maximumBodySize) {
            transfer->tooLarge = true;
            transfer->body.clear();
            reply->abort();
        }
    });
    QObject::connect(
        reply, &QNetworkReply::finished, reply, [reply, transfer, done = std::move(done)] {
            reply->deleteLater();
            Response response;
            const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
            if (status.isValid())
                response.httpStatus = status.toInt();
            if (transfer->tooLarge) {
                response.transferFailure = u"The response is larger than 16 MiB"_s;
            } else if (reply->error() == QNetworkReply::OperationCanceledError) {
                // Nothing else cancels a request we still wait for.
                response.transferFailure = u"The request timed out"_s;
            } else if (reply->error() != QNetworkReply::NoError &&
                       !(response.httpStatus && *response.httpStatus >= 300)) {
                response.transferFailure = reply->errorString();
            } else {
                response.body = std::move(transfer->body) + reply->readAll();
            }
            done(std::move(response));
        });
}

} // namespace lanternic::network
