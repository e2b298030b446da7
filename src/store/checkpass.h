#pragma once

#include "model/sourceresult.h"
#include "sources/sourcecheck.h"

#include <QList>
#include <QObject>
#include <QString>
#include <functional>
#include <optional>

class QSettings;

namespace lanternic {

class AppSettings;
class SourceKindStore;
class SourceListCache;
class TransferQueue;
enum class SourceKind;
namespace network {
class Session;
}

// What a pass needs of the store that runs it: where it reads the sources and keeps the page
// kinds it learns, how a source is checked, and where its results go.
struct PassHost {
    AppSettings &settings;
    SourceKindStore &kinds;
    // The sources the settings' lines make, shared with the store's rows.
    SourceListCache &sourceLists;
    QSettings &defaults;
    network::Session &session;
    TransferQueue &queue;
    // Checks a source, or waits for the check of it already running.
    std::function<void(const JSONSource &, std::function<void(const SourceResult &)>)> check;
    // The pass's sources, before any result.
    std::function<void(const QList<JSONSource> &)> begin;
    std::function<void(const SourceResult &)> arrived;
    // Every source has its result.
    std::function<void(const QList<JSONSource> &, QList<SourceResult>)> finish;
};

// One check pass. Sources whose page kind is known are checked at once; the bare hosts not
// yet in the kind cache are probed meanwhile, and their sources checked as each probe answers.
// Each result reaches the host as it comes; the pass ends when every source has one, and then
// deletes itself.
class CheckPass : public QObject {
public:
    CheckPass(PassHost host, std::function<void()> done, QObject *parent);

    void run();

private:
    QList<JSONSource> sources(const QHash<QString, SourceKind> &kinds) const;
    void probe(const QString &host);
    void probed(const QString &host, std::optional<SourceKind> kind);
    void check(const JSONSource &source);
    void arrived(const SourceResult &result, const QString &host);
    void finish();

    PassHost m_host;
    std::function<void()> m_done;
    QString m_text;
    qsizetype m_pending = 0;
    QList<JSONSource> m_sources;
    QList<SourceResult> m_collected;
};

} // namespace lanternic
