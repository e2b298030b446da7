#include "platform/loginitem.h"
#include "platform/xdgautostart.h"

#include <QCoreApplication>

namespace lanternic {

std::unique_ptr<LoginItemService> LoginItemService::forThisApp()
{
    return std::make_unique<XdgAutostart>(XdgAutostart::defaultEntryPath(),
                                          QCoreApplication::applicationFilePath());
}

} // namespace lanternic
