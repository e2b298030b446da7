#include "ui/rowviews.h"

#include "model/feedtext.h"
#include "present/displaytext.h"
#include "present/historyreport.h"
#include "ui/panetext.h"
#include "ui/widgets/buttons.h"
#include "ui/widgets/symbols.h"
#include "ui/widgets/theme.h"

#include <QActionGroup>
#include <QDesktopServices>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollArea>
#include <QTextLayout>
#include <QTimer>
#include <QToolButton>
#include <QToolTip>
#include <QVBoxLayout>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {

// The news lines up with the row's name, within the panel's column.
constexpr int newsIndent = 38;
constexpr qreal newsWidth = 320 - newsIndent - 12;
// An expanded row lists this many of its components in trouble, then how many more.
constexpr qsizetype shownComponents = 8;

QLabel *symbolLabel(const QString &name, const QColor &color, qreal size, QWidget *parent,
                    const QString &description = {})
{
    auto *label = new QLabel(parent);
    label->setFixedSize(16, qRound(size) + 4);
    label->setAlignment(Qt::AlignCenter);
    label->setPixmap(Symbols::icon(name, color)
                         .pixmap(QSize(qRound(size), qRound(size)), label->devicePixelRatioF()));
    label->setAccessibleName(description);
    return label;
}

void addDurations(QMenu *menu, const QString &id, const StatusRowView::Actions &actions)
{
    for (SilenceDuration duration : allSilenceDurations) {
        menu->addAction(label(duration), menu,
                        [silence = actions.silence, id, duration] { silence(id, duration); });
    }
}

// The three rules as radio choices, the one in force checked.
void addRules(QMenu *menu, const QString &id, const StatusRowView::Actions &actions)
{
    auto *group = new QActionGroup(menu);
    const NotifyRule current = actions.ruleOf(id);
    for (const auto &[rule, text] :
         {std::pair{NotifyRule::all, StatusRowView::tr("All changes")},
          std::pair{NotifyRule::outagesOnly, StatusRowView::tr("Outages only")},
          std::pair{NotifyRule::never, StatusRowView::tr("Never")}}) {
        QAction *action = menu->addAction(
            text, menu, [setRule = actions.setRule, id, chosen = rule] { setRule(id, chosen); });
        action->setCheckable(true);
        action->setChecked(rule == current);
        group->addAction(action);
    }
}

// At most lines lines of text as it wraps at width, the last ending in "…" when more follow.
QString firstLines(const QString &text, const QFont &font, qreal width, int lines)
{
    QTextLayout layout(text, font);
    layout.beginLayout();
    QStringList kept;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        const QString part = text.mid(line.textStart(), line.textLength()).trimmed();
        if (kept.size() == lines - 1) {
            kept.append(QFontMetricsF(font).elidedText(text.mid(line.textStart()).trimmed(),
                                                       Qt::ElideRight, width));
            break;
        }
        kept.append(part);
    }
    layout.endLayout();
    return kept.join(u'\n');
}

QIcon healthIcon(Health health, const QPalette &palette)
{
    return Symbols::icon(Theme::healthSymbol(health), Theme::healthColor(health, palette));
}

} // namespace

void openWebUrl(const QUrl &url)
{
    if (url.scheme() == "http"_L1 || url.scheme() == "https"_L1)
        QDesktopServices::openUrl(url);
}

