#include "ui/lanternicpane.h"

#include "config/appsettings.h"
#include "present/displaytext.h"
#include "store/lanternicstore.h"
#include "store/passrecorder.h"
#include "store/silencestore.h"
#include "store/timetext.h"
#include "ui/accessibility.h"
#include "ui/panetext.h"
#include "ui/widgets/buttons.h"
#include "ui/widgets/symbols.h"
#include "ui/widgets/theme.h"

#include <QApplication>
#include <QFrame>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {

void tint(QWidget *widget, const QColor &color)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::WindowText, color);
    widget->setPalette(palette);
}

QLabel *plainLabel(const QFont &font, const QColor &color, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setFont(font);
    tint(label, color);
    return label;
}

// The silenced section's header: a flat button over the whole row.
class SilencedHeader : public PaneButton {
public:
    SilencedHeader(int count, bool expanded, QWidget *parent)
        : PaneButton(parent), m_count(count), m_expanded(expanded)
    {
        setAccessibleName(LanternicPane::tr("SILENCED %1").arg(count));
        setContentsMargins(12, 8, 12, expanded ? 2 : 8);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }

    QSize sizeHint() const override
    {
        const QMargins margins = contentsMargins();
        return {320, 12 + margins.top() + margins.bottom()};
    }

protected:
    bool hitButton(const QPoint &pos) const override { return contentsRect().contains(pos); }

    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRect area = contentsRect();
        const QColor tertiary = Theme::tertiaryText(palette());
        qreal x = area.left();
        const qreal middle = area.center().y() + 0.5;
        Symbols::paint(painter, u"bell.slash"_s, QRectF(x, middle - 5, 10, 10), tertiary);
        x += 10 + 6;

        QFont caption = Theme::font(10, QFont::DemiBold);
        caption.setLetterSpacing(QFont::AbsoluteSpacing, 0.5);
        painter.setFont(caption);
        painter.setPen(tertiary);
        const QString title = LanternicPane::tr("SILENCED");
        painter.drawText(QRectF(x, area.top(), area.width(), area.height()),
                         Qt::AlignLeft | Qt::AlignVCenter, title);
        x += QFontMetricsF(caption).horizontalAdvance(title) + 6;

        painter.setFont(Theme::font(10, QFont::DemiBold));
        painter.setPen(Theme::secondaryText(palette()));
        painter.drawText(QRectF(x, area.top(), area.width(), area.height()),
                         Qt::AlignLeft | Qt::AlignVCenter, QString::number(m_count));

        Symbols::paint(painter, m_expanded ? u"chevron.down"_s : u"chevron.right"_s,
                       QRectF(area.right() - 9, middle - 4.5, 9, 9), tertiary);
        paintFocusRing(painter, QRectF(rect()).adjusted(3, 1, -3, -1), 5);
    }

private:
    int m_count;
    bool m_expanded;
};

} // namespace

