#include "ui/rowviews.h"

#include "model/feedtext.h"
#include "present/displaytext.h"
#include "ui/panetext.h"
#include "ui/symbols.h"
#include "ui/theme.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {

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

void addDurations(QMenu *menu, const QString &id, const StatusRowView::SilenceAction &onSilence)
{
    for (SilenceDuration duration : allSilenceDurations) {
        menu->addAction(label(duration), menu,
                        [onSilence, id, duration] { onSilence(id, duration); });
    }
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

ElidedLabel::ElidedLabel(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    m_color = palette().color(QPalette::WindowText);
}

void ElidedLabel::setText(const QString &text)
{
    m_text = FeedText::clean(text);
    setAccessibleName(m_text);
    updateGeometry();
    update();
}

void ElidedLabel::setColor(const QColor &color)
{
    m_color = color;
    update();
}

QSize ElidedLabel::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(m_text), fontMetrics().height()};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {0, fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(m_color);
    painter.setFont(font());
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(m_text, Qt::ElideRight, width()));
}

HistorySparkline::HistorySparkline(const QList<HealthTick> &ticks, QWidget *parent)
    : QWidget(parent), m_ticks(ticks.mid(std::max<qsizetype>(0, ticks.size() - maximumBars)))
{
    setFixedSize(72, 16);
}

QList<Health> HistorySparkline::bars() const
{
    QList<Health> healths;
    for (const HealthTick &tick : m_ticks)
        healths.append(healthFromRawValue(tick.healthRaw).value_or(Health::unknown));
    return healths;
}

void HistorySparkline::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_ticks.isEmpty()) {
        painter.setPen(Theme::tertiaryText(palette()));
        painter.setFont(Theme::font(11));
        painter.drawText(rect(), Qt::AlignRight | Qt::AlignVCenter, u"\u2014"_s);
        return;
    }
    const QList<Health> healths = bars();
    const qreal barWidth = 3, gap = 1;
    qreal x = width() - (healths.size() * barWidth + (healths.size() - 1) * gap);
    painter.setPen(Qt::NoPen);
    for (Health health : healths) {
        painter.setBrush(Theme::healthColor(health, palette()));
        painter.drawRoundedRect(QRectF(x, 0, barWidth, height()), 1, 1);
        x += barWidth + gap;
    }
}

StatusRowView::StatusRowView(DisplayProvider provider, const QList<HealthTick> &ticks,
                             SilenceAction onSilence, SilencedQuestion isSilenced,
                             UrlOpener openUrl, QWidget *parent)
    : QWidget(parent), m_provider(std::move(provider)), m_onSilence(std::move(onSilence)),
      m_isSilenced(std::move(isSilenced)), m_openUrl(std::move(openUrl))
{
    const SourceResult &result = m_provider.result;
    setAttribute(Qt::WA_Hover);
    setMouseTracking(true);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(12, 6, 12, 6);
    row->setSpacing(10);
    row->addWidget(symbolLabel(Theme::healthSymbol(m_provider.health),
                               Theme::healthColor(m_provider.health, palette()), 13, this,
                               label(m_provider.health)));

    auto *text = new QVBoxLayout;
    text->setSpacing(1);
    auto *name = new ElidedLabel(this);
    name->setFont(Theme::font(13, QFont::Medium));
    name->setText(result.name);
    auto *detail = new ElidedLabel(this);
    detail->setFont(Theme::font(11));
    detail->setColor(Theme::secondaryText(palette()));
    detail->setText(m_provider.detail);
    text->addWidget(name);
    text->addWidget(detail);
    row->addLayout(text, 1);
    row->addSpacing(8 - row->spacing());
    row->addWidget(new HistorySparkline(ticks, this));

    m_menuButton = new QToolButton(this);
    m_menuButton->setAutoRaise(true);
    m_menuButton->setPopupMode(QToolButton::InstantPopup);
    m_menuButton->setStyleSheet(u"QToolButton::menu-indicator { image: none; width: 0; }"_s);
    m_menuButton->setIcon(Symbols::icon(u"bell.slash"_s, Theme::secondaryText(palette())));
    m_menuButton->setIconSize(QSize(12, 12));
    m_menuButton->setFixedWidth(22);
    m_menuButton->setToolTip(Theme::plainToolTip({u"Silence "_s + result.name}));
    m_menuButton->setAccessibleName(u"Silence "_s + result.name);
    QSizePolicy keepSpace = m_menuButton->sizePolicy();
    keepSpace.setRetainSizeWhenHidden(true);
    m_menuButton->setSizePolicy(keepSpace);
    m_menuButton->setVisible(false);
    m_menuButton->setMenu(new QMenu(m_menuButton));
    // Built when it opens, so that it reflects the silences of that moment.
    connect(m_menuButton->menu(), &QMenu::aboutToShow, this, &StatusRowView::buildMenu);
    row->addWidget(m_menuButton);

    // The full name (the row may elide it), then the page or what went wrong.
    setToolTip(Theme::plainToolTip(
        {result.name,
         result.error ? *result.error : result.url.value_or(QUrl()).toString(QUrl::FullyEncoded)}));
    setAccessibleName(result.name + u", "_s + label(m_provider.health) + u", "_s +
                      m_provider.detail);
}

void StatusRowView::buildMenu()
{
    QMenu *menu = m_menuButton->menu();
    menu->clear();
    const PaneText::SilenceMenu model = PaneText::silenceMenu(m_provider, m_isSilenced);
    auto addTarget = [&](const PaneText::SilenceTarget &target) {
        QMenu *submenu =
            menu->addMenu(healthIcon(target.health, palette()), Theme::menuText(target.title));
        addDurations(submenu, target.id, m_onSilence);
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
}

void StatusRowView::setHovering(bool hovering)
{
    m_hovering = hovering;
    // While its menu is open the row keeps its button, whatever the pointer does.
    m_menuButton->setVisible(hovering || m_menuButton->menu()->isVisible());
    update();
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
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()) &&
        m_provider.result.url)
        m_openUrl(*m_provider.result.url);
}

void StatusRowView::paintEvent(QPaintEvent *)
{
    if (!m_hovering)
        return;
    QPainter painter(this);
    QColor hover = palette().color(QPalette::WindowText);
    hover.setAlphaF(0.06);
    painter.fillRect(rect(), hover);
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

    auto *unmute = new QPushButton(u"Unmute"_s, this);
    unmute->setFlat(true);
    unmute->setCursor(Qt::PointingHandCursor);
    unmute->setFont(Theme::font(12));
    unmute->setStyleSheet(u"QPushButton { border: none; padding: 0; color: palette(link); }"_s);
    connect(unmute, &QPushButton::clicked, this,
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
