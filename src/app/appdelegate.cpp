#include "app/appdelegate.h"

#include "app/changenotifier.h"
#include "app/escapeclosingwindow.h"
#include "app/panelwindow.h"
#include "app/panewindow.h"
#include "app/trayicon.h"
#include "app/updatechecker.h"
#include "environment/appenvironment.h"
#include "platform/loginitem.h"
#include "platform/notifier.h"
#include "platform/systemevents.h"
#include "platform/windowsystem.h"
#include "store/recheck.h"
#include "ui/lanternicpane.h"
#include "ui/settingsview.h"

#include <QApplication>
#include <QCursor>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QDesktopServices>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QVBoxLayout>
#include <cstdio>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {
// A click on the icon that closes the popup arrives just after the popup closed itself.
constexpr qint64 reopenGuardMs = 250;
} // namespace

AppDelegate::AppDelegate(AppEnvironment &environment, UpdateChecker &updates,
                         std::unique_ptr<LoginItemService> loginItem, QObject *parent)
    : QObject(parent), m_environment(environment), m_updates(updates),
      m_loginItem(std::move(loginItem))
{
    connect(&m_updates, &UpdateChecker::checked, this, [](const UpdateChecker::Outcome &outcome) {
        // The daily check speaks up only when there is something new.
        if (!outcome.requested && outcome.kind != UpdateChecker::Outcome::Kind::newerVersion)
            return;
        // Shown without a loop of its own: the answer may come from inside a network callback.
        auto *box = new QMessageBox(QMessageBox::Information, u"Lanternic"_s, outcome.message());
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->setTextFormat(Qt::PlainText);
        if (outcome.release && !outcome.release->link.isEmpty()) {
            QPushButton *download = box->addButton(tr("Download"), QMessageBox::AcceptRole);
            connect(download, &QPushButton::clicked, box,
                    [link = outcome.release->link] { openWebUrl(link); });
        }
        box->addButton(QMessageBox::Close);
        box->open();
    });
}

AppDelegate::~AppDelegate()
{
    delete m_panel;
    delete m_paneWindow;
    delete m_settingsWindow;
}

bool AppDelegate::eventFilter(QObject *watched, QEvent *event)
{
    // The desktop changed between light and dark: the icon's unknown grey follows it.
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange)
        updateIcon();
    return QObject::eventFilter(watched, event);
}

void AppDelegate::launch()
{
    qApp->installEventFilter(this);
    LanternicStore &store = *m_environment.store;
    connect(&store, &LanternicStore::resultsChanged, this, &AppDelegate::updateIcon);
    connect(&m_environment.silence, &SilenceStore::entriesChanged, this, &AppDelegate::updateIcon);

    m_notifier = Notifier::forThisSession();
    auto *changes = new ChangeNotifier(
        {store, m_environment.silence, m_environment.notificationRules, m_environment.settings},
        *m_notifier,
        [this](const QString &title, const QString &body, bool critical) {
            if (m_trayIcon)
                m_trayIcon->showMessage(Notifier::inert(title), Notifier::inert(body),
                                        critical ? QSystemTrayIcon::Critical
                                                 : QSystemTrayIcon::Warning);
        },
        this);
    connect(changes, &ChangeNotifier::openPanelRequested, this, &AppDelegate::openPanel);
    connect(changes, &ChangeNotifier::openPageRequested, this, &openWebUrl);

    if (WindowSystem::hasSystemTray())
        showTrayIcon();
    else
        watchForTray();

    m_systemEvents = SystemEvents::forThisComputer();
    new Recheck(store, *m_systemEvents, std::chrono::seconds(3), this);
}

void AppDelegate::watchForTray()
{
    // At login the tray may start a moment after us; later, one may start at any time.
    auto *poll = new QTimer(this);
    poll->setInterval(250);
    const QDeadlineTimer grace(trayGraceMs);
    connect(poll, &QTimer::timeout, this, [this, poll, grace] {
        if (WindowSystem::hasSystemTray()) {
            poll->deleteLater();
            showTrayIcon();
            return;
        }
        if (!m_paneWindow && grace.hasExpired()) {
            std::fputs("lanternic: no system tray found; showing the panel as a window\n", stderr);
            showPaneWindow();
            poll->setInterval(2000);
        }
    });
    poll->start();
}