LanternicPane::LanternicPane(Services services, Actions actions, QWidget *parent)
    : QWidget(parent), m_store(services.store), m_settings(services.settings),
      m_recorder(services.recorder), m_silence(services.silence), m_rules(services.rules),
      m_actions(std::move(actions)), m_updateTimer(new QTimer(this)), m_ticker(new QTimer(this))
{
    installAccessibility();
    setAccessibleName(u"Lanternic"_s);
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    m_scroll = new QScrollArea(this);
    // Not a Tab stop of its own: the focused row is scrolled into view.
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setWidgetResizable(true);
    m_scroll->viewport()->setAutoFillBackground(false);
    outer->setSpacing(0);
    // The header and the footer stay in view; the rows scroll between them.
    m_top = new QWidget(this);
    auto *top = new QVBoxLayout(m_top);
    top->setContentsMargins(0, 0, 0, 0);
    top->setSpacing(0);
    top->addWidget(buildHeader());
    top->addWidget(divider(m_top));
    outer->addWidget(m_top);
    outer->addWidget(m_scroll, 1);
    buildContent();

    outer->addWidget(buildFooter());
    m_scroll->setWidget(m_content);
    for (QWidget *part : {m_top, m_content, m_bottom, static_cast<QWidget *>(m_scroll)})
        part->installEventFilter(this);
    buildScrollBar();
    applyColours();

    // Many changes arrive together at the end of a pass: redraw once for all of them.
    m_updateTimer->setSingleShot(true);
    m_updateTimer->setInterval(0);
    connect(m_updateTimer, &QTimer::timeout, this, &LanternicPane::rebuild);
    // Relative times ("Updated 3 min ago") move on while the panel is open.
    m_ticker->setInterval(std::chrono::seconds(5));
    connect(m_ticker, &QTimer::timeout, this, &LanternicPane::tick);
    connect(&m_store, &LanternicStore::resultsChanged, this, &LanternicPane::scheduleUpdate);
    connect(&m_recorder, &PassRecorder::historyChanged, this, [this] {
        m_past.clear();
        scheduleUpdate();
    });
    // These change the header alone.
    for (auto signal : {&LanternicStore::lastCheckedChanged, &LanternicStore::isRefreshingChanged,
                        &LanternicStore::offlineChanged}) {
        connect(&m_store, signal, this, [this] {
            if (isVisible())
                updateHeader();
        });
    }
    connect(&m_silence, &SilenceStore::entriesChanged, this, &LanternicPane::scheduleUpdate);
    connect(&m_settings, &AppSettings::showOperationalChanged, this,
            &LanternicPane::scheduleUpdate);
    rebuild();
}

int LanternicPane::paneHeight(qreal contentHeight, std::optional<qreal> screenHeight)
{
    const qreal content = std::max<qreal>(contentHeight, 1);
    return qRound(std::min(content, screenHeight ? 0.7 * *screenHeight : 630.0));
}

QSize LanternicPane::sizeHint() const
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    return {columnWidth,
            paneHeight(m_contentHeight,
                       screen ? std::optional<qreal>(screen->geometry().height()) : std::nullopt)};
}

void LanternicPane::buildScrollBar()
{
    // The area's own bar is hidden but still scrolls; this one mirrors it over the content's
    // right edge, so the column keeps its full width, and shows only while scrolling or
    // while the pointer is over the pane.
    QScrollBar *area = m_scroll->verticalScrollBar();
    m_scrollBar = new QScrollBar(Qt::Vertical, this);
    m_scrollBar->setAccessibleName(tr("Scroll"));
    m_scrollBar->hide();
    connect(area, &QScrollBar::rangeChanged, m_scrollBar, [this, area](int min, int max) {
        m_scrollBar->setRange(min, max);
        m_scrollBar->setPageStep(area->pageStep());
        if (max <= min)
            m_scrollBar->hide();
    });
    connect(area, &QScrollBar::valueChanged, this, [this](int value) {
        m_scrollBar->setValue(value);
        revealScrollBar();
    });
    connect(m_scrollBar, &QScrollBar::valueChanged, area, &QScrollBar::setValue);
    m_scrollBarFade = new QTimer(this);
    m_scrollBarFade->setSingleShot(true);
    m_scrollBarFade->setInterval(1200);
    connect(m_scrollBarFade, &QTimer::timeout, this, [this] {
        if (m_scrollBar->underMouse() || m_scrollBar->isSliderDown())
            m_scrollBarFade->start();
        else
            m_scrollBar->hide();
    });
}

void LanternicPane::revealScrollBar()
{
    if (m_scrollBar->maximum() <= m_scrollBar->minimum())
        return;
    m_scrollBar->show();
    m_scrollBar->raise();
    m_scrollBarFade->start();
}

void LanternicPane::showEvent(QShowEvent *)
{
    if (m_stale)
        rebuild();
    // Every opening starts from the top, as a menu does, with the first row in focus (the
    // refresh button where there is none) so that the keys work at once.
    m_scroll->verticalScrollBar()->setValue(0);
    m_ticker->start();
    const QList<StatusRowView *> rows = m_rows->rows();
    QWidget *first = rows.isEmpty() ? static_cast<QWidget *>(m_refreshButton) : rows.first();
    QTimer::singleShot(0, first, [first] { first->setFocus(Qt::ActiveWindowFocusReason); });
}

