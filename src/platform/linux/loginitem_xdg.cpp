#include "platform/linux/xdgautostart.h"
#include "platform/loginitem.h"

#include <QCoreApplication>

namespace lanternic {

std::unique_ptr<LoginItemService> LoginItemService::forThisApp()
{
    return std::make_unique<XdgAutostart>(XdgAutostart::defaultEntryPath(),
                                          QCoreApplication::applicationFilePath());
}

} // namespace lanternic
