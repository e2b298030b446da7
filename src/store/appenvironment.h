#pragma once

#include "config/appsettings.h"
#include "sources/sourcekindstore.h"
#include "store/lanternicstore.h"
#include "store/silencestore.h"

#include <memory>

class QNetworkAccessManager;
class QSettings;

namespace lanternic {

// The composition root: builds the long-lived services once, in order, over one settings
// object and one network session, re-keys stored silences and starts the launch pass.
// The app builds one; tests and lanternic-check build their own over files of their choosing.
class AppEnvironment {
public:
    // Tests that run their passes themselves leave out the launch pass.
    enum class LaunchPass { queued, none };

    AppEnvironment(QSettings &defaults, QNetworkAccessManager &session,
                   LaunchPass launchPass = LaunchPass::queued);

    AppSettings settings;
    SilenceStore silence;
    SourceKindStore kinds;
    std::unique_ptr<LanternicStore> store;
};

} // namespace lanternic