void AppDelegate::showTrayIcon()
{
    m_trayIcon = new QSystemTrayIcon(this);
    connect(m_trayIcon, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                // StatusNotifierItem hosts send Activate (Trigger) and SecondaryActivate
                // (MiddleClick); XEmbed trays a click of either button.
                if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::Context ||
                    reason == QSystemTrayIcon::MiddleClick)
                    togglePanel();
            });
    connect(m_trayIcon, &QSystemTrayIcon::messageClicked, this, &AppDelegate::openPanel);
    updateIcon();
    m_trayIcon->show();
    if (m_paneWindow) {
        m_paneWindow->hide();
        m_paneWindow->deleteLater();
        m_paneWindow = nullptr;
    }
}

void AppDelegate::showPaneWindow()
{
    m_paneWindow = new PaneWindow(makePane());
    connect(m_paneWindow, &PaneWindow::closedByUser, qApp, &QApplication::quit);
    m_paneWindow->present();
}

LanternicPane *AppDelegate::makePane()
{
    return new LanternicPane({*m_environment.store, *m_environment.recorder, m_environment.settings,
                              m_environment.silence, m_environment.notificationRules},
                             {[this] { m_environment.store->refresh(); },
                              [this] { openSettings(); }, [] { QApplication::quit(); }});
}

void AppDelegate::updateIcon()
{
    if (!m_trayIcon)
        return;
    LanternicStore &store = *m_environment.store;
    const Health overall = store.overallHealth();
    m_trayIcon->setIcon(
        TrayIcon::icon(overall, store.issueCount(overall), QApplication::palette()));
    m_trayIcon->setToolTip(TrayIcon::toolTip(store.summaryText()));
}

QPointF AppDelegate::anchor() const
{
    const QRect icon = m_trayIcon ? m_trayIcon->geometry() : QRect();
    if (icon.isEmpty()) {
        const QPoint pointer = QCursor::pos();
        return QPointF(pointer.x(), pointer.y() + 4);
    }
    return QPointF(icon.left() + icon.width() / 2.0, icon.top() + icon.height() + 4);
}

void AppDelegate::togglePanel()
{
    if (m_panel && m_panel->isVisible()) {
        closePanel();
        return;
    }
    if (QDateTime::currentMSecsSinceEpoch() - m_panelHiddenAt < reopenGuardMs)
        return;
    openPanel();
}

void AppDelegate::openPanel()
{
    if (m_paneWindow) {
        m_paneWindow->present();
        return;
    }
    if (!m_panel) {
        m_panel = new PanelWindow(makePane());
        connect(m_panel, &PanelWindow::hidden, this,
                [this] { m_panelHiddenAt = QDateTime::currentMSecsSinceEpoch(); });
    }
    m_panel->showAt(anchor());
}

void AppDelegate::closePanel()
{
    if (m_panel)
        m_panel->hide();
}

void AppDelegate::openSettings()
{
    closePanel();
    if (!m_settingsWindow) {
        m_settingsWindow = new EscapeClosingWindow;
        m_settingsWindow->setWindowTitle(tr("Lanternic Settings"));
        auto *layout = new QVBoxLayout(m_settingsWindow);
        layout->setContentsMargins(0, 0, 0, 0);
        auto *view = new SettingsView(
            m_environment.settings, m_environment.notificationRules, *m_loginItem,
            {[this] { return m_updates.automaticallyChecksForUpdates(); },
             [this](bool enabled) { m_updates.setAutomaticallyChecksForUpdates(enabled); },
             [this] { m_updates.checkForUpdates(); }, m_updates.hasFeed()},
            m_settingsWindow);
        view->general()->setKinds(&m_environment.kinds);
        layout->addWidget(view);
        m_settingsWindow->setWindowFlags(Qt::Window | Qt::WindowTitleHint |
                                         Qt::WindowCloseButtonHint);
        m_settingsWindow->setMinimumSize(360, 240);
        if (const QScreen *screen = QGuiApplication::primaryScreen()) {
            // The frame is not known before the window is mapped; allow for a title bar.
            m_settingsWindow->setGeometry(EscapeClosingWindow::centredFit(
                m_settingsWindow->sizeHint(), screen->availableGeometry(), {8, 40, 8, 8}));
        }
    }
    m_settingsWindow->show();
    m_settingsWindow->raise();
    m_settingsWindow->activateWindow();
}

} // namespace lanternic
