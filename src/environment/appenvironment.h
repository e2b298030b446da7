#pragma once

#include "config/appsettings.h"
#include "sources/network.h"
#include "sources/sourcekindstore.h"
#include "store/lanternicstore.h"
#include "store/notificationrules.h"
#include "store/passrecorder.h"
#include "store/silencestore.h"

#include <memory>

class QSettings;

namespace lanternic {

// The composition root: builds the long-lived services once, in order, over one settings
// object: the network session everything fetches through, the settings, silences,
// notification rules and kind cache, re-keys stored silences and rules, builds the store and
// the recorder of its passes, and starts the launch pass. The app builds one; tests and
// lanternic-check build their own over files of their choosing.
class AppEnvironment {
public:
    // The launch pass is the poll loop's first (the app and the watcher), one pass alone
    // (lanternic-check), or none (tests that run their passes themselves).
    enum class LaunchPass { loop, once, none };

    explicit AppEnvironment(QSettings &defaults, network::Session::Options sessionOptions = {},
                            LaunchPass launchPass = LaunchPass::once);

    // Reads the settings file again (sources, interval, notification rules), which another
    // program or the user changed, and starts the poll loop anew with a pass at once.
    void reload();

    network::Session session;
    AppSettings settings;
    SilenceStore silence;
    NotificationRules notificationRules;
    SourceKindStore kinds;
    std::unique_ptr<LanternicStore> store;
    std::unique_ptr<PassRecorder> recorder;

private:
    QSettings &m_defaults;
};

} // namespace lanternic
