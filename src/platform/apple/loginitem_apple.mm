// Launch at login on macOS 13 and later: the app registers itself with SMAppService.

#include "platform/loginitem.h"

#import <Foundation/Foundation.h>
#import <ServiceManagement/ServiceManagement.h>

namespace lanternic {

namespace {

class AppleLoginItem : public LoginItemService {
public:
    Status status() const override
    {
        switch (SMAppService.mainAppService.status) {
        case SMAppServiceStatusEnabled:
            return Status::enabled;
        case SMAppServiceStatusRequiresApproval:
            return Status::requiresApproval;
        case SMAppServiceStatusNotFound:
            return Status::notFound;
        case SMAppServiceStatusNotRegistered:
            break;
        }
        return Status::notRegistered;
    }

    std::optional<QString> registerItem() override
    {
        NSError *error = nil;
        if ([SMAppService.mainAppService registerAndReturnError:&error])
            return std::nullopt;
        return describe(error);
    }

    std::optional<QString> unregisterItem() override
    {
        NSError *error = nil;
        if ([SMAppService.mainAppService unregisterAndReturnError:&error])
            return std::nullopt;
        return describe(error);
    }

private:
    static QString describe(NSError *error)
    {
        if (!error)
            return QStringLiteral("The login item could not be changed.");
        return QString::fromNSString(error.localizedDescription);
    }
};

} // namespace

std::unique_ptr<LoginItemService> LoginItemService::forThisApp()
{
    return std::make_unique<AppleLoginItem>();
}

} // namespace lanternic
