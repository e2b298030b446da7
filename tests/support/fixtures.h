#pragma once

#include "sources/network.h"

#include <QByteArray>
#include <QFile>
#include <QSettings>
#include <QString>
#include <QTemporaryDir>
#include <memory>

// Reads a recorded status document from samples/.
inline QByteArray fixture(const QString &name)
{
    QFile file(QStringLiteral(LANTERNIC_FIXTURES_DIR "/") + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("missing fixture %s", qPrintable(name));
    return file.readAll();
}

// A relay feed stating this health and these components (JSON array text).
inline QByteArray relayFeed(const QByteArray &health, const QByteArray &components = "[]",
                            const QByteArray &extraMembers = {})
{
    return R"({"schema":"lanternic.v1","health":")" + health + R"(","components":)" + components +
           extraMembers + "}";
}

// A session that reaches host on a loopback server listening at port.
inline lanternic::network::Session::Options loopback(const QString &host, quint16 port)
{
    lanternic::network::Session::Options options;
    options.loopbackHosts.insert(host, port);
    return options;
}

// A settings file of its own in dir, for a test that must not see another's.
inline std::unique_ptr<QSettings> freshSettings(const QTemporaryDir &dir)
{
    static int made = 0;
    return std::make_unique<QSettings>(dir.filePath(QStringLiteral("s%1.ini").arg(++made)),
                                       QSettings::IniFormat);
}
