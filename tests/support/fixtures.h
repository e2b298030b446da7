#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

// Reads a recorded status document from samples/.
inline QByteArray fixture(const QString &name)
{
    QFile file(QStringLiteral(LANTERNIC_FIXTURES_DIR "/") + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("missing fixture %s", qPrintable(name));
    return file.readAll();
}
