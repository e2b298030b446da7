#pragma once

#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QUrl>

// A session that sends every request to one loopback server, keeping path and query, so
// that code building https://some.host/... addresses can be driven offline.
class RedirectingSession : public QNetworkAccessManager {
public:
    explicit RedirectingSession(QUrl target) : m_target(std::move(target)) {}

    // The hosts the code under test asked for, in order.
    QStringList requestedHosts;

protected:
    QNetworkReply *createRequest(Operation op, const QNetworkRequest &request,
                                 QIODevice *data) override
    {
        QUrl url = request.url();
        requestedHosts.append(url.host());
        url.setScheme(m_target.scheme());
        url.setHost(m_target.host());
        url.setPort(m_target.port());
        QNetworkRequest redirected(request);
        redirected.setUrl(url);
        return QNetworkAccessManager::createRequest(op, redirected, data);
    }

private:
    QUrl m_target;
};
