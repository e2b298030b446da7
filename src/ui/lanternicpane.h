#pragma once

#include "ui/rowviews.h"

#include <QWidget>
#include <functional>
#include <optional>

class QLabel;
class QScrollArea;
class QScrollBar;
class QShortcut;
class QStackedWidget;
class QVBoxLayout;

namespace lanternic {

class MenuActionRow;
class AppSettings;
class LanternicStore;
class NotificationRules;
class PassRecorder;
class RefreshButton;
class SilenceStore;

// The content of the drop-down panel: the overall state, one row per visible source, the
// silenced items and the pause, settings and quit actions. It reads the store and the
// settings, changes only silences and notification rules, and calls the actions it is handed.
class LanternicPane : public QWidget {
    Q_OBJECT

public:
    struct Actions {
        std::function<void()> refresh;
        std::function<void()> openSettings;
        std::function<void()> quit;
        StatusRowView::UrlOpener openUrl = openWebUrl;
    };

    // What the pane reads, and the two stores it changes.
    struct Services {
        LanternicStore &store;
        const PassRecorder &recorder;
        const AppSettings &settings;
        SilenceStore &silence;
        NotificationRules &rules;
    };

    static constexpr int columnWidth = 320;

    LanternicPane(Services services, Actions actions, QWidget *parent = nullptr);

    // The panel's height for a content height: the content, up to 70 % of the main screen's
    // height (630 when no screen is known), after which it scrolls.
    static int paneHeight(qreal contentHeight, std::optional<qreal> screenHeight);

    int contentHeight() const { return m_contentHeight; }
    bool isSilencedExpanded() const { return m_silencedExpanded; }
    QSize sizeHint() const override;

Q_SIGNALS:
    // The pane's own height changed; the panel resizes and re-anchors.
    void heightChanged(int height);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void enterEvent(QEnterEvent *event) override;

private:
    void updateContentHeight();
    void scheduleUpdate();
    void rebuild();
    QWidget *buildHeader();
    QWidget *buildFooter();
    void buildContent();
    void updateHeader();
    void updatePauseRow();
    void updateRows();
    RowHistory pastOf(const QString &id, const QDateTime &now);
    void tick();
    void rebuildSilenced();
    void orderTabs();
    QWidget *divider(QWidget *parent);
    void applyColours();
    void buildScrollBar();
    void placeScrollBar();
    void revealScrollBar();

    LanternicStore &m_store;
    const AppSettings &m_settings;
    const PassRecorder &m_recorder;
    SilenceStore &m_silence;
    NotificationRules &m_rules;
    Actions m_actions;

    QScrollArea *m_scroll;
    QScrollBar *m_scrollBar = nullptr;
    QTimer *m_scrollBarFade = nullptr;
    QWidget *m_top;
    QWidget *m_content;
    QWidget *m_bottom;
    QVBoxLayout *m_column;
    QLabel *m_overallSymbol = nullptr;
    QLabel *m_summary = nullptr;
    QLabel *m_lastCheck = nullptr;
    QLabel *m_clock = nullptr;
    QList<QWidget *> m_dividers;
    MenuActionRow *m_pauseRow = nullptr;
    QList<QWidget *> m_footer;
    QStackedWidget *m_refreshControl = nullptr;
    RefreshButton *m_refreshButton = nullptr;
    QShortcut *m_refreshShortcut = nullptr;
    RowListView *m_rows = nullptr;
    QVBoxLayout *m_rowsLayout = nullptr;
    QLabel *m_nothing = nullptr;
    QHash<QString, StatusRowView *> m_rowViews;
    // Each row's uptime and troubles, worked out once per pass rather than on every update.
    QHash<QString, RowHistory> m_past;
    QWidget *m_silencedDivider = nullptr;
    QWidget *m_silencedSection = nullptr;
    QTimer *m_updateTimer;
    QTimer *m_ticker;
    bool m_stale = false;
    bool m_silencedExpanded = false;
    int m_contentHeight = 0;
};

} // namespace lanternic