void LanternicPane::hideEvent(QHideEvent *)
{
    m_ticker->stop();
}

void LanternicPane::tick()
{
    const QDateTime now = m_store.now();
    updateHeader();
    updatePauseRow();
    for (StatusRowView *row : std::as_const(m_rowViews))
        row->refreshTimes(now);
}

void LanternicPane::resizeEvent(QResizeEvent *)
{
    placeScrollBar();
}

void LanternicPane::placeScrollBar()
{
    const QRect area = m_scroll->geometry();
    m_scrollBar->setGeometry(width() - 9, area.top() + 3, 7, area.height() - 6);
}

void LanternicPane::enterEvent(QEnterEvent *)
{
    revealScrollBar();
}

void LanternicPane::scheduleUpdate()
{
    // A hidden panel does no layout work: it catches up when it is shown.
    if (!isVisible()) {
        m_stale = true;
        return;
    }
    m_updateTimer->start();
}

QWidget *LanternicPane::divider(QWidget *parent)
{
    auto *line = new QFrame(parent);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Plain);
    line->setFixedHeight(1);
    m_dividers.append(line);
    return line;
}

void LanternicPane::applyColours()
{
    const QPalette colours = palette();
    QColor separator = colours.color(QPalette::WindowText);
    separator.setAlphaF(0.12);
    for (QWidget *line : std::as_const(m_dividers))
        tint(line, separator);
    tint(m_summary, colours.color(QPalette::WindowText));
    tint(m_lastCheck, Theme::secondaryText(colours));
    m_clock->setPixmap(Symbols::icon(u"clock"_s, Theme::secondaryText(colours))
                           .pixmap(QSize(10, 10), devicePixelRatioF()));
    QColor handle = colours.color(QPalette::WindowText);
    handle.setAlphaF(0.35);
    m_scrollBar->setStyleSheet(
        u"QScrollBar { background: transparent; width: 7px; margin: 0; }"
        u"QScrollBar::handle { background: %1; border-radius: 3px; min-height: 24px; }"
        u"QScrollBar::add-line, QScrollBar::sub-line { height: 0; }"
        u"QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }"_s.arg(
            handle.name(QColor::HexArgb)));
}

void LanternicPane::changeEvent(QEvent *event)
{
    // A new desktop theme: colours that were set by hand follow it, and rows are made anew.
    if (event->type() == QEvent::PaletteChange) {
        applyColours();
        qDeleteAll(m_rowViews);
        m_rowViews.clear();
        scheduleUpdate();
    }
    QWidget::changeEvent(event);
}

// What scrolls: the rows, and the silenced section under them.
void LanternicPane::buildContent()
{
    m_content = new QWidget;
    m_content->setAutoFillBackground(false);
    m_column = new QVBoxLayout(m_content);
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(0);
    m_rows = new RowListView(m_content);
    m_rows->setAccessibleName(tr("Sources"));
    m_rowsLayout = new QVBoxLayout(m_rows);
    m_rowsLayout->setContentsMargins(0, 0, 0, 0);
    m_rowsLayout->setSpacing(0);
    m_nothing = plainLabel(Theme::font(12), Theme::secondaryText(palette()), m_rows);
    m_nothing->setText(tr("Nothing to report \u2014 all operational"));
    m_nothing->setWordWrap(true);
    m_nothing->setContentsMargins(12, 10, 12, 10);
    m_rowsLayout->addWidget(m_nothing);
    m_column->addWidget(m_rows);
    m_silencedDivider = divider(m_content);
    m_column->addWidget(m_silencedDivider);
    m_silencedSection = new QWidget(m_content);
    m_column->addWidget(m_silencedSection);
    m_column->addStretch();
}

