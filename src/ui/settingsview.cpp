#include "ui/settingsview.h"

#include "config/appsettings.h"
#include "config/catalog.h"
#include "config/sourceregistry.h"
#include "platform/loginitem.h"
#include "present/displaytext.h"
#include "present/sourcelines.h"
#include "sources/sourcekindstore.h"
#include "store/notificationrules.h"
#include "store/timetext.h"
#include "ui/accessibility.h"
#include "ui/catalogpicker.h"
#include "ui/widgets/theme.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QFontDatabase>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QTextBlock>
#include <QTextCursor>
#include <QTimeEdit>
#include <QVBoxLayout>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {

QLabel *caption(const QString &text, const QColor &color, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setFont(Theme::font(11));
    label->setWordWrap(true);
    QPalette tinted = label->palette();
    tinted.setColor(QPalette::WindowText, color);
    label->setPalette(tinted);
    return label;
}

} // namespace

// The source list, with what each line became written beside it in small grey text (in the
// colour of trouble where the line is ignored), so that telling takes no room of its own.
class GeneralSettingsView::SourceLinesEdit : public QPlainTextEdit {
public:
    struct Note {
        QString text;
        bool ignored = false;
    };

    using QPlainTextEdit::QPlainTextEdit;

    void setNotes(QHash<int, Note> notes)
    {
        m_notes = std::move(notes);
        viewport()->update();
    }
    const QHash<int, Note> &notes() const { return m_notes; }

    // Its minimum to start with: the form fits the window, and the box grows with it.
    QSize sizeHint() const override
    {
        return {QPlainTextEdit::sizeHint().width(), minimumHeight()};
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QPlainTextEdit::paintEvent(event);
        QPainter painter(viewport());
        QFont small = Theme::font(11);
        painter.setFont(small);
        const QFontMetrics noteMetrics(small);
        const QFontMetrics textMetrics(font());
        const int right = viewport()->width() - 6;
        for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
            const QRectF area = blockBoundingGeometry(block).translated(contentOffset());
            if (area.top() > viewport()->height())
                break;
            const auto note = m_notes.constFind(block.blockNumber());
            if (note == m_notes.constEnd())
                continue;
            const int textEnd =
                int(area.left()) + 6 + textMetrics.horizontalAdvance(block.text()) + 16;
            const QString shown =
                noteMetrics.elidedText(note->text, Qt::ElideLeft, std::max(0, right - textEnd));
            if (shown.size() < 3)
                continue;
            painter.setPen(note->ignored ? Theme::healthColor(Health::down, palette())
                                         : Theme::tertiaryText(palette()));
            painter.drawText(QRectF(textEnd, area.top(), right - textEnd, area.height()),
                             Qt::AlignRight | Qt::AlignVCenter, shown);
        }
    }

private:
    QHash<int, Note> m_notes; // by block number
};

QString GeneralSettingsView::helpText()
{
    return tr("One per line, in \"Label=host\" form, e.g.\nGitHub=www.githubstatus.com\n"
              "Leave blank for the defaults (GitHub, Cloudflare, Datadog, OpenAI, Claude).");
}

GeneralSettingsView::GeneralSettingsView(AppSettings &settings, LoginItemService &loginItem,
                                         UpdateActions updates, QWidget *parent)
    : QWidget(parent), m_settings(settings), m_loginItem(loginItem), m_updates(std::move(updates))
{
    auto *form = new QVBoxLayout(this);
    form->setContentsMargins(20, 12, 20, 12);
    form->setSpacing(10);
    form->addWidget(buildSources(), 1);
    form->addWidget(buildOptions());

    connect(m_sources, &QPlainTextEdit::textChanged, this, [this] {
        m_settings.setSourcesText(m_sources->toPlainText());
        showUnderstanding();
    });
    connect(m_showOperational, &QCheckBox::clicked, this,
            [this](bool checked) { m_settings.setShowOperational(checked); });
    connect(m_notifications, &QCheckBox::clicked, this,
            [this](bool checked) { m_settings.setNotifications(checked); });
    connect(m_launchAtLogin, &QCheckBox::clicked, this, &GeneralSettingsView::changeLaunchAtLogin);
    connect(m_automaticUpdates, &QCheckBox::clicked, this, [this](bool checked) {
        m_updates.setAutomaticUpdates(checked);
        m_automaticUpdates->setChecked(m_updates.automaticUpdatesEnabled());
    });
    connect(m_interval, &QButtonGroup::idClicked, this,
            [this](int minutes) { m_settings.setRefreshIntervalMinutes(minutes); });
    connect(&m_settings, &AppSettings::sourcesTextChanged, this,
            &GeneralSettingsView::syncFromSettings);
    connect(&m_settings, &AppSettings::showOperationalChanged, this,
            &GeneralSettingsView::syncFromSettings);
    connect(&m_settings, &AppSettings::refreshIntervalMinutesChanged, this,
            &GeneralSettingsView::syncFromSettings);
    syncFromSettings();
    showUnderstanding();
}

