#pragma once

#include <QObject>
#include <QPointF>
#include <memory>

class QSystemTrayIcon;

namespace lanternic {

class AppEnvironment;
class Notifier;
class SystemEvents;
class EscapeClosingWindow;
class LoginItemService;
class PanelWindow;
class UpdateChecker;

// Everything the user sees outside the settings window: the tray icon with its badge and
// tooltip, and the panel that drops down under it.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    AppDelegate(AppEnvironment &environment, UpdateChecker &updates,
                std::unique_ptr<LoginItemService> loginItem, QObject *parent = nullptr);
    ~AppDelegate() override;

    // Shows the icon and starts the poll loop.
    void launch();

    void togglePanel();
    void openPanel();
    void closePanel();
    void openSettings();

private:
    void updateIcon();
    QPointF anchor() const;

    AppEnvironment &m_environment;
    UpdateChecker &m_updates;
    std::unique_ptr<LoginItemService> m_loginItem;
    std::unique_ptr<Notifier> m_notifier;
    std::unique_ptr<SystemEvents> m_systemEvents;
    QSystemTrayIcon *m_trayIcon = nullptr;
    PanelWindow *m_panel = nullptr;
    EscapeClosingWindow *m_settingsWindow = nullptr;
    qint64 m_panelHiddenAt = 0;
};

} // namespace lanternic
