#include "config/sourceregistry.h"
#include "platform/loginitem.h"
#include "support/storefixture.h"
#include "ui/catalogpicker.h"
#include "ui/settingsview.h"
#include "ui/tabstops.h"
#include "ui/translations.h"

#include <QAccessible>
#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QTimeEdit>

using namespace lanternic;
using namespace Qt::StringLiterals;

namespace {

// A login-item service that remembers its calls and fails when told to.
class FakeLoginItem : public LoginItemService {
public:
    Status status() const override { return enabled ? Status::enabled : Status::notRegistered; }
    std::optional<QString> registerItem() override
    {
        ++calls;
        if (failure)
            return failure;
        enabled = true;
        return std::nullopt;
    }
    std::optional<QString> unregisterItem() override
    {
        ++calls;
        enabled = false;
        return std::nullopt;
    }

    bool enabled = false;
    std::optional<QString> failure;
    int calls = 0;
};

} // namespace

// The settings window: its bindings to the stored settings, the source list and the
// catalogue, its fit, its Tab order, quiet hours and the login item.
class TestSettings : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // As the app runs in English: its plural forms installed.
    void initTestCase()
    {
        installTranslations(QLocale(QLocale::English),
                            {QStringLiteral(LANTERNIC_BUILD_TRANSLATIONS)}, this);
    }

    void settingsBindings()
    {
        StoreFixture fixture;
        FakeLoginItem login;
        bool automatic = true;
        int checks = 0;
        SettingsView view(
            fixture.settings, fixture.environment.notificationRules, login,
            {[&] { return automatic; }, [&](bool on) { automatic = on; }, [&] { ++checks; }, true});
        view.show();
        GeneralSettingsView *general = view.general();
        auto *editor = general->findChild<QPlainTextEdit *>();
        view.activateWindow();
        QTRY_COMPARE(QApplication::focusWidget(), editor);
        QCOMPARE(editor->toPlainText(), SourceRegistry::defaultText());
        QCOMPARE(fixture.settings.sourcesText(), SourceRegistry::defaultText());

        editor->setPlainText(u"Mine=status.example.com"_s);
        QCOMPARE(fixture.settings.sourcesText(), u"Mine=status.example.com"_s);
        editor->clear();
        QCOMPARE(fixture.settings.sourcesText(), QString());
        view.hide();
        view.show();
        QCOMPARE(fixture.settings.sourcesText(), SourceRegistry::defaultText());
        fixture.settings.setSourcesText(u" "_s);
        view.hide();
        view.show();
        QCOMPARE(fixture.settings.sourcesText(), u" "_s);

        auto *group = general->findChild<QButtonGroup *>();
        QVERIFY(group->button(2)->isChecked());
        group->button(5)->click();
        QCOMPARE(fixture.settings.refreshIntervalMinutes(), 5);
        QVERIFY(!group->button(2)->isChecked());
        // To assistive technology, radio buttons in a group named like its label.
        QAccessibleInterface *five = QAccessible::queryAccessibleInterface(group->button(5));
        QCOMPARE(five->role(), QAccessible::RadioButton);
        QVERIFY(five->state().checked);
        QCOMPARE(five->text(QAccessible::Name), u"5 minutes"_s);
        QCOMPARE(five->parent()->role(), QAccessible::Grouping);
        QCOMPARE(five->parent()->text(QAccessible::Name), u"Refresh interval"_s);

        // Each switch by what it says, as a person finds it.
        const auto box = [general](const QString &name) -> QCheckBox * {
            for (QCheckBox *candidate : general->findChildren<QCheckBox *>()) {
                if (candidate->text() == name || candidate->accessibleName() == name)
                    return candidate;
            }
            return nullptr;
        };
        for (const QString &name :
             {u"Show operational systems"_s, u"Notify me when a service changes"_s,
              u"Check for updates automatically"_s}) {
            QCheckBox *found = box(name);
            QVERIFY2(found, qPrintable(name));
            found->click();
        }
        QCOMPARE(fixture.settings.showOperational(), false);
        QCOMPARE(fixture.settings.notifications(), false);
        QCOMPARE(automatic, false);
        for (QPushButton *button : general->findChildren<QPushButton *>()) {
            if (button->text() == u"Check now"_s)
                button->click();
        }
        QCOMPARE(checks, 1);

        auto *maintenance = view.advanced()->findChild<QCheckBox *>();
        QVERIFY(!maintenance->isChecked());
        maintenance->click();
        QVERIFY(fixture.settings.treatMaintenanceAsOperational());
    }

    // The editor tells what each line became; "Add service…" adds a catalogue entry by keyboard
    // and remembers its page kind, so that no probe is needed.
    void sourceLinesAndTheCatalogue()
    {
        StoreFixture fixture;
        FakeLoginItem login;
        SettingsView view(fixture.settings, fixture.environment.notificationRules, login,
                          {[] { return true; }, [](bool) {}, [] {}, true});
        GeneralSettingsView *general = view.general();
        general->setKinds(&fixture.environment.kinds);
        view.show();
        auto *editor = general->findChild<QPlainTextEdit *>();
        QVERIFY(editor->tabChangesFocus());
        editor->setPlainText(u"nonsense line\nTeam=http://t.example/l.json"_s);
        QCOMPARE(general->annotation(1), u"ignored \u2014 no \u201c=\u201d"_s);
        QCOMPARE(general->annotation(2), u"feed"_s);
        QCOMPARE(editor->accessibleDescription(),
                 u"line 1: ignored \u2014 no \u201c=\u201d\nline 2: Team \u2192 "
                 u"http://t.example/l.json (feed)"_s);

        general->addService();
        auto *picker = general->findChild<CatalogPicker *>();
        QVERIFY(picker);
        QTest::keyClicks(picker->searchField(), u"githubstatus"_s);
        QCOMPARE(picker->list()->count(), 1);
        QTest::keyClick(picker->searchField(), Qt::Key_Return);
        QCOMPARE(fixture.settings.sourcesText(),
                 u"nonsense line\nTeam=http://t.example/l.json\nGitHub=www.githubstatus.com"_s);
        // The line added is selected, where the user looks.
        QCOMPARE(editor->textCursor().selectedText(), u"GitHub=www.githubstatus.com"_s);
        QVERIFY(editor->viewport()->rect().contains(editor->cursorRect()));
        QCOMPARE(fixture.environment.kinds.cache().value(u"www.githubstatus.com"_s),
                 SourceKind::atlassian);

        // Now it is marked as added, and the arrows move through the list from the field.
        general->addService();
        picker = general->findChildren<CatalogPicker *>().last();
        QTest::keyClicks(picker->searchField(), u"git"_s);
        QVERIFY(picker->list()->count() > 3);
        bool marked = false;
        for (int i = 0; i < picker->list()->count(); ++i)
            marked = marked || picker->list()->item(i)->text().endsWith(u"\u2713 added"_s);
        QVERIFY(marked);
        QTest::keyClick(picker->searchField(), Qt::Key_Down);
        QCOMPARE(picker->list()->currentRow(), 1);
    }

    // The form fits the window's 640 × 460 without scrolling, and scrolls where there is less.
    void settingsFitTheirWindow()
    {
        StoreFixture fixture;
        FakeLoginItem login;
        fixture.settings.setSourcesText(SourceRegistry::defaultText());
        SettingsView view(fixture.settings, fixture.environment.notificationRules, login,
                          {[] { return true; }, [](bool) {}, [] {}, false});
        auto *scroll = view.findChild<QScrollArea *>();
        auto *editor = view.general()->findChild<QPlainTextEdit *>();
        int previous = 0;
        for (const auto &[height, scrolls] :
             {std::pair{300, true}, std::pair{460, false}, std::pair{640, false}}) {
            view.resize(640, height);
            view.show();
            QCoreApplication::processEvents();
            QVERIFY2((scroll->verticalScrollBar()->maximum() > 0) == scrolls,
                     qPrintable(QString::number(height)));
            // The source list takes the room the window gives.
            QVERIFY(editor->height() >= previous);
            previous = editor->height();
        }
        QVERIFY(previous > 2 * editor->minimumHeight());
    }

    // Tab through the form in reading order; the interval's segments are one stop, as a group
    // of radio buttons is (the arrows move within it).
    void settingsTabOrder()
    {
        StoreFixture fixture;
        FakeLoginItem login;
        SettingsView view(fixture.settings, fixture.environment.notificationRules, login,
                          {[] { return true; }, [](bool) {}, [] {}, true});
        view.show();
        view.activateWindow();
        QTRY_VERIFY(QApplication::focusWidget());
        const QStringList stops = tabStops();
        QCOMPARE(stops,
                 (QStringList{u"Status sources"_s, u"Add service"_s, u"Show operational systems"_s,
                              u"Notify me when a service changes"_s, u"Launch at login"_s,
                              u"Check now"_s, u"Check for updates automatically"_s, u"1 minute"_s,
                              u"QTabBar"_s}));
        QAbstractButton *oneMinute = view.general()->findChild<QButtonGroup *>()->button(1);
        oneMinute->setFocus();
        QTest::keyClick(oneMinute, Qt::Key_Right);
        QCOMPARE(QApplication::focusWidget()->accessibleName(), u"2 minutes"_s);
        QCOMPARE(fixture.settings.refreshIntervalMinutes(), 2);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
        QCOMPARE(fixture.settings.refreshIntervalMinutes(), 5);
    }

    // Quiet hours: off until switched on, stored as they change, and the times follow.
    void quietHoursPage()
    {
        StoreFixture fixture;
        FakeLoginItem login;
        NotificationRules &rules = fixture.environment.notificationRules;
        SettingsView view(fixture.settings, rules, login,
                          {[] { return true; }, [](bool) {}, [] {}, false});
        auto *page = view.notifications();
        auto *quiet = page->findChild<QCheckBox *>();
        const auto edits = page->findChildren<QTimeEdit *>();
        QVERIFY(!quiet->isChecked() && !edits[0]->isEnabled());
        quiet->click();
        edits[1]->setTime(QTime(6, 30));
        QCOMPARE(rules.quietHours(), (QuietHours{true, QTime(22, 0), QTime(6, 30)}));
        QVERIFY(edits[0]->isEnabled());
        QCOMPARE(NotificationRules(fixture.defaults).quietHours(), rules.quietHours());
        rules.setQuietHours({});
        QVERIFY(!quiet->isChecked() && !edits[1]->isEnabled());
        QCOMPARE(edits[1]->time(), QTime(7, 0));
    }

    void loginItem()
    {
        StoreFixture fixture;
        FakeLoginItem login;
        login.enabled = true;
        SettingsView view(fixture.settings, fixture.environment.notificationRules, login,
                          {[] { return true; }, [](bool) {}, [] {}, true});
        view.show();
        QCheckBox *toggle = nullptr;
        for (QCheckBox *box : view.general()->findChildren<QCheckBox *>()) {
            if (box->text() == u"Launch at login"_s)
                toggle = box;
        }
        QVERIFY(toggle);
        // It starts from the service, and a failure is shown until the next change works.
        QVERIFY(toggle->isChecked());
        toggle->click();
        login.failure = u"Not allowed by the session"_s;
        toggle->click();
        QVERIFY(!toggle->isChecked());
        const auto labels = view.findChildren<QLabel *>();
        auto error = [&] {
            return std::any_of(labels.begin(), labels.end(), [](QLabel *label) {
                return label->isVisibleTo(label->window()) &&
                       label->text() == u"Not allowed by the session"_s;
            });
        };
        QVERIFY(error());
        login.failure.reset();
        toggle->click();
        QVERIFY(toggle->isChecked() && login.enabled && !error());
    }
};

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    TestSettings test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_settings.moc"
