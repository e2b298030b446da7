#include "cli/passcommand.h"

#include "config/settingsfile.h"
#include "config/sourceregistry.h"
#include "environment/appenvironment.h"
#include "model/settingskeys.h"
#include "present/passreports.h"
#include "store/silencestore.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QSettings>
#include <QTemporaryDir>
#include <cstdio>

namespace lanternic::cli {

using namespace Qt::StringLiterals;

namespace {

// The private copy is a file of this process alone, kept as Qt's binary stream of the values:
// Qt writes its INI text at some 450 instructions a character, and a pass writes the copy
// whole at least once.
QSettings::Format scratchFormat()
{
    static const QSettings::Format format = QSettings::registerFormat(
        u"scratch"_s,
        [](QIODevice &device, QSettings::SettingsMap &map) {
            if (device.atEnd())
                return true;
            QDataStream in(&device);
            in >> map;
            return in.status() == QDataStream::Ok;
        },
        [](QIODevice &device, const QSettings::SettingsMap &map) {
            QDataStream out(&device);
            out << map;
            return out.status() == QDataStream::Ok;
        });
    return format;
}

QVariantHash lanternicKeys(QSettings &settings)
{
    QVariantHash values;
    for (const QString &key : settings.allKeys()) {
        if (key.startsWith("Lanternic."_L1))
            values.insert(key, settings.value(key));
    }
    return values;
}

SilenceStore::Entries silencesIn(const QVariant &stored)
{
    return SilenceStore::decode(stored.toByteArray()).value_or(SilenceStore::Entries());
}

// Hands back to origin what the pass changed in its copy work (read being what was copied),
// merged with what another program may have stored meanwhile.
void handBack(const QVariantHash &read, QSettings &work, QSettings &origin)
{
    // Only what the pass changed goes back, merged with what another program may have
    // stored meanwhile: the history, the log and the kind cache entry by entry, the
    // silences by id, any other key whole.
    const QStringList merged{SettingsKeys::checkHistory, SettingsKeys::sourceKinds,
                             SettingsKeys::healthLog, SettingsKeys::silences,
                             SettingsKeys::sources};
    const QVariantHash written = lanternicKeys(work);
    SettingsFile::update(origin, [&] {
        for (auto it = written.constBegin(); it != written.constEnd(); ++it) {
            if (!merged.contains(it.key()) && read.value(it.key()) != it.value())
                origin.setValue(it.key(), it.value());
        }
        CheckHistory history = CheckHistory::load(work);
        history.mergeAndSave(origin);
        const std::optional<HealthLog> stored = HealthLog::load(origin);
        if (work.contains(SettingsKeys::healthLog) && stored) {
            HealthLog log = HealthLog::load(work).value_or(HealthLog());
            log.merge(*stored);
            log.save(origin);
        }
        SourceKindStore kinds(origin);
        const QHash<QString, SourceKind> learnt = SourceKindStore(work).cache();
        for (auto it = learnt.constBegin(); it != learnt.constEnd(); ++it) {
            const auto known = kinds.cache().constFind(it.key());
            if (known == kinds.cache().constEnd() || *known != it.value())
                kinds.record(it.key(), it.value());
        }
    });
    const SilenceStore::Entries before = silencesIn(read.value(SettingsKeys::silences));
    const SilenceStore::Entries after = silencesIn(written.value(SettingsKeys::silences));
    if (before != after)
        SilenceStore(origin).apply(before, after);
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
    QSettings work(workDir.filePath(u"settings.scratch"_s), scratchFormat());
    const QVariantHash read = lanternicKeys(*origin);
    for (auto it = read.constBegin(); it != read.constEnd(); ++it)
        work.setValue(it.key(), it.value());
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
        handBack(read, work, *origin);
        if (origin->status() != QSettings::NoError) {
            std::fprintf(stderr, "lanternic-check: cannot write the settings %s\n",
                         qUtf8Printable(origin->fileName()));
            return usageExitCode;
        }
    }
    return exitCode;
}

} // namespace lanternic::cli
