#include "platform/loginitem.h"

#include <QCoreApplication>

namespace lanternic {

namespace {

// Platforms without a login-item service of ours yet: the toggle explains itself.
class UnsupportedLoginItem : public LoginItemService {
public:
    Status status() const override { return Status::notFound; }
    std::optional<QString> registerItem() override
    {
        return QCoreApplication::translate("LoginItem",
                                           "Launch at login is not supported on this system yet.");
    }
    std::optional<QString> unregisterItem() override { return std::nullopt; }
};

} // namespace

std::unique_ptr<LoginItemService> LoginItemService::forThisApp()
{
    return std::make_unique<UnsupportedLoginItem>();
}

} // namespace lanternic
