// Renders the panel's content offscreen to PNG files, one per situation, for looking at.

#include "ui/lanternicpane.h"
#include "ui/scenes.h"
#include "ui/translations.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QLocale>
#include <QPalette>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyleFactory>
#include <cstdio>

using namespace lanternic;
using namespace Qt::StringLiterals;

namespace {

QPalette darkPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0x2b, 0x2b, 0x2e));
    palette.setColor(QPalette::WindowText, QColor(0xec, 0xec, 0xee));
    palette.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x20));
    palette.setColor(QPalette::Text, QColor(0xec, 0xec, 0xee));
    palette.setColor(QPalette::Button, QColor(0x3a, 0x3a, 0x3d));
    palette.setColor(QPalette::ButtonText, QColor(0xec, 0xec, 0xee));
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0x8b, 0xff));
    palette.setColor(QPalette::Link, QColor(0x5a, 0xa0, 0xff));
    return palette;
}

// What to open before the picture is taken.
enum Open { nothing = 0, silenced = 1, news = 2 };

void render(const QString &file, void (*scene)(StoreFixture &), int open)
{
    StoreFixture fixture;
    scene(fixture);
    const AppEnvironment &environment = fixture.environment;
    LanternicPane pane({fixture.store, *environment.recorder, fixture.settings, fixture.silence,
                        fixture.environment.notificationRules},
                       {[] {}, [] {}, [] {}, [](const QUrl &) {}});
    pane.setAutoFillBackground(true);
    QCoreApplication::processEvents();
    if (open & silenced) {
        for (auto *button : pane.findChildren<QAbstractButton *>()) {
            if (button->accessibleName().startsWith(u"SILENCED"_s))
                button->click();
        }
        QCoreApplication::processEvents();
    }
    pane.resize(pane.sizeHint());
    pane.show();
    QCoreApplication::processEvents();
    // Shown, the pane measures its content again, as the panel window follows it.
    pane.resize(pane.sizeHint());
    QCoreApplication::processEvents();
    if (open & news) {
        for (auto *row : pane.findChildren<StatusRowView *>())
            row->setExpanded(true);
        // The rows' new height reaches the pane a turn later, as the panel window sees it.
        for (int turn = 0; turn < 3; ++turn)
            QCoreApplication::processEvents();
        pane.resize(pane.sizeHint());
        QCoreApplication::processEvents();
    }
    // A long list is caught mid-scroll, its bar showing.
    QScrollBar *bar = pane.findChild<QScrollArea *>()->verticalScrollBar();
    bar->setValue(bar->maximum() / 3);
    QCoreApplication::processEvents();
    pane.grab().save(file);
    std::printf("%s (%dx%d)\n", qPrintable(file), pane.width(), pane.height());
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    const QString out = argc > 1 ? QString::fromLocal8Bit(argv[1]) : u"shots"_s;
    QDir().mkpath(out);
    render(out + u"/pane-all-operational.png"_s, Scenes::allOperational, nothing);
    render(out + u"/pane-mixed-silenced-open.png"_s, Scenes::mixed, silenced);
    render(
        out + u"/pane-40-rows.png"_s, [](StoreFixture &f) { Scenes::manyRows(f, 40); }, nothing);
    render(out + u"/pane-incidents.png"_s, Scenes::incidents, nothing);
    render(out + u"/pane-incidents-expanded.png"_s, Scenes::incidents, news);
    render(out + u"/pane-maintenance-expanded.png"_s, Scenes::maintenance, news);
    render(out + u"/pane-week-expanded.png"_s, Scenes::week, news);
    // Long texts in every shipped language, from the translations the build compiled.
    for (const char *locale : {"en_US", "de_DE", "fr_FR", "es_ES"}) {
        QObject translators;
        installTranslations(QLocale(QString::fromLatin1(locale)),
                            {QStringLiteral(LANTERNIC_BUILD_TRANSLATIONS)}, &translators);
        render(out + u"/pane-long-%1.png"_s.arg(QString::fromLatin1(locale).left(2)),
               Scenes::longTexts, news);
    }
    QApplication::setPalette(darkPalette());
    render(out + u"/pane-dark.png"_s, Scenes::mixed, silenced);
    render(out + u"/pane-incidents-dark.png"_s, Scenes::incidents, news);
    return 0;
}
