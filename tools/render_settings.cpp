// Renders the settings window's form offscreen to PNG files: the source list telling what each
// line became (one line ignored), and "Add service…" searching the catalogue.

#include "platform/loginitem.h"
#include "support/storefixture.h"
#include "ui/catalogpicker.h"
#include "ui/settingsview.h"
#include "ui/translations.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QStyleFactory>
#include <QTabWidget>
#include <QTest>
#include <cstdio>

using namespace lanternic;
using namespace Qt::StringLiterals;

namespace {

class NoLoginItem : public LoginItemService {
public:
    Status status() const override { return Status::notRegistered; }
    std::optional<QString> registerItem() override { return std::nullopt; }
    std::optional<QString> unregisterItem() override { return std::nullopt; }
};

void save(QWidget &widget, const QString &file)
{
    QCoreApplication::processEvents();
    widget.grab().save(file);
    std::printf("%s (%dx%d)\n", qPrintable(file), widget.width(), widget.height());
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    const QString out = argc > 1 ? QString::fromLocal8Bit(argv[1]) : u"shots"_s;
    QDir().mkpath(out);
    StoreFixture fixture;
    fixture.environment.kinds.record(u"www.githubstatus.com"_s, SourceKind::atlassian);
    fixture.settings.setSourcesText(u"GitHub=www.githubstatus.com\nnonsense line\n"
                                    u"Team=http://watcher.example:9317/lanternic.json\n"
                                    u"Fal=status.fal.ai"_s);
    NoLoginItem login;
    SettingsView view(fixture.settings, fixture.environment.notificationRules, login,
                      {[] { return true; }, [](bool) {}, [] {}, false});
    view.general()->setKinds(&fixture.environment.kinds);
    view.resize(640, 460);
    view.show();
    save(view, out + u"/settings-source-lines.png"_s);

    view.general()->addService();
    auto *picker = view.general()->findChild<CatalogPicker *>();
    QTest::keyClicks(picker->searchField(), u"git"_s);
    QTest::keyClick(picker->searchField(), Qt::Key_Down);
    save(*picker, out + u"/settings-add-service.png"_s);
    // Added: the new line in view and selected.
    QTest::keyClick(picker->searchField(), Qt::Key_Return);
    picker->close();
    save(view, out + u"/settings-service-added.png"_s);

    fixture.environment.notificationRules.setQuietHours({true, QTime(22, 30), QTime(7, 0)});
    view.findChild<QTabWidget *>()->setCurrentWidget(view.notifications());
    save(view, out + u"/settings-notifications.png"_s);
    auto *tabs = view.findChild<QTabWidget *>();
    tabs->setCurrentIndex(2);
    save(view, out + u"/settings-advanced.png"_s);
    tabs->setCurrentIndex(3);
    save(view, out + u"/settings-about.png"_s);

    // German, the longest of the shipped languages, in a window made after its translations.
    QObject german;
    installTranslations(QLocale(QLocale::German), {QStringLiteral(LANTERNIC_BUILD_TRANSLATIONS)},
                        &german);
    SettingsView translated(fixture.settings, fixture.environment.notificationRules, login,
                            {[] { return true; }, [](bool) {}, [] {}, false});
    translated.general()->setKinds(&fixture.environment.kinds);
    translated.resize(640, 460);
    translated.show();
    save(translated, out + u"/settings-german.png"_s);
    translated.findChild<QTabWidget *>()->setCurrentWidget(translated.notifications());
    save(translated, out + u"/settings-notifications-german.png"_s);
    return 0;
}
