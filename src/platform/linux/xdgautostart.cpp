#include "platform/linux/xdgautostart.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace lanternic {

using namespace Qt::StringLiterals;

XdgAutostart::XdgAutostart(QString entryPath, QString executable)
    : m_entryPath(std::move(entryPath)), m_executable(std::move(executable))
{
}

QString XdgAutostart::defaultEntryPath()
{
    QString config = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (config.isEmpty() || !QDir::isAbsolutePath(config))
        config = QDir::homePath() + u"/.config"_s;
    return config + u"/autostart/lanternic.desktop"_s;
}

LoginItemService::Status XdgAutostart::status() const
{
    QFile entry(m_entryPath);
    if (!entry.open(QIODevice::ReadOnly))
        return Status::notRegistered;
    for (const QByteArray &line : entry.readAll().split('\n')) {
        const qsizetype equals = line.indexOf('=');
        if (equals > 0 && line.left(equals).trimmed() == "Hidden" &&
            line.mid(equals + 1).trimmed() == "true")
            return Status::notRegistered;
    }
    return Status::enabled;
}

std::optional<QString> XdgAutostart::registerItem()
{
    const QString folder = QFileInfo(m_entryPath).absolutePath();
    if (!QDir().mkpath(folder))
        return QCoreApplication::translate("LoginItem", "Could not create the folder %1.")
            .arg(folder);
    // Written whole or not at all, so a half-written entry never starts anything.
    QSaveFile entry(m_entryPath);
    if (!entry.open(QIODevice::WriteOnly))
        return QCoreApplication::translate("LoginItem", "Could not write %1: %2")
            .arg(m_entryPath, entry.errorString());
    QString executable = m_executable;
    executable.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s);
    entry.write(u"[Desktop Entry]\n"
                "Type=Application\n"
                "Name=Lanternic\n"
                "Comment=Status of the services you depend on, in the tray\n"
                "Exec=\"%1\"\n"
                "Icon=lanternic\n"
                "Terminal=false\n"
                "X-GNOME-Autostart-enabled=true\n"_s.arg(executable)
                    .toUtf8());
    if (!entry.commit())
        return QCoreApplication::translate("LoginItem", "Could not write %1: %2")
            .arg(m_entryPath, entry.errorString());
    return std::nullopt;
}

std::optional<QString> XdgAutostart::unregisterItem()
{
    QFile entry(m_entryPath);
    if (entry.exists() && !entry.remove())
        return QCoreApplication::translate("LoginItem", "Could not remove %1: %2")
            .arg(m_entryPath, entry.errorString());
    return std::nullopt;
}

} // namespace lanternic
