#pragma once

#include <QString>
#include <memory>
#include <optional>

namespace lanternic {

// Whether the app starts when the user logs in. Each platform has its own implementation,
// chosen by the build; failures come back as human-readable descriptions.
class LoginItemService {
public:
    enum class Status { enabled, notRegistered, requiresApproval, notFound };

    virtual ~LoginItemService() = default;
    virtual Status status() const = 0;
    // Nothing on success, else what went wrong.
    virtual std::optional<QString> registerItem() = 0;
    virtual std::optional<QString> unregisterItem() = 0;

    // The service of this platform for the running application.
    static std::unique_ptr<LoginItemService> forThisApp();
};

} // namespace lanternic