StatusRowView::StatusRowView(Actions actions, QWidget *parent)
    : QWidget(parent), m_actions(std::move(actions))
{
    setAttribute(Qt::WA_Hover);
    setMouseTracking(true);
    // The row is one stop for Tab and the arrows; its buttons are reached through its keys.
    setFocusPolicy(Qt::StrongFocus);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto *row = new QHBoxLayout;
    row->setContentsMargins(12, 6, 12, 6);
    row->setSpacing(10);
    column->addLayout(row);
    m_symbol = new QLabel(this);
    m_symbol->setFixedSize(16, 17);
    m_symbol->setAlignment(Qt::AlignCenter);
    row->addWidget(m_symbol);

    auto *text = new QVBoxLayout;
    text->setSpacing(1);
    m_name = new ElidedLabel(this);
    m_name->setFont(Theme::font(13, QFont::Medium));
    m_detail = new ElidedLabel(this);
    m_detail->setFont(Theme::font(11));
    m_detail->setColor(Theme::secondaryText(palette()));
    text->addWidget(m_name);
    text->addWidget(m_detail);
    row->addLayout(text, 1);
    row->addSpacing(8 - row->spacing());

    buildNewsButton();
    row->addWidget(m_newsButton);
    m_sparkline = new HistorySparkline({}, this);
    row->addWidget(m_sparkline);

    buildMenuButton();
    row->addWidget(m_menuButton);

    m_news = new QWidget(this);
    m_news->hide();
    new QVBoxLayout(m_news);
    m_news->layout()->setContentsMargins(newsIndent, 0, 12, 8);
    m_news->layout()->setSpacing(6);
    column->addWidget(m_news);

    buildHistoryPart();
    column->addWidget(m_history);
}

// The marker that expands the row; its icon says what there is to see.
void StatusRowView::buildNewsButton()
{
    m_newsButton = new QToolButton(this);
    m_newsButton->setAutoRaise(true);
    m_newsButton->setCheckable(true);
    m_newsButton->setFocusPolicy(Qt::NoFocus);
    m_newsButton->setCursor(Qt::PointingHandCursor);
    m_newsButton->setStyleSheet(u"QToolButton { border: none; background: transparent; }"_s);
    m_newsButton->setIconSize(QSize(13, 13));
    m_newsButton->setFixedWidth(18);
    m_newsButton->hide();
    connect(m_newsButton, &QToolButton::toggled, this, [this](bool expanded) {
        m_news->setVisible(expanded);
        m_history->setVisible(expanded && !m_past.changes.isEmpty());
        if (m_provider.result.incidents.isEmpty() && m_provider.result.maintenances.isEmpty())
            m_newsButton->setIcon(Symbols::icon(expanded ? u"chevron.down"_s : u"chevron.right"_s,
                                                Theme::secondaryText(palette())));
        m_newsButton->setAccessibleName(expanded ? tr("Hide what is happening")
                                                 : tr("Show what is happening"));
    });
}

void StatusRowView::buildMenuButton()
{
    m_menuButton = new QToolButton(this);
    m_menuButton->setAutoRaise(true);
    m_menuButton->setFocusPolicy(Qt::NoFocus);
    m_menuButton->setPopupMode(QToolButton::InstantPopup);
    m_menuButton->setStyleSheet(u"QToolButton::menu-indicator { image: none; width: 0; }"_s);
    m_menuButton->setIcon(Symbols::icon(u"bell.slash"_s, Theme::secondaryText(palette())));
    m_menuButton->setIconSize(QSize(12, 12));
    m_menuButton->setFixedWidth(22);
    QSizePolicy keepSpace = m_menuButton->sizePolicy();
    keepSpace.setRetainSizeWhenHidden(true);
    m_menuButton->setSizePolicy(keepSpace);
    m_menuButton->setVisible(false);
    m_menuButton->setMenu(new QMenu(m_menuButton));
    // Built when it opens, so that it reflects the silences of that moment.
    connect(m_menuButton->menu(), &QMenu::aboutToShow, this, &StatusRowView::buildMenu);
}

void StatusRowView::buildHistoryPart()
{
    // The last seven days, the uptime and the last troubles.
    m_history = new QWidget(this);
    m_history->hide();
    auto *history = new QVBoxLayout(m_history);
    history->setContentsMargins(newsIndent, 0, 12, 8);
    history->setSpacing(4);
    m_timeline = new TimelineBar(m_history);
    history->addWidget(m_timeline);
    const auto small = [this](QWidget *parent) {
        auto *label = new QLabel(parent);
        label->setTextFormat(Qt::PlainText);
        label->setFont(Theme::font(11));
        QPalette tinted = label->palette();
        tinted.setColor(QPalette::WindowText, Theme::secondaryText(palette()));
        label->setPalette(tinted);
        return label;
    };
    m_uptime = small(m_history);
    history->addWidget(m_uptime);
    m_troubles = small(m_history);
    history->addWidget(m_troubles);
}

