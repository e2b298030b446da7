#include "cli/passcommand.h"

#include "config/settingsfile.h"
#include "config/sourceregistry.h"
#include "model/settingskeys.h"
#include "present/passreports.h"
#include "store/appenvironment.h"

#include <QCoreApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <cstdio>

namespace lanternic::cli {

using namespace Qt::StringLiterals;

namespace {

void copyLanternicKeys(QSettings &from, QSettings &to, const QStringList &except = {})
{
    for (const QString &key : from.allKeys()) {
        if (key.startsWith("Lanternic."_L1) && !except.contains(key))
            to.setValue(key, from.value(key));
    }
}

} // namespace

int runPass(const Invocation &invocation)
{
    // Only an empty settings file means the public defaults: a --source list that yields no
    // source is a mistake, and said to be one.
    if (invocation.sourcesText && !SourceRegistry::hasUsableLine(*invocation.sourcesText)) {
        std::fprintf(stderr, "lanternic-check: no usable source in --source \"%s\" (see --help)\n",
                     qUtf8Printable(invocation.sourcesText->section(u'\n', 0, 0)));
        return usageExitCode;
    }

    // The pass runs on a private copy, so the user's own settings are never written; with
    // --settings what it learns is copied back, as the app would have kept it.
    QTemporaryDir workDir;
    std::unique_ptr<QSettings> origin =
        invocation.settingsFile
            ? std::make_unique<QSettings>(*invocation.settingsFile, QSettings::IniFormat)
            : std::make_unique<QSettings>(u"Lanternic"_s, u"Lanternic"_s);
    QSettings work(workDir.filePath(u"settings.ini"_s), QSettings::IniFormat);
    copyLanternicKeys(*origin, work);
    if (!workDir.isValid() || origin->status() != QSettings::NoError) {
        std::fprintf(stderr, "lanternic-check: cannot read the settings %s\n",
                     qUtf8Printable(origin->fileName()));
        return usageExitCode;
    }
    if (invocation.sourcesText)
        work.setValue(SettingsKeys::sources, *invocation.sourcesText);

    int exitCode = usageExitCode;
    {
        AppEnvironment environment(work);
        const LanternicStore &store = *environment.store;
        QObject::connect(&store, &LanternicStore::passFinished, &store, [&] {
            std::fputs(report(store, invocation.report).constData(), stdout);
            // i3blocks reads any status but 0 and 33 (urgent) as its block's failure.
            if (invocation.report.format == Format::i3blocks)
                QCoreApplication::exit(store.overallHealth() == Health::down ? 33 : 0);
            else
                QCoreApplication::exit(exitCodeFor(store.overallHealth()));
        });
        exitCode = QCoreApplication::exec();
    }

    if (invocation.settingsFile) {
        // The history and the kind cache are merged with what another program may have
        // stored meanwhile.
        SettingsFile::update(*origin, [&] {
            QStringList except{SettingsKeys::checkHistory, SettingsKeys::sourceKinds,
                               SettingsKeys::healthLog};
            if (invocation.sourcesText)
                except.append(SettingsKeys::sources);
            copyLanternicKeys(work, *origin, except);
            CheckHistory history = CheckHistory::load(work);
            history.mergeAndSave(*origin);
            if (work.contains(SettingsKeys::healthLog)) {
                HealthLog log = HealthLog::load(work);
                log.merge(HealthLog::load(*origin));
                log.save(*origin);
            }
            SourceKindStore kinds(*origin);
            const QHash<QString, SourceKind> learnt = SourceKindStore(work).cache();
            for (auto it = learnt.constBegin(); it != learnt.constEnd(); ++it) {
                const auto known = kinds.cache().constFind(it.key());
                if (known == kinds.cache().constEnd() || *known != it.value())
                    kinds.record(it.key(), it.value());
            }
        });
        if (origin->status() != QSettings::NoError) {
            std::fprintf(stderr, "lanternic-check: cannot write the settings %s\n",
                         qUtf8Printable(origin->fileName()));
            return usageExitCode;
        }
    }
    return exitCode;
}

} // namespace lanternic::cli