QWidget *LanternicPane::buildFooter()
{
    m_bottom = new QWidget(this);
    auto *footer = new QVBoxLayout(m_bottom);
    footer->setSpacing(0);
    footer->setContentsMargins(0, 0, 0, 6);
    footer->addWidget(divider(m_bottom));
    footer->addSpacing(4);
    m_pauseRow = new MenuActionRow(QString(), u"bell.slash"_s, m_bottom);
    auto *settingsRow = new MenuActionRow(tr("Settings\u2026"), u"gearshape"_s, m_bottom);
    auto *quitRow = new MenuActionRow(tr("Quit Lanternic"), u"power"_s, m_bottom);
    m_footer = {m_pauseRow, settingsRow, quitRow};
    connect(m_pauseRow, &QAbstractButton::clicked, this, [this] {
        const QDateTime now = m_store.now();
        m_rules.pauseUntil(m_rules.isPaused(now) ? QDateTime() : now.addSecs(3600));
    });
    connect(settingsRow, &QAbstractButton::clicked, this, [this] { m_actions.openSettings(); });
    connect(quitRow, &QAbstractButton::clicked, this, [this] { m_actions.quit(); });
    connect(&m_rules, &NotificationRules::changed, this, &LanternicPane::updatePauseRow);
    connect(&m_settings, &AppSettings::notificationsChanged, this, &LanternicPane::updatePauseRow);
    updatePauseRow();
    footer->addWidget(m_pauseRow);
    footer->addWidget(settingsRow);
    footer->addWidget(quitRow);
    return m_bottom;
}

QWidget *LanternicPane::buildHeader()
{
    auto *header = new QWidget(m_top);
    auto *row = new QHBoxLayout(header);
    row->setContentsMargins(12, 10, 12, 10);
    row->setSpacing(10);

    m_overallSymbol = new QLabel(header);
    m_overallSymbol->setFixedSize(16, 17);
    m_overallSymbol->setAlignment(Qt::AlignCenter);
    row->addWidget(m_overallSymbol);

    auto *text = new QVBoxLayout;
    text->setSpacing(1);
    m_summary =
        plainLabel(Theme::font(13, QFont::DemiBold), palette().color(QPalette::WindowText), header);
    m_lastCheck = plainLabel(Theme::font(11), Theme::secondaryText(palette()), header);
    // Longer in other languages than the column is wide: they wrap rather than widen it.
    m_summary->setWordWrap(true);
    m_lastCheck->setWordWrap(true);
    auto *lastCheckLine = new QHBoxLayout;
    lastCheckLine->setSpacing(3);
    m_clock = new QLabel(header);
    markDecorative(m_clock);
    lastCheckLine->addWidget(m_clock);
    lastCheckLine->addWidget(m_lastCheck, 1);
    text->addWidget(m_summary);
    text->addLayout(lastCheckLine);
    row->addLayout(text, 1);
    row->addSpacing(8 - row->spacing());

    m_refreshControl = new QStackedWidget(header);
    m_refreshControl->setFixedSize(22, 22);
    m_refreshButton = new RefreshButton(m_refreshControl);
    connect(m_refreshButton, &QAbstractButton::clicked, this, [this] { m_actions.refresh(); });
    m_refreshControl->addWidget(m_refreshButton);
    m_refreshControl->addWidget(new Spinner(m_refreshControl));
    row->addWidget(m_refreshControl, 0, Qt::AlignTop);

    m_refreshShortcut = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_R), this);
    connect(m_refreshShortcut, &QShortcut::activated, this, [this] {
        if (!m_store.isRefreshing())
            m_actions.refresh();
    });
    return header;
}

void LanternicPane::updatePauseRow()
{
    const QDateTime until = m_rules.pausedUntil();
    m_pauseRow->setText(
        m_rules.isPaused(m_store.now())
            ? tr("Resume notifications (paused until %1)").arg(TimeText::clockText(until))
            : tr("Pause notifications for 1 hour"));
    m_pauseRow->setAccessibleName(m_pauseRow->text());
    m_pauseRow->setVisible(m_settings.notifications());
}