void StatusRowView::setContent(const DisplayProvider &provider, const QList<HealthTick> &ticks,
                               const QDateTime &now, const RowHistory &history)
{
    const bool historyChanged = history != m_past;
    m_past = history;
    const bool newsChanged = provider.result.incidents != m_provider.result.incidents ||
                             provider.result.maintenances != m_provider.result.maintenances ||
                             provider.result.components != m_provider.result.components;
    const bool first = m_provider.result.id.isEmpty();
    m_provider = provider;
    const SourceResult &result = m_provider.result;
    // Planned work alone shows the maintenance symbol rather than a warning.
    const QColor color = m_provider.maintenance ? Theme::maintenanceColor()
                                                : Theme::healthColor(m_provider.health, palette());
    m_symbol->setPixmap(Symbols::icon(m_provider.maintenance
                                          ? u"wrench.fill"_s
                                          : Theme::healthSymbol(m_provider.health),
                                      color)
                            .pixmap(QSize(13, 13), devicePixelRatioF()));
    m_symbol->setAccessibleName(m_provider.maintenance ? m_provider.detail
                                                       : label(m_provider.health));
    m_name->setText(result.name);
    m_detail->setText(m_provider.detail);
    m_sparkline->setTicks(ticks);
    Theme::setPlainToolTip(m_menuButton, {tr("Silence %1").arg(result.name)});
    m_menuButton->setAccessibleName(tr("Silence %1").arg(FeedText::clean(result.name)));
    // The full name (the row may elide it), then the page or what went wrong.
    Theme::setPlainToolTip(this, {result.name, result.error ? *result.error
                                                            : result.url.value_or(QUrl()).toString(
                                                                  QUrl::FullyEncoded)});
    setAccessibleName(tr("%1, %2, %3")
                          .arg(FeedText::clean(result.name), label(m_provider.health),
                               FeedText::clean(m_provider.detail)));
    // Plain text for screen readers, never the tooltip's markup: the page, and the last check.
    const QString where = FeedText::clean(
        result.error ? *result.error : result.url.value_or(QUrl()).toString(QUrl::FullyEncoded));
    setAccessibleDescription(
        result.checkedAt.isValid()
            ? tr("%1, checked %2").arg(where, DisplayText::agoText(result.checkedAt, now))
            : where);
    if (first || newsChanged)
        buildNews(now);
    else
        refreshTimes(now);
    if (first || historyChanged)
        buildHistory(now);
}

void StatusRowView::buildHistory(const QDateTime &now)
{
    m_timeline->setHistory(m_past.changes, now, m_past.week);
    m_uptime->setText(
        tr("Uptime 24 h %1 \u00b7 7 d %2 \u00b7 30 d %3")
            .arg(uptimeText(m_past.day), uptimeText(m_past.week), uptimeText(m_past.month)));
    QStringList troubles;
    for (const Trouble &trouble : std::as_const(m_past.troubles)) {
        troubles.append(tr("%1 \u00b7 %2 (%3)")
                            .arg(label(trouble.worst), troubleWindowText(trouble, now),
                                 durationText(trouble.start.secsTo(trouble.end.value_or(now)))));
    }
    m_troubles->setText(troubles.join(u'\n'));
    m_troubles->setVisible(!troubles.isEmpty());
    const bool hasNews =
        !m_provider.result.incidents.isEmpty() || !m_provider.result.maintenances.isEmpty();
    m_newsButton->setVisible(hasNews || !m_past.changes.isEmpty());
    m_history->setVisible(isExpanded() && !m_past.changes.isEmpty());
}

