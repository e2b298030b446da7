#include "present/displaytext.h"
#include "scenes.h"
#include "support/fixtures.h"
#include "tabstops.h"
#include "ui/lanternicpane.h"
#include "ui/panetext.h"
#include "ui/translations.h"
#include "ui/widgets/buttons.h"
#include "ui/widgets/symbols.h"
#include "ui/widgets/theme.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QDesktopServices>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>
#include <QToolTip>

using namespace lanternic;
using namespace Qt::StringLiterals;

namespace {

const QDateTime now = QDateTime::fromString(u"2026-11-16T17:00:00Z"_s, Qt::ISODate);

struct Pane {
    explicit Pane(StoreFixture &fixture)
        : pane({fixture.store, *fixture.environment.recorder, fixture.settings, fixture.silence,
                fixture.environment.notificationRules},
               {[] {}, [] {}, [] {}, [this](const QUrl &url) { opened.append(url); }})
    {
        pane.resize(pane.sizeHint());
        pane.show();
        settle();
    }

    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    QList<StatusRowView *> rows() const
    {
        QList<StatusRowView *> visible;
        for (StatusRowView *row : pane.findChildren<StatusRowView *>()) {
            if (row->isVisibleTo(&pane))
                visible.append(row);
        }
        return visible;
    }

    QStringList rowNames() const
    {
        QStringList names;
        for (const StatusRowView *row : rows())
            names.append(row->provider().result.name);
        return names;
    }

    QStringList labels() const
    {
        QStringList texts;
        for (const QLabel *label : pane.findChildren<QLabel *>()) {
            if (label->isVisibleTo(&pane) && !label->text().isEmpty())
                texts.append(label->text());
        }
        return texts;
    }

    QAbstractButton *silencedHeader() const
    {
        for (auto *button : pane.findChildren<QAbstractButton *>()) {
            if (button->isVisibleTo(&pane) && button->accessibleName().startsWith(u"SILENCED"_s))
                return button;
        }
        return nullptr;
    }

    LanternicPane pane;
    QList<QUrl> opened;
};

// The titles of a row's silence menu as it opens, separators as "-".
QStringList menuTitles(StatusRowView *row)
{
    QMenu *menu = row->silenceButton()->menu();
    Q_EMIT menu->aboutToShow();
    QStringList titles;
    for (QAction *action : menu->actions())
        titles.append(action->isSeparator() ? u"-"_s : action->text());
    return titles;
}

QAction *durationAction(QMenu *submenu, SilenceDuration duration)
{
    for (QAction *action : submenu->actions()) {
        if (action->text() == label(duration))
            return action;
    }
    return nullptr;
}

DisplayProvider providerWith(QList<ComponentStatus> components)
{
    SourceResult result;
    result.id = u"s"_s;
    result.name = u"Svc"_s;
    result.health = Health::down;
    result.components = std::move(components);
    return {result, Health::down, u"detail"_s};
}

} // namespace

// Stands in for the browser.
class UrlRecorder : public QObject {
    Q_OBJECT

public:
    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl &url) { opened.append(url); }
};