QWidget *GeneralSettingsView::buildSources()
{
    auto *sourcesGroup = new QGroupBox(tr("Status sources"), this);
    auto *sources = new QVBoxLayout(sourcesGroup);
    sources->setSpacing(6);
    m_sources = new SourceLinesEdit(sourcesGroup);
    m_sources->setAccessibleName(tr("Status sources"));
    QFont mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    mono.setPixelSize(13);
    m_sources->setFont(mono);
    m_sources->setLineWrapMode(QPlainTextEdit::NoWrap);
    // At least five lines, and whatever room the window has.
    m_sources->setMinimumHeight(92 + 12);
    m_sources->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_sources->document()->setDocumentMargin(6);
    // Tab and Shift+Tab leave the box: a tab character is no part of a source line.
    m_sources->setTabChangesFocus(true);
    sources->addWidget(m_sources);
    auto *helpRow = new QHBoxLayout;
    helpRow->addWidget(caption(helpText(), Theme::secondaryText(palette()), sourcesGroup), 1);
    auto *add = new QPushButton(tr("Add service\u2026"), sourcesGroup);
    add->setAccessibleName(tr("Add service"));
    connect(add, &QPushButton::clicked, this, &GeneralSettingsView::addService);
    helpRow->addWidget(add, 0, Qt::AlignTop);
    sources->addLayout(helpRow);
    return sourcesGroup;
}

QWidget *GeneralSettingsView::buildOptions()
{
    auto *optionsGroup = new QGroupBox(this);
    auto *options = new QVBoxLayout(optionsGroup);
    options->setSpacing(8);
    m_showOperational = new QCheckBox(tr("Show operational systems"), optionsGroup);
    options->addWidget(m_showOperational);
    m_notifications = new QCheckBox(tr("Notify me when a service changes"), optionsGroup);
    options->addWidget(m_notifications);
    m_launchAtLogin = new QCheckBox(tr("Launch at login"), optionsGroup);
    options->addWidget(m_launchAtLogin);
    m_loginError = caption(QString(), Theme::healthColor(Health::down, palette()), optionsGroup);
    m_loginError->hide();
    options->addWidget(m_loginError);

    options->addLayout(buildUpdateRow(optionsGroup));
    options->addLayout(buildIntervalRow(optionsGroup));
    return optionsGroup;
}

QLayout *GeneralSettingsView::buildUpdateRow(QWidget *group)
{
    auto *updateRow = new QHBoxLayout;
    updateRow->setSpacing(8);
    updateRow->addWidget(new QLabel(tr("Check for updates automatically"), group));
    auto *checkNow = new QPushButton(tr("Check now"), group);
    checkNow->setFlat(true);
    checkNow->setCursor(Qt::PointingHandCursor);
    checkNow->setFont(Theme::font(12));
    checkNow->setStyleSheet(u"QPushButton { border: none; padding: 0; color: palette(link); }"_s);
    updateRow->addWidget(checkNow);
    updateRow->addStretch(1);
    m_automaticUpdates = new QCheckBox(group);
    m_automaticUpdates->setAccessibleName(tr("Check for updates automatically"));
    if (!m_updates.feedAvailable) {
        auto *why = caption(tr("Updates come from your package manager"),
                            Theme::secondaryText(palette()), group);
        why->setWordWrap(false);
        updateRow->addWidget(why);
        m_automaticUpdates->setEnabled(false);
        m_automaticUpdates->setAccessibleDescription(why->text());
    }
    updateRow->addWidget(m_automaticUpdates);
    connect(checkNow, &QPushButton::clicked, this, [this] { m_updates.onCheckForUpdates(); });
    return updateRow;
}