void StatusRowView::buildNews(const QDateTime &now)
{
    const SourceResult &result = m_provider.result;
    const bool hasNews = !result.incidents.isEmpty() || !result.maintenances.isEmpty();
    m_newsButton->setVisible(hasNews || !m_past.changes.isEmpty());
    if (m_newsButton->isHidden())
        m_newsButton->setChecked(false);
    const bool incidents = !result.incidents.isEmpty();
    const QString marker = incidents      ? u"exclamationmark.bubble.fill"_s
                           : hasNews      ? u"wrench.fill"_s
                           : isExpanded() ? u"chevron.down"_s
                                          : u"chevron.right"_s;
    m_newsButton->setIcon(
        Symbols::icon(marker, incidents ? Theme::healthColor(Health::degraded, palette())
                                        : Theme::secondaryText(palette())));
    const QString what = !hasNews ? tr("History")
                         : !incidents
                             ? tr("Maintenance")
                             : tr("%n open incident(s)", nullptr, int(result.incidents.size()));
    Theme::setPlainToolTip(m_newsButton, {what});
    m_newsButton->setAccessibleName(m_newsButton->isChecked() ? tr("Hide what is happening")
                                                              : tr("Show what is happening"));

    QLayout *layout = m_news->layout();
    while (QLayoutItem *item = layout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    m_updated.clear();
    addComponents();
    addIncidents();
    addMaintenances(now);
    refreshTimes(now);
}

QLabel *StatusRowView::newsLabel(const QString &text, const QFont &font, const QColor &color)
{
    auto *label = new QLabel(text, m_news);
    label->setTextFormat(Qt::PlainText);
    label->setFont(font);
    QPalette tinted = label->palette();
    tinted.setColor(QPalette::WindowText, color);
    label->setPalette(tinted);
    return label;
}

QAbstractButton *StatusRowView::newsLink(const QString &text, const QUrl &url)
{
    auto *button = new TextButton(text, m_news);
    button->setFont(Theme::font(11));
    connect(button, &QAbstractButton::clicked, this, [this, url] { m_actions.openUrl(url); });
    return button;
}

void StatusRowView::addComponents()
{
    const SourceResult &result = m_provider.result;
    const QColor secondary = Theme::secondaryText(palette());
    // The components in trouble, each with its state, before what the page says of them.
    const QList<ComponentStatus> affected = result.affectedComponents();
    for (const ComponentStatus &component : affected.mid(0, shownComponents)) {
        auto *line = new QWidget(m_news);
        auto *row = new QHBoxLayout(line);
        row->setContentsMargins(0, 0, 0, 0);
        row->setSpacing(6);
        const bool planned = isMaintenanceStatus(component.status);
        row->addWidget(symbolLabel(
            planned ? u"wrench.fill"_s : Theme::healthSymbol(component.health),
            planned ? Theme::maintenanceColor() : Theme::healthColor(component.health, palette()),
            10, line));
        auto *name = new ElidedLabel(line);
        name->setFont(Theme::font(11));
        name->setText(tr("%1 \u2014 %2")
                          .arg(FeedText::clean(component.name),
                               DisplayText::componentStatusText(component.status)));
        row->addWidget(name, 1);
        m_news->layout()->addWidget(line);
    }
    if (affected.size() > shownComponents)
        m_news->layout()->addWidget(
            newsLabel(tr("and %n more", nullptr, int(affected.size() - shownComponents)),
                      Theme::font(11), secondary));
}

void StatusRowView::addIncidents()
{
    const QColor secondary = Theme::secondaryText(palette());
    for (const Incident &incident : m_provider.result.incidents) {
        auto *name = new ElidedLabel(m_news);
        name->setFont(Theme::font(12, QFont::DemiBold));
        name->setText(incident.name);
        m_news->layout()->addWidget(name);
        const QDateTime updated =
            incident.updatedAt.isValid() ? incident.updatedAt : incident.startedAt;
        QLabel *stage = newsLabel(QString(), Theme::font(11), secondary);
        m_news->layout()->addWidget(stage);
        m_updated.append({stage, updated});
        stage->setProperty("stage", DisplayText::stageText(incident.stage));
        if (!incident.update.isEmpty()) {
            // A few lines of the latest update, as plain text.
            const QFont font = Theme::font(11);
            m_news->layout()->addWidget(
                newsLabel(firstLines(FeedText::clean(incident.update, 600), font, newsWidth, 3),
                          font, palette().color(QPalette::WindowText)));
        }
        if (incident.url)
            m_news->layout()->addWidget(newsLink(tr("Open incident"), incident.url->url()));
    }
}

void StatusRowView::addMaintenances(const QDateTime &now)
{
    const QColor secondary = Theme::secondaryText(palette());
    for (const Maintenance &window : m_provider.result.maintenances) {
        auto *line = new QWidget(m_news);
        auto *row = new QHBoxLayout(line);
        row->setContentsMargins(0, 0, 0, 0);
        row->setSpacing(6);
        row->addWidget(symbolLabel(u"wrench.fill"_s, secondary, 10, line));
        auto *name = new ElidedLabel(line);
        name->setFont(Theme::font(12, QFont::DemiBold));
        name->setText(window.name);
        row->addWidget(name, 1);
        m_news->layout()->addWidget(line);
        const QString when = DisplayText::windowText(window, now);
        m_news->layout()->addWidget(newsLabel(window.isInProgress(now)
                                                  ? tr("In progress \u00b7 %1").arg(when)
                                                  : tr("Scheduled \u00b7 %1").arg(when),
                                              Theme::font(11), secondary));
        if (window.url)
            m_news->layout()->addWidget(newsLink(tr("Open maintenance"), window.url->url()));
    }
}

void StatusRowView::refreshTimes(const QDateTime &now)
{
    for (const auto &[label, updated] : std::as_const(m_updated)) {
        const QString stage = label->property("stage").toString();
        label->setText(
            updated.isValid()
                ? tr("%1 \u00b7 updated %2").arg(stage, DisplayText::agoText(updated, now))
                : stage);
    }
}

bool StatusRowView::isExpanded() const
{
    return m_newsButton->isChecked();
}

void StatusRowView::setExpanded(bool expanded)
{
    m_newsButton->setChecked(expanded && !m_newsButton->isHidden());
}

void StatusRowView::buildMenu()
{
    QMenu *menu = m_menuButton->menu();
    menu->clear();
    const PaneText::SilenceMenu model = PaneText::silenceMenu(m_provider, m_actions.isSilenced);
    auto addTarget = [&](const PaneText::SilenceTarget &target) {
        QMenu *submenu =
            menu->addMenu(healthIcon(target.health, palette()), Theme::menuText(target.title));
        addDurations(submenu, target.id, m_actions);
    };
    addTarget(model.whole);
    if (!model.affected.isEmpty()) {
        menu->addSeparator();
        for (const auto &target : model.affected)
            addTarget(target);
    }
    if (!model.operational.isEmpty()) {
        menu->addSeparator();
        for (const auto &target : model.operational)
            addTarget(target);
    }
    if (model.othersCount > 0)
        menu->addAction(Theme::menuText(model.othersText()))->setEnabled(false);

    // The source's own rule first, then one per affected component, as silencing offers them.
    menu->addSeparator();
    QMenu *notify = menu->addMenu(tr("Notify me"));
    addRules(notify, model.whole.id, m_actions);
    for (const auto &target : model.affected) {
        if (notify->actions().size() == 3)
            notify->addSeparator();
        addRules(
            notify->addMenu(healthIcon(target.health, palette()), Theme::menuText(target.name)),
            target.id, m_actions);
    }
}

void StatusRowView::setHovering(bool hovering)
{
    m_hovering = hovering;
    // While its menu is open, or the row has the focus, it keeps its button.
    m_menuButton->setVisible(hovering || hasFocus() || m_menuButton->menu()->isVisible());
    update();
}

void StatusRowView::focusInEvent(QFocusEvent *)
{
    setHovering(m_hovering);
}

void StatusRowView::focusOutEvent(QFocusEvent *)
{
    setHovering(m_hovering);
}

void StatusRowView::keyPressEvent(QKeyEvent *event)
{
    const bool shift = event->modifiers() & Qt::ShiftModifier;
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        openPage();
        return;
    case Qt::Key_Menu:
        openMenu();
        return;
    case Qt::Key_F10:
        if (shift) {
            openMenu();
            return;
        }
        break;
    case Qt::Key_Right:
        setExpanded(true);
        return;
    case Qt::Key_Left:
        setExpanded(false);
        return;
    case Qt::Key_Up:
    case Qt::Key_Down:
        // To the row above or below, in the order the panel lists them.
        if (auto *list = qobject_cast<RowListView *>(parentWidget())) {
            const QList<StatusRowView *> rows = list->rows();
            const qsizetype next = rows.indexOf(this) + (event->key() == Qt::Key_Down ? 1 : -1);
            if (next >= 0 && next < rows.size()) {
                rows[next]->setFocus(Qt::OtherFocusReason);
                for (QWidget *up = list; up; up = up->parentWidget()) {
                    if (auto *scroll = qobject_cast<QScrollArea *>(up))
                        scroll->ensureWidgetVisible(rows[next]);
                }
            }
        }
        return;
    default:
        break;
    }
    QWidget::keyPressEvent(event);
}