class TestPane : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // As the app runs in English: its plural forms installed.
    void initTestCase()
    {
        installTranslations(QLocale(QLocale::English),
                            {QStringLiteral(LANTERNIC_BUILD_TRANSLATIONS)}, this);
    }

    void visibleRowsFollowShowOperational()
    {
        StoreFixture fixture;
        Scenes::mixed(fixture);
        Pane view(fixture);
        QCOMPARE(view.rowNames(), (QStringList{u"Cloudflare & Co"_s, u"Datadog EU"_s, u"GitHub"_s,
                                               u"Internal status"_s, u"Linear"_s, u"OpenAI"_s}));
        fixture.settings.setShowOperational(false);
        Pane::settle();
        QCOMPARE(view.rowNames(),
                 (QStringList{u"Cloudflare & Co"_s, u"Datadog EU"_s, u"Internal status"_s}));
    }

    void nothingToReport()
    {
        StoreFixture fixture;
        Scenes::allOperational(fixture);
        fixture.settings.setShowOperational(false);
        Pane view(fixture);
        QVERIFY(view.rows().isEmpty());
        QVERIFY(view.labels().contains(u"Nothing to report \u2014 all operational"_s));
        QVERIFY(!view.silencedHeader());
    }

    void beforeAnyCheck()
    {
        StoreFixture fixture;
        fixture.settings.setSourcesText(u"Broken=no host at all"_s);
        Pane view(fixture);
        QVERIFY(view.labels().contains(u"Never updated"_s));
        QCOMPARE(view.rows().size(), 7);
        QCOMPARE(view.rows().first()->provider().detail, u"Checking\u2026"_s);
        fixture.store.setOffline(true);
        view.settle();
        QVERIFY(view.labels().contains(u"Offline \u00b7 Never updated"_s));
    }

    void silenceMenuKeepsTwoHundred()
    {
        // Affected components come first, and count towards the 200 too.
        QList<ComponentStatus> components(
            230, {u"s::ok"_s, u"OK"_s, Health::operational, u"operational"_s});
        components.append(
            QList<ComponentStatus>(250, {u"s::x"_s, u"X"_s, Health::down, u"down"_s}));
        const auto menu =
            PaneText::silenceMenu(providerWith(components), [](const QString &) { return false; });
        QCOMPARE(menu.affected.size(), 200);
        QVERIFY(menu.operational.isEmpty());
        QCOMPARE(menu.othersText(), u"\u2026 (and 280 others)"_s);
    }

    void rowMenusShowFeedTextAsIs()
    {
        StoreFixture fixture;
        Scenes::mixed(fixture);
        Pane view(fixture);
        StatusRowView *cloudflare = view.rows().first();
        QCOMPARE(menuTitles(cloudflare),
                 (QStringList{u"Silence Cloudflare && Co (ALL)"_s, u"-"_s,
                              u"Silence Cloudflare && Co - DNS [partial outage]"_s,
                              u"Silence Cloudflare && Co - CDN <b>edge</b> [degraded]"_s, u"-"_s,
                              u"Silence Cloudflare && Co - WAF [operational]"_s, u"-"_s,
                              u"Notify me"_s}));
        StatusRowView *github = view.rows().at(2);
        QCOMPARE(menuTitles(github), (QStringList{u"Silence GitHub (ALL)"_s, u"-"_s,
                                                  u"Silence GitHub - API Requests [operational]"_s,
                                                  u"-"_s, u"Notify me"_s}));
        QVERIFY(cloudflare->toolTip().contains(u"https://status.example.com/1"_s));
    }

    void silencingFromTheMenuTakesEffectAtOnce()
    {
        StoreFixture fixture;
        Scenes::mixed(fixture);
        Pane view(fixture);
        StatusRowView *datadog = view.rows().at(1);
        QCOMPARE(datadog->provider().result.name, u"Datadog EU"_s);
        const QString id = datadog->provider().result.id;
        menuTitles(datadog);
        QMenu *whole = datadog->silenceButton()->menu()->actions().first()->menu();
        durationAction(whole, SilenceDuration::untilResolved)->trigger();
        Pane::settle();
        QVERIFY(!view.rowNames().contains(u"Datadog EU"_s));
        QVERIFY(view.silencedHeader());
        QCOMPARE(view.silencedHeader()->accessibleName(), u"SILENCED 3"_s);
        QCOMPARE(fixture.silence.entries().value(id), SilenceUntil::resolved());
        QCOMPARE(fixture.store.summaryText(), u"1 degraded, 1 unknown"_s);
    }

    // "Notify me": the source's rule, then one per affected component, which falls back to
    // its source's until it has its own; the pause in the footer comes and goes.
    void notifyMeAndPause()
    {
        StoreFixture fixture;
        Scenes::mixed(fixture);
        Pane view(fixture);
        StatusRowView *cloudflare = view.rows().first();
        const QString id = cloudflare->provider().result.id;
        menuTitles(cloudflare);
        QMenu *notify = cloudflare->silenceButton()->menu()->actions().last()->menu();
        const auto titles = [](QMenu *menu) {
            QStringList texts;
            for (QAction *action : menu->actions())
                texts.append(action->isSeparator() ? u"-"_s
                             : action->isChecked() ? u"(x) "_s + action->text()
                                                   : action->text());
            return texts;
        };
        QCOMPARE(titles(notify), (QStringList{u"(x) All changes"_s, u"Outages only"_s, u"Never"_s,
                                              u"-"_s, u"DNS"_s, u"CDN <b>edge</b>"_s}));
        notify->actions().at(1)->trigger();
        QCOMPARE(fixture.environment.notificationRules.rule(id), NotifyRule::outagesOnly);
        menuTitles(cloudflare);
        notify = cloudflare->silenceButton()->menu()->actions().last()->menu();
        QMenu *dns = notify->actions().at(4)->menu();
        QCOMPARE(titles(dns), (QStringList{u"All changes"_s, u"(x) Outages only"_s, u"Never"_s}));
        dns->actions().at(2)->trigger();
        QCOMPARE(fixture.environment.notificationRules.entries().size(), 2);

        MenuActionRow *pause = nullptr;
        for (auto *row : view.pane.findChildren<MenuActionRow *>()) {
            if (row->text().startsWith(u"Pause"_s))
                pause = row;
        }
        QVERIFY(pause);
        QCOMPARE(pause->text(), u"Pause notifications for 1 hour"_s);
        pause->click();
        QCOMPARE(fixture.environment.notificationRules.pausedUntil(),
                 fixture.store.now().addSecs(3600));
        QVERIFY(pause->text().startsWith(u"Resume notifications (paused until "_s));
        pause->click();
        QVERIFY(!fixture.environment.notificationRules.isMuted(fixture.store.now()));
    }

    void silencedSectionTogglesAndUnmutes()
    {
        StoreFixture fixture;
        Scenes::mixed(fixture);
        Pane view(fixture);
        QVERIFY(view.pane.findChildren<SilencedRowView *>().isEmpty());
        view.silencedHeader()->click();
        Pane::settle();
        QVERIFY(view.pane.isSilencedExpanded());
        const auto silenced = view.pane.findChildren<SilencedRowView *>();
        QCOMPARE(silenced.size(), 2);
        QCOMPARE(silenced[0]->timeLeft(), u"forever"_s);
        QCOMPARE(silenced[1]->timeLeft(), u"1h 54m left"_s);

        auto *unmute = silenced[1]->findChild<QAbstractButton *>();
        QCOMPARE(unmute->text(), u"Unmute"_s);
        unmute->click();
        Pane::settle();
        QCOMPARE(view.pane.findChildren<SilencedRowView *>().size(), 1);
        QCOMPARE(view.rows().at(2)->provider().health, Health::down);

        view.silencedHeader()->click();
        Pane::settle();
        QVERIFY(view.pane.findChildren<SilencedRowView *>().isEmpty());
    }

    void heightRule()
    {
        QCOMPARE(LanternicPane::paneHeight(0, 1000.0), 1);

        StoreFixture forty;
        Scenes::manyRows(forty, 40);
        Pane large(forty);
        const int screenHeight = QGuiApplication::primaryScreen()->geometry().height();
        QVERIFY(large.pane.contentHeight() > screenHeight);
        QCOMPARE(large.pane.sizeHint().height(), qRound(0.7 * screenHeight));

        // The scroll bar leaves the column its width, and each opening starts at the top.
        auto *area = large.pane.findChild<QScrollArea *>();
        QCOMPARE(area->viewport()->width(), LanternicPane::columnWidth);
        QScrollBar *bar = nullptr;
        for (auto *candidate : large.pane.findChildren<QScrollBar *>()) {
            if (candidate->accessibleName() == u"Scroll"_s)
                bar = candidate;
        }
        QVERIFY(bar);
        bar->setValue(bar->maximum());
        QCOMPARE(area->verticalScrollBar()->value(), bar->maximum());
        QVERIFY(bar->isVisible());
        large.pane.hide();
        large.pane.show();
        QCOMPARE(area->verticalScrollBar()->value(), 0);

        // A short list fits whole between the header and the footer, its silenced section open.
        StoreFixture mixed;
        Scenes::mixed(mixed);
        Pane small(mixed);
        small.silencedHeader()->click();
        Pane::settle();
        small.pane.resize(small.pane.sizeHint());
        Pane::settle();
        QCOMPARE(small.pane.findChild<QScrollArea *>()->verticalScrollBar()->maximum(), 0);
    }

    void followsTheDesktopTheme()
    {
        StoreFixture fixture;
        Scenes::mixed(fixture);
        Pane view(fixture);
        const QPalette light = QApplication::palette();
        QPalette dark = light;
        dark.setColor(QPalette::Window, QColor(0x2b, 0x2b, 0x2e));
        dark.setColor(QPalette::WindowText, QColor(0xec, 0xec, 0xee));
        QApplication::setPalette(dark);
        Pane::settle();
        // Every label, the ones tinted by hand included, is drawn in a colour of the new theme.
        for (QLabel *label : view.pane.findChildren<QLabel *>()) {
            if (!label->isVisibleTo(&view.pane) || label->text().isEmpty())
                continue;
            QColor text = label->palette().color(QPalette::WindowText);
            QVERIFY2(text.lightness() > 128, qPrintable(label->text()));
        }
        QApplication::setPalette(light);
    }

    // Rows are updated in place: an expanded row stays expanded, a focused control keeps focus,
    // and the times in an expansion move on.
    void incidentsExpandAndStayThroughAPass()
    {
        StoreFixture fixture;
        Scenes::incidents(fixture);
        Pane view(fixture);
        const auto row = [&](const QString &name) {
            for (StatusRowView *row : view.rows()) {
                if (row->provider().result.name == name)
                    return row;
            }
            return static_cast<StatusRowView *>(nullptr);
        };
        StatusRowView *github = row(u"GitHub"_s);
        QVERIFY(row(u"Claude"_s)->newsButton()->isVisibleTo(github));
        QVERIFY(row(u"Linear"_s)->newsButton()->toolTip().contains(u"History"_s));
        QVERIFY(!view.labels().contains(u"Investigating \u00b7 updated 12 min ago"_s));
        github->newsButton()->click();
        Pane::settle();
        QVERIFY(view.labels().contains(u"Investigating \u00b7 updated 12 min ago"_s));
        row(u"Claude"_s)->setFocus();

        fixture.now = fixture.now.addSecs(3 * 60);
        fixture.runPass();
        Pane::settle();
        QCOMPARE(row(u"GitHub"_s), github);
        QVERIFY(github->isExpanded());
        QCOMPARE(QApplication::focusWidget(), row(u"Claude"_s));
        QVERIFY(view.labels().contains(u"Investigating \u00b7 updated 15 min ago"_s));
        // The link opens the incident.
        for (auto *button : github->findChildren<QAbstractButton *>()) {
            if (button->text() == u"Open incident"_s)
                button->click();
        }
        QCOMPARE(view.opened, QList<QUrl>{QUrl(u"https://www.githubstatus.com/incidents/p1"_s)});
    }

    // The expansion tells the last seven days: a bar with a text equivalent, the uptime and the
    // last troubles, from the health log the passes keep.
    void timelineAndUptime()
    {
        StoreFixture fixture;
        fixture.addSource(u"GitHub"_s, "operational");
        fixture.runPass();
        for (const QByteArray health : {"down", "operational"}) {
            fixture.now = fixture.now.addSecs(90 * 60);
            fixture.server.route("/feed0.json", {200, relayFeed(health), {}});
            fixture.runPass();
        }
        fixture.now = fixture.now.addSecs(60 * 60);
        Pane view(fixture);
        StatusRowView *github = view.rows().first();
        github->setExpanded(true);
        Pane::settle();
        QVERIFY(
            view.labels().contains(u"Uptime 24 h 62.5 % \u00b7 7 d 62.5 % \u00b7 30 d 62.5 %"_s));
        const auto troubles = view.labels().filter(u"Down \u00b7 "_s);
        QCOMPARE(troubles.size(), 1);
        QVERIFY(troubles.first().endsWith(u"(1 h 30 min)"_s));

        auto *bar = github->findChild<TimelineBar *>();
        QCOMPARE(bar->accessibleName(), u"Last 7 days: 62.5 % operational, 1 stretch of trouble"_s);
        QCOMPARE(bar->stretches().size(), 4); // not yet watched, then three readings
        QVERIFY(!bar->stretches().first().health);
        // Focus starts on the newest stretch; the one before it was the trouble.
        bar->setFocus();
        QTest::keyClick(bar, Qt::Key_Left);
        QVERIFY2(bar->accessibleDescription().endsWith(u", down"_s),
                 qPrintable(bar->accessibleDescription()));
    }

    // The panel from the keyboard: focus on the first row, the arrows between rows (the focused
    // row shows its silence button), → and ← for the details, Enter for the page.
    void keyboard()
    {
        StoreFixture fixture;
        Scenes::incidents(fixture);
        Pane view(fixture);
        view.pane.activateWindow();
        const QList<StatusRowView *> rows = view.rows();
        QTRY_COMPARE(QApplication::focusWidget(), rows.first());
        QTest::keyClick(rows.first(), Qt::Key_Down);
        QCOMPARE(QApplication::focusWidget(), rows.at(1));
        QVERIFY(rows.at(1)->silenceButton()->isVisible());
        QVERIFY(!rows.first()->silenceButton()->isVisible());
        QTest::keyClick(rows.at(1), Qt::Key_Right);
        QVERIFY(rows.at(1)->isExpanded());
        QTest::keyClick(rows.at(1), Qt::Key_Left);
        QVERIFY(!rows.at(1)->isExpanded());
        QTest::keyClick(rows.at(1), Qt::Key_Return);
        QCOMPARE(view.opened, QList<QUrl>{rows.at(1)->provider().result.url->url()});
        QTest::keyClick(rows.at(1), Qt::Key_Up);
        QCOMPARE(QApplication::focusWidget(), rows.first());

        // What a screen reader reads: plain text, and a sparkline named from what it shows.
        for (const StatusRowView *row : rows) {
            QVERIFY(!row->accessibleDescription().contains(u'<'));
            QVERIFY(row->accessibleDescription().startsWith(u"https://status.example.com/"_s));
            QCOMPARE(row->findChild<HistorySparkline *>()->accessibleName(),
                     u"History: 1 "_s + label(row->provider().health).toLower());
        }

        // A list of the rows shown, each an item whose default action opens its page.
        QAccessibleInterface *list =
            QAccessible::queryAccessibleInterface(view.pane.findChild<RowListView *>());
        QCOMPARE(list->role(), QAccessible::List);
        QCOMPARE(list->childCount(), rows.size());
        QAccessibleInterface *third = list->child(2);
        QCOMPARE(third->role(), QAccessible::ListItem);
        QCOMPARE(third->text(QAccessible::Name), rows.at(2)->accessibleName());
        QCOMPARE(list->indexOfChild(third), 2);
        QCOMPARE(third->parent()->object(), list->object());
        QVERIFY(third->state().focusable);
        QAccessibleActionInterface *actions = third->actionInterface();
        QCOMPARE(actions->actionNames().first(), QAccessibleActionInterface::pressAction());
        QCOMPARE(actions->localizedActionDescription(QAccessibleActionInterface::pressAction()),
                 u"Open status page"_s);
        actions->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(view.opened.last(), rows.at(2)->provider().result.url->url());
        const auto frames = view.pane.findChildren<QFrame *>();
        QVERIFY(std::any_of(frames.begin(), frames.end(), [](QFrame *frame) {
            return QAccessible::queryAccessibleInterface(frame)->role() == QAccessible::Separator;
        }));
    }

    // An expanded row tells its components in trouble with their states; the 7-day bar has
    // its days' names and answers its own tooltip, never the row's over it.
    void expandedRowTellsItsComponents()
    {
        StoreFixture fixture;
        Scenes::incidents(fixture);
        Pane view(fixture);
        StatusRowView *github = view.rows().at(1);
        QCOMPARE(github->provider().result.name, u"GitHub"_s);
        github->setExpanded(true);
        Pane::settle();
        QStringList told;
        for (const ElidedLabel *label : github->findChildren<ElidedLabel *>()) {
            if (label->isVisibleTo(github))
                told.append(label->accessibleName());
        }
        QVERIFY(told.contains(u"Packages \u2014 degraded"_s));
        QVERIFY(told.contains(u"Pages \u2014 degraded"_s));

        auto *bar = github->findChild<TimelineBar *>();
        QVERIFY(bar->height() > TimelineBar::barHeight);
        const QPoint at(bar->width() - 2, 5);
        QHelpEvent tip(QEvent::ToolTip, at, bar->mapToGlobal(at));
        QApplication::sendEvent(bar, &tip);
        QTRY_COMPARE(QToolTip::text(),
                     TimelineBar::describe(bar->stretches().last(), fixture.store.now()));
    }

    // Planned work alone shows the maintenance symbol and says until when, not a warning.
    void maintenanceAloneLooksPlanned()
    {
        StoreFixture fixture;
        Scenes::maintenance(fixture);
        Pane view(fixture);
        const QList<StatusRowView *> rows = view.rows();
        QCOMPARE(view.rowNames(), (QStringList{u"Cloudflare"_s, u"Fastly"_s, u"GitHub"_s}));
        // The symbol tells what the detail tells, where the others tell their health.
        QCOMPARE(rows.at(1)->findChild<QLabel *>()->accessibleName(),
                 rows.at(1)->provider().detail);
        QCOMPARE(rows.at(0)->findChild<QLabel *>()->accessibleName(), u"Operational"_s);
    }

    // In every shipped language, with long names, details, incident titles and a pause,
    // nothing is laid out wider than the panel, every row expanded.
    void fitsInEveryLanguage_data()
    {
        QTest::addColumn<QString>("locale");
        for (const char *locale : {"en_US", "de_DE", "fr_FR", "es_ES"})
            QTest::newRow(locale) << QString::fromLatin1(locale);
    }

    void fitsInEveryLanguage()
    {
        QFETCH(QString, locale);
        QObject translators;
        installTranslations(QLocale(locale), {QStringLiteral(LANTERNIC_BUILD_TRANSLATIONS)},
                            &translators);
        StoreFixture fixture;
        Scenes::longTexts(fixture);
        Pane view(fixture);
        for (StatusRowView *row : view.rows())
            QTest::keyClick(row, Qt::Key_Right);
        Pane::settle();
        const int width = view.pane.width();
        QCOMPARE(width, LanternicPane::columnWidth);
        for (const QWidget *child : view.pane.findChildren<QWidget *>()) {
            if (!child->isVisibleTo(&view.pane) || child->isWindow())
                continue;
            const QRect box(child->mapTo(&view.pane, QPoint(0, 0)), child->size());
            const auto *label = qobject_cast<const QLabel *>(child);
            QVERIFY2(box.left() >= 0 && box.right() < width,
                     qPrintable(u"%1 \"%2\" at %3 to %4"_s
                                    .arg(QString::fromLatin1(child->metaObject()->className()),
                                         label ? label->text() : child->accessibleName())
                                    .arg(box.left())
                                    .arg(box.right())));
        }
    }

    // Past the rows, every Tab stop shows its focus and acts on Enter; silencing or unmuting
    // from the keyboard hands the focus to the neighbour, or to the header when none is left.
    void buttonsAndFocusFromTheKeyboard()
    {
        StoreFixture fixture;
        Scenes::mixed(fixture);
        Pane view(fixture);
        view.pane.activateWindow();
        QTRY_VERIFY(QApplication::focusWidget());
        QList<QAbstractButton *> stops{view.pane.findChild<RefreshButton *>(),
                                       view.silencedHeader()};
        for (auto *row : view.pane.findChildren<MenuActionRow *>())
            stops.append(row);
        for (QAbstractButton *stop : stops) {
            view.rows().first()->setFocus();
            const QImage unfocused = stop->grab().toImage();
            stop->setFocus();
            QVERIFY2(stop->grab().toImage() != unfocused, qPrintable(stop->accessibleName()));
        }
        QTest::keyClick(view.silencedHeader(), Qt::Key_Return);
        QTRY_VERIFY(view.pane.isSilencedExpanded());
        QTest::keyClick(stops[2], Qt::Key_Enter, Qt::KeypadModifier);
        QTRY_VERIFY(fixture.environment.notificationRules.isPaused(fixture.store.now()));

        // The last row silenced: the focus goes to the one above, which is last now.
        StatusRowView *last = view.rows().last();
        last->setFocus();
        fixture.silence.silence(last->provider().result.id, SilenceDuration::oneDay,
                                fixture.store.now());
        Pane::settle();
        QCOMPARE(QApplication::focusWidget(), view.rows().last());

        // Unmuted from the keyboard: the next item's Unmute, then the header, then the refresh
        // button once nothing is silenced.
        const auto unmuteButtons = [&] {
            QList<QAbstractButton *> buttons;
            for (auto *item : view.pane.findChildren<SilencedRowView *>()) {
                if (item->isVisibleTo(&view.pane))
                    buttons.append(item->findChild<QAbstractButton *>());
            }
            return buttons;
        };
        QCOMPARE(unmuteButtons().size(), 3);
        unmuteButtons().first()->setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QTRY_COMPARE(unmuteButtons().size(), 2);
        QCOMPARE(QApplication::focusWidget(), unmuteButtons().first());
        for (int left = 2; left > 0; --left) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
            QTRY_COMPARE(unmuteButtons().size(), left - 1);
        }
        QCOMPARE(QApplication::focusWidget(), view.pane.findChild<RefreshButton *>());
    }

    // Tab: the header's refresh, each row, the silenced section, the footer, in that order.
    void tabOrder()
    {
        StoreFixture fixture;
        Scenes::mixed(fixture);
        Pane view(fixture);
        view.pane.activateWindow();
        QTRY_VERIFY(QApplication::focusWidget());
        QStringList stops = tabStops();
        for (QString &stop : stops)
            stop = stop.section(u',', 0, 0);
        QCOMPARE(stops, (QStringList{u"Cloudflare & Co"_s, u"Datadog EU"_s, u"GitHub"_s,
                                     u"Internal status"_s, u"Linear"_s, u"OpenAI"_s,
                                     u"SILENCED 2"_s, u"Pause notifications for 1 hour"_s,
                                     u"Settings\u2026"_s, u"Quit Lanternic"_s, u"Refresh"_s}));
    }

    void rowsOpenOnlyTheirPage()
    {
        StoreFixture fixture;
        Scenes::mixed(fixture);
        Pane view(fixture);
        StatusRowView *linear = view.rows().at(4);
        QTest::mouseClick(linear, Qt::LeftButton, {}, QPoint(30, 10));
        QCOMPARE(view.opened, QList<QUrl>{QUrl(u"https://status.example.com/4"_s)});
        QVERIFY(view.rows().at(3)->toolTip().contains(u"connect"_s, Qt::CaseInsensitive));
    }

    void sparklineShowsTheNewestEighteen()
    {
        QList<HealthTick> ticks;
        for (int i = 0; i < 40; ++i)
            ticks.append({now.addSecs(i), i == 39   ? u"sideways"_s
                                          : i >= 22 ? u"down"_s
                                                    : u"operational"_s});
        HistorySparkline sparkline(ticks);
        QList<Health> expected(17, Health::down);
        expected.append(Health::unknown);
        QCOMPARE(sparkline.bars(), expected);
        QCOMPARE(HistorySparkline(ticks.mid(0, 5)).bars().size(), 5);
    }

    void onlyWebLinksOpen()
    {
        UrlRecorder recorder;
        for (const char *scheme : {"http", "https", "file", "javascript", "mailto"})
            QDesktopServices::setUrlHandler(QString::fromLatin1(scheme), &recorder, "open");
        for (const char *url : {"https://status.example.com", "http://x.example/a",
                                "file:///etc/passwd", "javascript:alert(1)", "mailto:a@b.c"})
            openWebUrl(QUrl(QString::fromLatin1(url)));
        QCOMPARE(recorder.opened, (QList<QUrl>{QUrl(u"https://status.example.com"_s),
                                               QUrl(u"http://x.example/a"_s)}));
    }

    void feedTextStaysPlain()
    {
        QCOMPARE(Theme::plainToolTip({u"<b>x</b> & y"_s, QString(), u"a\nb"_s}),
                 u"<p style='white-space:pre'>&lt;b&gt;x&lt;/b&gt; &amp; y<br>a b</p>"_s);
        QCOMPARE(Theme::menuText(u"R&D"_s), u"R&&D"_s);
    }
};

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    TestPane test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_pane.moc"
