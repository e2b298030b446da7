#pragma once

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSignalSpy>
#include <QStringList>

struct Run {
    int exitCode;
    QByteArray out;
    QByteArray err;

    QJsonObject json() const { return QJsonDocument::fromJson(out).object(); }
};

// Runs lanternic-check while this process's event loop keeps serving loopback requests.
inline Run run(const QStringList &arguments, const QByteArray &input = {},
               const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(LANTERNIC_CHECK_BINARY), arguments);
    process.write(input);
    process.closeWriteChannel();
    QSignalSpy finished(&process, &QProcess::finished);
    if (!finished.wait(30'000)) {
        process.kill();
        qFatal("lanternic-check %s did not finish", qPrintable(arguments.join(u' ')));
    }
    // A crash shows as exit code -1, which no test expects.
    const bool crashed = process.exitStatus() != QProcess::NormalExit;
    return {crashed ? -1 : process.exitCode(), process.readAllStandardOutput(),
            process.readAllStandardError()};
}
