#pragma once

#include <QObject>
#include <QString>

class QLocalServer;

namespace lanternic {

// One running app per user session. The first instance listens; a later one asks it to
// show its panel and then leaves.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    explicit SingleInstance(QString name, QObject *parent = nullptr);

    // True when another instance runs and took the request to show itself.
    bool askRunningInstanceToShow();
    // Starts listening for later instances.
    bool listen();

    // A name private to this user.
    static QString defaultName();

Q_SIGNALS:
    void showRequested();

private:
    QString m_name;
    QLocalServer *m_server = nullptr;
};

} // namespace lanternic