QLayout *GeneralSettingsView::buildIntervalRow(QWidget *group)
{
    auto *intervalRow = new QHBoxLayout;
    auto *intervalLabel = new QLabel(tr("Refresh interval"), group);
    intervalRow->addWidget(intervalLabel);
    intervalRow->addStretch(1);
    m_interval = new QButtonGroup(this);
    // Not exclusive: a stored interval other than 1, 2 or 5 selects no segment.
    m_interval->setExclusive(false);
    // A group of radio buttons to assistive technology, named by its label.
    auto *segmentGroup = new QGroupBox(group);
    segmentGroup->setFlat(true);
    segmentGroup->setStyleSheet(u"QGroupBox { border: none; margin: 0; padding: 0; }"_s);
    segmentGroup->setAccessibleName(intervalLabel->text());
    auto *segments = new QHBoxLayout(segmentGroup);
    segments->setContentsMargins(0, 0, 0, 0);
    segments->setSpacing(0);
    for (int minutes : {1, 2, 5}) {
        auto *segment = new SegmentButton(tr("%1m").arg(minutes), segmentGroup);
        segment->setAccessibleName(tr("%n minute(s)", nullptr, minutes));
        segment->setCheckable(true);
        segment->setMinimumWidth(48);
        m_interval->addButton(segment, minutes);
        segments->addWidget(segment);
    }
    intervalRow->addWidget(segmentGroup);
    return intervalRow;
}

void GeneralSettingsView::showEvent(QShowEvent *)
{
    if (m_settings.sourcesText().isEmpty() && !SourceRegistry::defaultText().isEmpty())
        m_settings.setSourcesText(SourceRegistry::defaultText());
    if (!m_loginStatusRead) {
        // The window opens in its first field, not on its lone tab bar.
        m_sources->setFocus(Qt::ActiveWindowFocusReason);
        m_loginStatusRead = true;
        m_launchAtLogin->setChecked(m_loginItem.status() == LoginItemService::Status::enabled);
    }
    m_automaticUpdates->setChecked(m_updates.feedAvailable && m_updates.automaticUpdatesEnabled());
    syncFromSettings();
}

void GeneralSettingsView::syncFromSettings()
{
    // Only on a real difference, so that typing keeps its cursor and undo history.
    if (m_sources->toPlainText() != m_settings.sourcesText())
        m_sources->setPlainText(m_settings.sourcesText());
    m_showOperational->setChecked(m_settings.showOperational());
    m_notifications->setChecked(m_settings.notifications());
    for (QAbstractButton *segment : m_interval->buttons())
        segment->setChecked(m_interval->id(segment) == m_settings.refreshIntervalMinutes());
}

void GeneralSettingsView::setKinds(SourceKindStore *kinds)
{
    m_kinds = kinds;
    showUnderstanding();
}

void GeneralSettingsView::showUnderstanding()
{
    const QList<LineReading> readings = SourceRegistry::readLines(
        m_sources->toPlainText(), m_kinds ? m_kinds->cache() : QHash<QString, SourceKind>());
    QHash<int, SourceLinesEdit::Note> notes;
    QStringList told;
    for (const LineReading &reading : readings) {
        QString note = reading.source
                           ? SourceLines::kindText(reading)
                           : tr("ignored \u2014 %1").arg(SourceLines::ignoredText(reading));
        if (reading.sameAs > 0)
            note = tr("%1, as line %2").arg(note).arg(reading.sameAs);
        notes.insert(reading.line - 1, {note, !reading.source});
        told.append(SourceLines::describe(reading));
    }
    m_sources->setNotes(std::move(notes));
    // The same, whole, for screen readers and the tooltip.
    Theme::setPlainToolTip(m_sources, told);
    m_sources->setAccessibleDescription(told.join(u'\n'));
}

QString GeneralSettingsView::annotation(int line) const
{
    return m_sources->notes().value(line - 1).text;
}

