#pragma once

#include "store/checkhistory.h"
#include "store/displaysummary.h"
#include "store/healthlog.h"
#include "store/notificationrules.h"
#include "store/silencestore.h"
#include "ui/widgets/elidedlabel.h"
#include "ui/widgets/historysparkline.h"
#include "ui/widgets/timelinebar.h"

#include <QWidget>
#include <functional>

class QAbstractButton;
class QLabel;
class QTimer;
class QToolButton;

namespace lanternic {

// What a row's expansion tells of the source's past, from the health log.
struct RowHistory {
    QList<HealthChange> changes; // the last seven days' and the state they start in
    std::optional<double> day, week, month;
    QList<Trouble> troubles; // the last three, newest first

    bool operator==(const RowHistory &) const = default;
};

class StatusRowView;

// The rows' container: assistive technology sees it as the list of rows.
class RowListView : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    // The rows shown, in the order shown.
    QList<StatusRowView *> rows() const;
};

// One monitored source: health symbol, name, detail, sparkline and, on hover, the menu to
// silence the source or one of its components and to say what to be notified of. A click opens its
// status page. A source with open incidents or maintenance has a marker that expands the row to
// tell of them.
class StatusRowView : public QWidget {
    Q_OBJECT

public:
    using UrlOpener = std::function<void(const QUrl &url)>;
    // What the row's menu and clicks act on, by source or component id.
    struct Actions {
        std::function<void(const QString &id, SilenceDuration duration)> silence;
        std::function<bool(const QString &id)> isSilenced;
        std::function<NotifyRule(const QString &id)> ruleOf; // the effective rule
        std::function<void(const QString &id, NotifyRule rule)> setRule;
        UrlOpener openUrl;
    };

    explicit StatusRowView(Actions actions, QWidget *parent = nullptr);

    // What the row shows; set again, in place, whenever it changes. now is the clock of the
    // relative times ("updated 12 min ago").
    void setContent(const DisplayProvider &provider, const QList<HealthTick> &ticks,
                    const QDateTime &now, const RowHistory &history = {});
    void refreshTimes(const QDateTime &now);

    const DisplayProvider &provider() const { return m_provider; }
    QToolButton *silenceButton() const { return m_menuButton; }
    // Shown when the source has incidents or maintenance to tell of.
    QToolButton *newsButton() const { return m_newsButton; }
    bool isExpanded() const;
    void setExpanded(bool expanded);
    // What Enter and the Menu key do.
    void openPage();
    void openMenu();

protected:
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void setHovering(bool hovering);
    void buildMenu();
    void buildNewsButton();
    void buildMenuButton();
    void buildHistoryPart();
    void buildNews(const QDateTime &now);
    // The expansion's parts: components in trouble, incidents, maintenance windows.
    void addComponents();
    void addIncidents();
    void addMaintenances(const QDateTime &now);
    QLabel *newsLabel(const QString &text, const QFont &font, const QColor &color);
    QAbstractButton *newsLink(const QString &text, const QUrl &url);
    void buildHistory(const QDateTime &now);

    DisplayProvider m_provider;
    Actions m_actions;
    QLabel *m_symbol;
    ElidedLabel *m_name;
    ElidedLabel *m_detail;
    HistorySparkline *m_sparkline;
    QToolButton *m_newsButton;
    QToolButton *m_menuButton;
    QWidget *m_news;
    QWidget *m_history;
    TimelineBar *m_timeline;
    QLabel *m_uptime;
    QLabel *m_troubles;
    RowHistory m_past;
    // The labels that tell how long ago something was, and of what instant.
    QList<std::pair<QLabel *, QDateTime>> m_updated;
    bool m_hovering = false;
};

// One silenced source or component, with the time left and "Unmute".
class SilencedRowView : public QWidget {
    Q_OBJECT

public:
    using Clock = std::function<QDateTime()>;

    SilencedRowView(const QString &title, const SilenceUntil &until,
                    std::function<void()> onUnsilence, Clock clock, QWidget *parent = nullptr);

    QString timeLeft() const;

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void updateTimeLeft();

    SilenceUntil m_until;
    Clock m_clock;
    QLabel *m_timeLeft;
    QTimer *m_ticker;
};

// Opens http and https links in the browser; anything else is ignored.
void openWebUrl(const QUrl &url);

} // namespace lanternic
