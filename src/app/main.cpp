#include "app/appdelegate.h"
#include "app/singleinstance.h"
#include "app/updatechecker.h"
#include "platform/loginitem.h"
#include "store/appenvironment.h"

#include <QApplication>
#include <QSettings>
#include <cstdio>

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
    if (!hasGraphicalSession())
        return noSession("no graphical session (neither DISPLAY nor WAYLAND_DISPLAY is set)");

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Lanternic"));
    QApplication::setOrganizationName(QStringLiteral("Lanternic"));
    QApplication::setApplicationVersion(QStringLiteral(LANTERNIC_VERSION));
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setDesktopFileName(QStringLiteral("lanternic"));

    SingleInstance instance(SingleInstance::defaultName());
    if (instance.askRunningInstanceToShow())
        return 0;
    instance.listen();

    QSettings defaults;
    AppEnvironment environment(defaults);
    UpdateChecker updates(defaults, environment.session,
                          QUrl(QStringLiteral(LANTERNIC_APPCAST_URL)),
                          QStringLiteral(LANTERNIC_VERSION));
    AppDelegate delegate(environment, updates, LoginItemService::forThisApp());
    QObject::connect(&instance, &SingleInstance::showRequested, &delegate, &AppDelegate::openPanel);
    delegate.launch();
    return QApplication::exec();
}