QList<StatusRowView *> RowListView::rows() const
{
    QList<StatusRowView *> shown;
    for (int i = 0; layout() && i < layout()->count(); ++i) {
        auto *row = qobject_cast<StatusRowView *>(layout()->itemAt(i)->widget());
        if (row && row->isVisibleTo(this))
            shown.append(row);
    }
    return shown;
}

void StatusRowView::enterEvent(QEnterEvent *)
{
    setHovering(true);
}

void StatusRowView::leaveEvent(QEvent *)
{
    setHovering(false);
}

void StatusRowView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        openPage();
}

void StatusRowView::openPage()
{
    if (m_provider.result.url)
        m_actions.openUrl(m_provider.result.url->url());
}

void StatusRowView::openMenu()
{
    m_menuButton->setVisible(true);
    m_menuButton->showMenu();
}

void StatusRowView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_hovering || hasFocus()) {
        QColor hover = palette().color(QPalette::WindowText);
        hover.setAlphaF(0.06);
        painter.fillRect(rect(), hover);
    }
    // The focus ring, in the desktop's highlight colour.
    if (hasFocus()) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(3, 2, -3, -2), 5, 5);
    }
}

SilencedRowView::SilencedRowView(const QString &title, const SilenceUntil &until,
                                 std::function<void()> onUnsilence, Clock clock, QWidget *parent)
    : QWidget(parent), m_until(until), m_clock(std::move(clock))
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(12, 6, 12, 6);
    row->setSpacing(10);
    row->addWidget(symbolLabel(u"bell.slash.fill"_s, Theme::tertiaryText(palette()), 12, this));
    auto *name = new ElidedLabel(this);
    name->setFont(Theme::font(13));
    name->setColor(Theme::secondaryText(palette()));
    name->setText(title);
    row->addWidget(name, 1);
    row->addSpacing(8 - row->spacing());

    m_timeLeft = new QLabel(this);
    m_timeLeft->setTextFormat(Qt::PlainText);
    m_timeLeft->setFont(Theme::font(11));
    QPalette tertiary = m_timeLeft->palette();
    tertiary.setColor(QPalette::WindowText, Theme::tertiaryText(palette()));
    m_timeLeft->setPalette(tertiary);
    row->addWidget(m_timeLeft);

    auto *unmute = new TextButton(tr("Unmute"), this);
    connect(unmute, &QAbstractButton::clicked, this,
            [onUnsilence = std::move(onUnsilence)] { onUnsilence(); });
    row->addWidget(unmute);

    m_ticker = new QTimer(this);
    m_ticker->setInterval(std::chrono::seconds(60));
    connect(m_ticker, &QTimer::timeout, this, &SilencedRowView::updateTimeLeft);
    updateTimeLeft();
}

void SilencedRowView::showEvent(QShowEvent *)
{
    updateTimeLeft();
    // Only a dated silence counts down, and only while someone can see it.
    if (m_until.kind == SilenceUntil::Kind::date)
        m_ticker->start();
}

void SilencedRowView::hideEvent(QHideEvent *)
{
    m_ticker->stop();
}

QString SilencedRowView::timeLeft() const
{
    return m_timeLeft->text();
}

void SilencedRowView::updateTimeLeft()
{
    m_timeLeft->setText(DisplayText::timeLeftText(m_until, m_clock()));
}

} // namespace lanternic
