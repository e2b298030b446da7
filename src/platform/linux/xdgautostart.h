#pragma once

#include "platform/loginitem.h"

namespace lanternic {

// Launch at login on freedesktop systems: an entry in the user's autostart folder.
class XdgAutostart : public LoginItemService {
public:
    XdgAutostart(QString entryPath, QString executable);

    // $XDG_CONFIG_HOME/autostart/lanternic.desktop (~/.config when unset).
    static QString defaultEntryPath();

    // Enabled when the entry exists and is not hidden.
    Status status() const override;
    std::optional<QString> registerItem() override;
    std::optional<QString> unregisterItem() override;

private:
    QString m_entryPath;
    QString m_executable;
};

} // namespace lanternic
