#include "model/settingskeys.h"

#include <QSettings>

namespace lanternic::SettingsKeys {

QString read(const QSettings &defaults, const Setting<QLatin1StringView> &setting)
{
    const QVariant value = defaults.value(setting.key);
    return value.typeId() == QMetaType::QString ? value.toString() : QString(setting.fallback);
}

int read(const QSettings &defaults, const Setting<int> &setting)
{
    const int value = defaults.value(setting.key).toInt();
    return value == 0 ? setting.fallback : value;
}

bool read(const QSettings &defaults, const Setting<bool> &setting)
{
    const QVariant value = defaults.value(setting.key);
    if (value.typeId() == QMetaType::Bool)
        return value.toBool();
    if (value.typeId() == QMetaType::QString &&
        (value.toString() == "true"_L1 || value.toString() == "false"_L1))
        return value.toString() == "true"_L1;
    return setting.fallback;
}

QTime read(const QSettings &defaults, const Setting<ClockTime> &setting)
{
    const QTime time = QTime::fromString(defaults.value(setting.key).toString(), u"HH:mm"_s);
    return time.isValid() ? time : setting.fallback.time();
}

} // namespace lanternic::SettingsKeys