void GeneralSettingsView::addService()
{
    QSet<QString> inUse;
    for (const LineReading &reading : SourceRegistry::readLines(m_settings.sourcesText(), {})) {
        if (reading.source)
            inUse.insert((reading.source->baseHost.isEmpty() ? reading.source->url.host()
                                                             : reading.source->baseHost)
                             .toLower());
    }
    auto *picker = new CatalogPicker(
        Catalog::builtIn(), inUse,
        [this](const CatalogEntry &entry) {
            if (auto known = entry.knownKind(); known && m_kinds)
                m_kinds->record(known->first, known->second);
            QString text = m_settings.sourcesText();
            if (!text.isEmpty() && !text.endsWith(u'\n'))
                text += u'\n';
            m_settings.setSourcesText(text + entry.sourceLine());
            // The new line is the one in view, selected, as if just typed.
            QTextCursor line(m_sources->document()->lastBlock());
            line.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
            m_sources->setTextCursor(line);
            m_sources->ensureCursorVisible();
            m_sources->setFocus(Qt::OtherFocusReason);
        },
        this);
    picker->setAttribute(Qt::WA_DeleteOnClose);
    picker->open();
}

void GeneralSettingsView::changeLaunchAtLogin(bool enabled)
{
    const std::optional<QString> error =
        enabled ? m_loginItem.registerItem() : m_loginItem.unregisterItem();
    m_loginError->setText(error.value_or(QString()));
    m_loginError->setVisible(error.has_value());
    if (error)
        m_launchAtLogin->setChecked(!enabled);
}

AdvancedSettingsView::AdvancedSettingsView(AppSettings &settings, QWidget *parent) : QWidget(parent)
{
    auto *form = new QVBoxLayout(this);
    form->setContentsMargins(20, 16, 20, 16);
    form->setSpacing(14);
    auto *group = new QGroupBox(tr("Maintenance"), this);
    auto *options = new QVBoxLayout(group);
    options->setSpacing(6);
    m_maintenance = new QCheckBox(tr("Treat maintenance as operational"), group);
    options->addWidget(m_maintenance);
    const QString explanation = tr("Components a status page lists as under maintenance count as "
                                   "operational: planned work turns nothing orange.");
    options->addWidget(caption(explanation, Theme::secondaryText(palette()), group));
    m_maintenance->setAccessibleDescription(explanation);
    form->addWidget(group);
    form->addStretch(1);

    m_maintenance->setChecked(settings.treatMaintenanceAsOperational());
    connect(m_maintenance, &QCheckBox::clicked, &settings,
            &AppSettings::setTreatMaintenanceAsOperational);
    connect(&settings, &AppSettings::treatMaintenanceAsOperationalChanged, this, [this, &settings] {
        m_maintenance->setChecked(settings.treatMaintenanceAsOperational());
    });
}

void SegmentButton::keyPressEvent(QKeyEvent *event)
{
    const int step = event->key() == Qt::Key_Right || event->key() == Qt::Key_Down ? 1
                     : event->key() == Qt::Key_Left || event->key() == Qt::Key_Up  ? -1
                                                                                   : 0;
    const QList<SegmentButton *> segments =
        parentWidget()->findChildren<SegmentButton *>(Qt::FindDirectChildrenOnly);
    const qsizetype next = segments.indexOf(this) + step;
    if (step == 0 || next < 0 || next >= segments.size()) {
        QPushButton::keyPressEvent(event);
        return;
    }
    segments[next]->setFocus(Qt::TabFocusReason);
    segments[next]->click();
}