void LanternicPane::updateHeader()
{
    const Health overall = m_store.overallHealth();
    m_overallSymbol->setPixmap(
        Symbols::icon(Theme::healthSymbol(overall), Theme::healthColor(overall, palette()))
            .pixmap(QSize(13, 13), devicePixelRatioF()));
    m_overallSymbol->setAccessibleName(label(overall));
    m_summary->setText(m_store.summaryText());
    const QString lastCheck = DisplayText::lastCheckText(m_store.lastChecked(), m_store.now());
    m_lastCheck->setText(m_store.isOffline() ? tr("Offline \u00b7 %1").arg(lastCheck) : lastCheck);
    m_refreshControl->setCurrentIndex(m_store.isRefreshing() ? 1 : 0);
    m_refreshShortcut->setEnabled(!m_store.isRefreshing());
}

RowHistory LanternicPane::pastOf(const QString &id, const QDateTime &now)
{
    if (auto kept = m_past.constFind(id); kept != m_past.constEnd())
        return *kept;
    const HealthLog &log = m_recorder.healthLog();
    RowHistory &past = m_past[id];
    past.changes = log.byId.value(id);
    past.day = log.uptime(id, now.addDays(-1), now).share;
    past.week = log.uptime(id, now.addDays(-7), now).share;
    past.month = log.uptime(id, now.addDays(-30), now).share;
    const QList<Trouble> troubles = log.uptime(id, now.addDays(-HealthLog::keptDays), now).troubles;
    for (qsizetype i = troubles.size() - 1; i >= 0 && past.troubles.size() < 3; --i)
        past.troubles.append(troubles[i]);
    return past;
}

void LanternicPane::updateRows()
{
    QList<DisplayProvider> visible = m_store.providers();
    if (!m_settings.showOperational())
        visible.removeIf(
            [](const DisplayProvider &row) { return row.health == Health::operational; });
    m_nothing->setVisible(visible.isEmpty());

    // Rows are kept by source, so that an expanded or focused row stays so through a pass.
    QHash<QString, StatusRowView *> kept;
    const QDateTime now = m_store.now();
    for (qsizetype i = 0; i < visible.size(); ++i) {
        const DisplayProvider &row = visible[i];
        StatusRowView *view = m_rowViews.take(row.result.id);
        if (!view) {
            view = new StatusRowView(
                {[this](const QString &id, SilenceDuration duration) {
                     m_silence.silence(id, duration, m_store.now());
                 },
                 [this](const QString &id) { return m_silence.isSilenced(id, m_store.now()); },
                 [this, source = row.result.id](const QString &id) {
                     return m_rules.entries().value(id, m_rules.rule(source));
                 },
                 [this](const QString &id, NotifyRule rule) { m_rules.setRule(id, rule); },
                 m_actions.openUrl},
                m_rows);
        }
        view->setContent(row, m_recorder.history().byId.value(row.result.id), now,
                         pastOf(row.result.id, now));
        if (m_rowsLayout->indexOf(view) != i + 1) {
            m_rowsLayout->removeWidget(view);
            m_rowsLayout->insertWidget(int(i) + 1, view);
        }
        view->show();
        kept.insert(row.result.id, view);
    }
    for (StatusRowView *gone : std::as_const(m_rowViews)) {
        m_rowsLayout->removeWidget(gone);
        // Later, since a row's own menu may be what changed the silences just now.
        gone->hide();
        gone->deleteLater();
    }
    m_rowViews = std::move(kept);
    // The column measures the rows afresh now, not when the rows' own layout gets round to it.
    m_rowsLayout->activate();
    m_rows->updateGeometry();
}

void LanternicPane::orderTabs()
{
    // Rows and the silenced section come and go after the footer is made: without this, Tab
    // would take them in the order they were made, not the order shown.
    QList<QWidget *> chain{m_refreshButton};
    for (StatusRowView *row : m_rows->rows())
        chain.append(row);
    for (auto *button : m_silencedSection->findChildren<QAbstractButton *>())
        chain.append(button);
    chain += m_footer;
    for (qsizetype i = 0; i + 1 < chain.size(); ++i)
        QWidget::setTabOrder(chain[i], chain[i + 1]);
}

