#include "cli/passcommand.h"

#include "cli/passreports.h"
#include "config/sourceregistry.h"
#include "model/settingskeys.h"
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
    if (invocation.sourcesText) {
        const QStringList lines = invocation.sourcesText->split(u'\n');
        auto usable = [](const QString &line) {
            const QList<SourceEntry> entries = SourceRegistry::entries(line);
            return !entries.isEmpty() && Target::classify(entries.first().value).has_value();
        };
        if (std::none_of(lines.begin(), lines.end(), usable)) {
            std::fprintf(stderr,
                         "lanternic-check: no usable source in --source \"%s\" (see --help)\n",
                         qUtf8Printable(lines.first()));
            return usageExitCode;
        }
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
            std::fputs(report(store, invocation).constData(), stdout);
            QCoreApplication::exit(exitCodeFor(store.overallHealth()));
        });
        exitCode = QCoreApplication::exec();
    }

    if (invocation.settingsFile) {
        copyLanternicKeys(work, *origin,
                          invocation.sourcesText ? QStringList{SettingsKeys::sources}
                                                 : QStringList());
        origin->sync();
        if (origin->status() != QSettings::NoError) {
            std::fprintf(stderr, "lanternic-check: cannot write the settings %s\n",
                         qUtf8Printable(origin->fileName()));
            return usageExitCode;
        }
    }
    return exitCode;
}

} // namespace lanternic::cli
