#include "app/appdelegate.h"
#include "app/singleinstance.h"
#include "app/updatechecker.h"
#include "environment/appenvironment.h"
#include "platform/loginitem.h"
#include "ui/translations.h"

#include <QApplication>
#include <QLocale>
#include <QSettings>
#include <QStandardPaths>
#include <cstdio>
#include <string_view>

using namespace lanternic;

namespace {

bool hasGraphicalSession()
{
#if defined(Q_OS_LINUX)
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
           qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
#else
    return true;
#endif
}

int noSession(const char *why)
{
    std::fprintf(
        stderr, "lanternic: %s; for a check from the terminal, run lanternic-check instead\n", why);
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    // Answered before anything needs a graphical session.
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--version") {
            std::fputs("lanternic " LANTERNIC_VERSION "\n", stdout);
            return 0;
        }
        if (argument == "--help" || argument == "-h") {
            std::fputs("Usage: lanternic [--help] [--version]\n"
                       "Shows the health of the status pages you watch in the system tray.\n"
                       "Starting it again while it runs opens the running one's panel.\n"
                       "For checks from a terminal, see lanternic-check(1).\n",
                       stdout);
            return 0;
        }
    }
    if (!hasGraphicalSession())
        return noSession("no graphical session (neither DISPLAY nor WAYLAND_DISPLAY is set)");

    QApplication app(argc, argv);
    // Also the display name hosts and screen readers read; set apart, Qt would append it to
    // every window title ("Lanternic Settings — Lanternic").
    QApplication::setApplicationName(QStringLiteral("Lanternic"));
    QApplication::setOrganizationName(QStringLiteral("Lanternic"));
    QApplication::setApplicationVersion(QStringLiteral(LANTERNIC_VERSION));
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setDesktopFileName(QStringLiteral("lanternic"));
    // Beside the executable in a build, under its prefix's share folder wherever it was
    // installed (a package's prefix is not the build's), then the desktop's data folders.
    const QString here = QApplication::applicationDirPath();
    QStringList translationFolders{here + QStringLiteral("/translations"),
                                   here + QStringLiteral("/../share/lanternic/translations")};
    translationFolders += QStandardPaths::locateAll(QStandardPaths::GenericDataLocation,
                                                    QStringLiteral("lanternic/translations"),
                                                    QStandardPaths::LocateDirectory);
    translationFolders.append(QStringLiteral(LANTERNIC_TRANSLATIONS_DIR));
    installTranslations(QLocale::system(), translationFolders, &app);

    SingleInstance instance(SingleInstance::defaultName());
    if (instance.askRunningInstanceToShow())
        return 0;
    instance.listen();

    QSettings defaults;
    AppEnvironment environment(defaults, {}, AppEnvironment::LaunchPass::loop);
    UpdateChecker updates(defaults, environment.session,
                          QUrl(QStringLiteral(LANTERNIC_APPCAST_URL)),
                          QStringLiteral(LANTERNIC_VERSION));
    AppDelegate delegate(environment, updates, LoginItemService::forThisApp());
    QObject::connect(&instance, &SingleInstance::showRequested, &delegate, &AppDelegate::openPanel);
    delegate.launch();
    return QApplication::exec();
}