void LanternicPane::rebuildSilenced()
{
    const QList<SilencedItem> items = m_store.silencedItems();
    auto *section = new QWidget(m_content);
    auto *layout = new QVBoxLayout(section);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    if (!items.isEmpty()) {
        auto *header = new SilencedHeader(int(items.size()), m_silencedExpanded, section);
        connect(header, &QAbstractButton::clicked, this, [this] {
            m_silencedExpanded = !m_silencedExpanded;
            scheduleUpdate();
        });
        layout->addWidget(header);
        if (m_silencedExpanded) {
            for (const SilencedItem &item : items) {
                layout->addWidget(new SilencedRowView(
                    item.title, item.until, [this, id = item.id] { m_silence.unsilence(id); },
                    [this] { return m_store.now(); }, section));
            }
        }
    }
    m_silencedDivider->setVisible(!items.isEmpty());
    section->setVisible(!items.isEmpty());
    delete m_column->replaceWidget(m_silencedSection, section);
    m_silencedSection->hide();
    m_silencedSection->deleteLater();
    m_silencedSection = section;
}

void LanternicPane::rebuild()
{
    m_stale = false;
    // A row silenced, or an item unmuted, from the keyboard goes with the focus it had: the
    // focus moves to its neighbour, or to the header when none is left.
    QWidget *focused = QApplication::focusWidget();
    if (focused && !isAncestorOf(focused))
        focused = nullptr;
    StatusRowView *focusedRow = nullptr;
    for (QWidget *at = focused; at && !focusedRow; at = at->parentWidget())
        focusedRow = qobject_cast<StatusRowView *>(at);
    const qsizetype rowIndex = m_rows->rows().indexOf(focusedRow);
    const qsizetype silencedIndex =
        m_silencedSection->findChildren<QAbstractButton *>().indexOf(focused);

    updateHeader();
    updateRows();
    rebuildSilenced();
    orderTabs();
    m_column->activate();
    updateContentHeight();

    QWidget *next = nullptr;
    if (rowIndex >= 0 && !m_rowViews.values().contains(focusedRow)) {
        const QList<StatusRowView *> rows = m_rows->rows();
        next = rows.isEmpty() ? static_cast<QWidget *>(m_refreshButton)
                              : rows.at(std::min(rowIndex, rows.size() - 1));
    } else if (silencedIndex >= 0) {
        const auto buttons = m_silencedSection->findChildren<QAbstractButton *>();
        next = buttons.isEmpty() ? static_cast<QWidget *>(m_refreshButton)
                                 : buttons.at(std::min(silencedIndex, buttons.size() - 1));
    }
    if (next)
        next->setFocus(Qt::OtherFocusReason);
}

void LanternicPane::updateContentHeight()
{
    // The header's texts may wrap: its height is the one it takes at the column's width.
    const auto heightOf = [](QWidget *part) {
        return part->hasHeightForWidth() ? part->heightForWidth(columnWidth)
                                         : part->sizeHint().height();
    };
    const int height = heightOf(m_top) + m_content->sizeHint().height() + heightOf(m_bottom);
    if (height == m_contentHeight)
        return;
    m_contentHeight = height;
    updateGeometry();
    Q_EMIT heightChanged(sizeHint().height());
}

bool LanternicPane::eventFilter(QObject *watched, QEvent *event)
{
    // Fonts and styles settle when the pane is first shown; the content may change height.
    if (watched == m_scroll && (event->type() == QEvent::Resize || event->type() == QEvent::Move))
        placeScrollBar();
    if ((watched == m_content || watched == m_top || watched == m_bottom) &&
        event->type() == QEvent::LayoutRequest)
        QTimer::singleShot(0, this, &LanternicPane::updateContentHeight);
    return QWidget::eventFilter(watched, event);
}

} // namespace lanternic