NotificationSettingsView::NotificationSettingsView(NotificationRules &rules, QWidget *parent)
    : QWidget(parent), m_rules(rules)
{
    auto *form = new QVBoxLayout(this);
    form->setContentsMargins(20, 16, 20, 16);
    form->setSpacing(14);
    // What governs this page, on the page before it.
    form->addWidget(caption(tr("These settings apply while \u201cNotify me when a service "
                               "changes\u201d is on in General; that switch turns every "
                               "notification on and off."),
                            Theme::secondaryText(palette()), this));
    auto *group = new QGroupBox(tr("Quiet hours"), this);
    auto *options = new QVBoxLayout(group);
    options->setSpacing(6);
    m_quiet = new QCheckBox(tr("Hold notifications back every night"), group);
    options->addWidget(m_quiet);
    auto *span = new QHBoxLayout;
    m_from = new QTimeEdit(group);
    m_until = new QTimeEdit(group);
    auto *fromLabel = new QLabel(tr("From"), group);
    auto *untilLabel = new QLabel(tr("until"), group);
    fromLabel->setBuddy(m_from);
    untilLabel->setBuddy(m_until);
    m_from->setAccessibleName(tr("Quiet hours start"));
    m_until->setAccessibleName(tr("Quiet hours end"));
    for (QTimeEdit *edit : {m_from, m_until})
        edit->setDisplayFormat(TimeText::clockFormat());
    span->addWidget(fromLabel);
    span->addWidget(m_from);
    span->addWidget(untilLabel);
    span->addWidget(m_until);
    span->addStretch(1);
    options->addLayout(span);
    const QString explanation =
        tr("Nothing pops up during these hours. When they end, one notification sums up what "
           "changed meanwhile and how things stand.");
    options->addWidget(caption(explanation, Theme::secondaryText(palette()), group));
    m_quiet->setAccessibleDescription(explanation);
    form->addWidget(group);
    form->addStretch(1);

    syncFromRules();
    connect(m_quiet, &QCheckBox::clicked, this, &NotificationSettingsView::store);
    for (QTimeEdit *edit : {m_from, m_until})
        connect(edit, &QTimeEdit::timeChanged, this, &NotificationSettingsView::store);
    connect(&rules, &NotificationRules::changed, this, &NotificationSettingsView::syncFromRules);
}

void NotificationSettingsView::syncFromRules()
{
    const QuietHours hours = m_rules.quietHours();
    const QSignalBlocker quiet(m_quiet), from(m_from), until(m_until);
    m_quiet->setChecked(hours.enabled);
    m_from->setTime(hours.start);
    m_until->setTime(hours.end);
    m_from->setEnabled(hours.enabled);
    m_until->setEnabled(hours.enabled);
}

void NotificationSettingsView::store()
{
    // The rules tell back what changed, and the form follows (syncFromRules).
    m_rules.setQuietHours({m_quiet->isChecked(), m_from->time(), m_until->time()});
}

namespace {

// The name, the version, what it does, and the notices the catalogue's lists ask to travel
// with it, in a block of their own.
QWidget *aboutPage(QWidget *parent)
{
    auto *page = new QWidget(parent);
    page->setAccessibleName(SettingsView::tr("About Lanternic"));
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->setSpacing(6);
    auto *name = new QLabel(u"Lanternic"_s, page);
    name->setFont(Theme::font(18, QFont::DemiBold));
    layout->addWidget(name);
    auto *version = caption(SettingsView::tr("Version %1").arg(QStringLiteral(LANTERNIC_VERSION)),
                            Theme::secondaryText(page->palette()), page);
    layout->addWidget(version);
    auto *what = new QLabel(
        SettingsView::tr("Watches the public status pages of the services you depend on."), page);
    what->setWordWrap(true);
    layout->addWidget(what);
    layout->addSpacing(8);
    auto *group = new QGroupBox(SettingsView::tr("The catalogue of status pages"), page);
    auto *notices = new QVBoxLayout(group);
    auto *text = new QPlainTextEdit(group);
    text->setReadOnly(true);
    text->setAccessibleName(group->title());
    text->setFont(Theme::font(11));
    text->document()->setDocumentMargin(8);
    text->setPlainText(Catalog::notices().remove(u'`'));
    notices->addWidget(text);
    layout->addWidget(group, 1);
    return page;
}

} // namespace

SettingsView::SettingsView(AppSettings &settings, NotificationRules &rules,
                           LoginItemService &loginItem, GeneralSettingsView::UpdateActions updates,
                           QWidget *parent)
    : QWidget(parent)
{
    installAccessibility();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *tabs = new QTabWidget(this);
    tabs->setDocumentMode(true);
    auto *scroll = new QScrollArea(tabs);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    m_general = new GeneralSettingsView(settings, loginItem, std::move(updates), scroll);
    scroll->setWidget(m_general);
    tabs->addTab(scroll, tr("General"));
    m_notifications = new NotificationSettingsView(rules, tabs);
    tabs->addTab(m_notifications, tr("Notifications"));
    m_advanced = new AdvancedSettingsView(settings, tabs);
    tabs->addTab(m_advanced, tr("Advanced"));
    tabs->addTab(aboutPage(tabs), tr("About"));
    layout->addWidget(tabs);
}

} // namespace lanternic
