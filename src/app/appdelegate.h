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
class PaneWindow;
class LanternicPane;
class UpdateChecker;

// Everything the user sees outside the settings window: the tray icon with its badge and
// tooltip, and the panel that drops down under it; where there is no tray, the panel in a
// window of its own until a tray appears.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    AppDelegate(AppEnvironment &environment, UpdateChecker &updates,
                std::unique_ptr<LoginItemService> loginItem, QObject *parent = nullptr);
    ~AppDelegate() override;

    // Shows the icon (or, after two seconds without a tray, the window) and starts the poll
    // loop.
    void launch();

    // How long a tray has to appear at start before the panel is shown as a window.
    static constexpr int trayGraceMs = 2000;

    void togglePanel();
    void openPanel();
    void closePanel();
    void openSettings();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    LanternicPane *makePane();
    void watchForTray();
    void showTrayIcon();
    void showPaneWindow();
    void updateIcon();
    QPointF anchor() const;

    AppEnvironment &m_environment;
    UpdateChecker &m_updates;
    std::unique_ptr<LoginItemService> m_loginItem;
    std::unique_ptr<Notifier> m_notifier;
    std::unique_ptr<SystemEvents> m_systemEvents;
    QSystemTrayIcon *m_trayIcon = nullptr;
    PanelWindow *m_panel = nullptr;
    PaneWindow *m_paneWindow = nullptr;
    EscapeClosingWindow *m_settingsWindow = nullptr;
    qint64 m_panelHiddenAt = 0;
};

} // namespace lanternic
