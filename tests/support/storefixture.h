#pragma once

#include "environment/appenvironment.h"
#include "support/loopbackserver.h"

#include <QSettings>
#include <QTemporaryDir>
#include <functional>

// A whole monitoring store over a temporary settings file, fed by relay feeds that a
// loopback server serves, so that views can be shown real results of real passes.
class StoreFixture {
public:
    StoreFixture();

    // A source whose feed states this health and these components (JSON array text).
    // extra: more members of the feed's object, each after a comma.
    void addSource(const QString &name, const QByteArray &health,
                   const QByteArray &components = "[]", const QByteArray &detail = {},
                   const QByteArray &extra = {});
    // A source whose host cannot be reached.
    void addUnreachableSource(const QString &name);
    // Checks the sources added so far, as one pass of the app.
    void runPass();
    // Starts that pass without waiting for it.
    void startPass(std::function<void()> done = {});

    QTemporaryDir dir;
    QSettings defaults;
    LoopbackServer server;
    lanternic::AppEnvironment environment;
    lanternic::AppSettings &settings;
    lanternic::SilenceStore &silence;
    lanternic::LanternicStore &store;
    QDateTime now;

private:
    QStringList m_lines;
};

// A relay feed component in JSON.
QByteArray relayComponent(const QString &id, const QString &name, const QString &status);
