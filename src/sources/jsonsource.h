#pragma once

#include "model/healthsource.h"
#include "model/sourceresult.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QSet>
#include <QString>
#include <QUrl>
#include <optional>

class QNetworkAccessManager;
class QObject;

namespace lanternic {

// One configured source: fetches one URL and reads whichever known format comes back.
struct JSONSource {
    QString id;
    QString name;
    QUrl url;
    QUrl homeURL;
    QSet<QString> treatAsOperational;
    std::optional<QSet<QString>> includeGroups;
    std::optional<QString> updogProvider;
    std::optional<QString> updogService;

    // Our own relay feed, schema "lanternic.v1": health, detail and components stated directly.
    struct Native {
        struct Component {
            QString id;
            QString name;
            QString status;
            std::optional<QString> label;
        };
        QString schema;
        std::optional<QString> name;
        std::optional<QString> health;
        std::optional<QString> detail;
        std::optional<QString> url;
        std::optional<QList<Component>> components;

        static std::optional<SourceResult> parse(const QString &id, const QString &name,
                                                 const QUrl &home, const QJsonDocument &document);
        static std::optional<SourceResult> parse(const QString &id, const QString &name,
                                                 const QUrl &home, const QByteArray &data);
    };

    void check(QNetworkAccessManager &session, QObject *context, CheckCompletion done) const;

    // Reads a fetched body: relay feed, incident.io, Updog and Statuspage, the first that
    // accepts it wins. A body none of them accepts gives the unrecognised-format result.
    SourceResult read(const QByteArray &body) const;

    // A check that went wrong: unknown health, the fixed detail and the underlying error.
    SourceResult failure(const QString &detail, const QString &error) const;
};

static_assert(HealthSource<JSONSource>);

} // namespace lanternic
