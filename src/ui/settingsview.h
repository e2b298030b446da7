#pragma once

#include <QPushButton>
#include <QWidget>
#include <functional>
#include <optional>

class QButtonGroup;
class QCheckBox;
class QLabel;
class QPlainTextEdit;
class QTimeEdit;

namespace lanternic {

class AppSettings;
class LoginItemService;
class NotificationRules;
class SourceKindStore;

// One segment of the interval's segmented control; a radio button to assistive technology
// and to the keyboard: the group is one Tab stop, and the arrows choose the segment beside.
class SegmentButton : public QPushButton {
    Q_OBJECT

public:
    using QPushButton::QPushButton;

protected:
    void keyPressEvent(QKeyEvent *event) override;
};

// The settings form: the sources, whether operational systems are listed, launch at login,
// automatic update checks and the refresh interval. Every change takes effect at once.
class GeneralSettingsView : public QWidget {
    Q_OBJECT

public:
    struct UpdateActions {
        std::function<bool()> automaticUpdatesEnabled;
        std::function<void(bool)> setAutomaticUpdates;
        std::function<void()> onCheckForUpdates;
        // False in builds without an update feed: the package manager brings updates.
        bool feedAvailable;
    };

    GeneralSettingsView(AppSettings &settings, LoginItemService &loginItem, UpdateActions updates,
                        QWidget *parent = nullptr);

    static QString helpText();

    // The kind cache: what bare hosts are known to be, and where a service chosen from the
    // catalogue is recorded so that it needs no probe.
    void setKinds(SourceKindStore *kinds);
    // Opens "Add service…".
    void addService();
    // What the editor shows beside a line (from 1): the line's kind, or why it is ignored.
    QString annotation(int line) const;

protected:
    void showEvent(QShowEvent *event) override;

private:
    QWidget *buildSources();
    QWidget *buildOptions();
    QLayout *buildUpdateRow(QWidget *group);
    QLayout *buildIntervalRow(QWidget *group);
    void syncFromSettings();
    void showUnderstanding();
    void changeLaunchAtLogin(bool enabled);

    AppSettings &m_settings;
    LoginItemService &m_loginItem;
    UpdateActions m_updates;
    class SourceLinesEdit;
    SourceLinesEdit *m_sources;
    SourceKindStore *m_kinds = nullptr;
    QCheckBox *m_showOperational;
    QCheckBox *m_notifications;
    QCheckBox *m_launchAtLogin;
    QLabel *m_loginError;
    QCheckBox *m_automaticUpdates;
    QButtonGroup *m_interval;
    bool m_loginStatusRead = false;
};

// The settings that go beyond the general form: how maintenance counts.
class AdvancedSettingsView : public QWidget {
    Q_OBJECT

public:
    explicit AdvancedSettingsView(AppSettings &settings, QWidget *parent = nullptr);

private:
    QCheckBox *m_maintenance;
};

// When notifications may pop up: quiet hours, and the pause the panel offers.
class NotificationSettingsView : public QWidget {
    Q_OBJECT

public:
    explicit NotificationSettingsView(NotificationRules &rules, QWidget *parent = nullptr);

private:
    void syncFromRules();
    void store();

    NotificationRules &m_rules;
    QCheckBox *m_quiet;
    QTimeEdit *m_from;
    QTimeEdit *m_until;
};

// The settings window's content: the form titled "General", then the "Notifications" and
// "Advanced" pages, 640 × 460 where the screen has room, scrolling where it has less.
class SettingsView : public QWidget {
    Q_OBJECT

public:
    SettingsView(AppSettings &settings, NotificationRules &rules, LoginItemService &loginItem,
                 GeneralSettingsView::UpdateActions updates, QWidget *parent = nullptr);

    GeneralSettingsView *general() const { return m_general; }
    NotificationSettingsView *notifications() const { return m_notifications; }
    AdvancedSettingsView *advanced() const { return m_advanced; }
    QSize sizeHint() const override { return {640, 460}; }

private:
    GeneralSettingsView *m_general;
    NotificationSettingsView *m_notifications;
    AdvancedSettingsView *m_advanced;
};

} // namespace lanternic
