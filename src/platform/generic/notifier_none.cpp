// Platforms without a notification service of ours: the app shows its tray icon's message.

#include "platform/notifier.h"

namespace lanternic {

namespace {

class NoNotifier : public Notifier {
public:
    bool isAvailable() const override { return false; }
    quint32 notify(const QString &, const QString &, Urgency, bool) override { return 0; }
};

} // namespace

std::unique_ptr<Notifier> Notifier::forThisSession()
{
    return std::make_unique<NoNotifier>();
}

} // namespace lanternic
