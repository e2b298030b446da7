#include "store/checkpass.h"

#include "config/appsettings.h"
#include "config/settingsfile.h"
#include "config/sourceregistry.h"
#include "sources/sourcecheck.h"
#include "sources/sourcekindstore.h"
#include "store/transferqueue.h"

#include <QPointer>
#include <QSet>

namespace lanternic {

using namespace Qt::StringLiterals;

CheckPass::CheckPass(PassHost host, std::function<void()> done, QObject *parent)
    : QObject(parent), m_host(std::move(host)), m_done(std::move(done))
{
}

void CheckPass::run()
{
    m_text = m_host.settings.sourcesText();
    const QHash<QString, SourceKind> &kinds = m_host.kinds.cache();
    m_sources = sources(kinds);
    m_pending = m_sources.size();
    m_collected.reserve(m_sources.size());
    m_host.begin(m_sources);
    QSet<QString> probing;
    for (const QString &host : m_host.sourceLists.baseHosts(m_text)) {
        if (!kinds.contains(host.toLower()) && !probing.contains(host.toLower())) {
            probing.insert(host.toLower());
            probe(host);
        }
    }
    for (const JSONSource &source : std::as_const(m_sources)) {
        if (!probing.contains(source.baseHost.toLower()))
            check(source);
    }
}

QList<JSONSource> CheckPass::sources(const QHash<QString, SourceKind> &kinds) const
{
    return m_host.sourceLists.sources(m_text, kinds, m_host.settings.sourceOptions());
}

void CheckPass::probe(const QString &host)
{
    m_host.queue.enqueue([this, host] {
        SourceKindStore::probe(host, m_host.session, this,
                               [this, host](std::optional<SourceKind> kind) {
                                   m_host.queue.finished();
                                   probed(host, kind);
                               });
    });
}

// A probe without an answer records nothing; the host's sources are checked either way.
void CheckPass::probed(const QString &host, std::optional<SourceKind> kind)
{
    if (kind)
        SettingsFile::update(m_host.defaults,
                             [this, &host, kind] { m_host.kinds.record(host, *kind); });
    QHash<QString, JSONSource> known;
    for (const JSONSource &source : sources(m_host.kinds.cache()))
        known.insert(source.id, source);
    for (JSONSource &source : m_sources) {
        if (source.baseHost.compare(host, Qt::CaseInsensitive) != 0)
            continue;
        source = known.value(source.id, source);
        check(source);
    }
}

void CheckPass::check(const JSONSource &source)
{
    QPointer<CheckPass> pass(this);
    m_host.check(source, [pass, host = source.baseHost](const SourceResult &result) {
        if (pass)
            pass->arrived(result, host);
    });
}

void CheckPass::arrived(const SourceResult &result, const QString &host)
{
    // A page that moved is asked again at the next pass which platform it is on.
    if (!host.isEmpty() && SourceCheck::pageMoved(result) &&
        m_host.kinds.cache().contains(host.toLower()))
        SettingsFile::update(m_host.defaults, [this, &host] { m_host.kinds.forget(host); });
    m_collected.append(result);
    m_host.arrived(result);
    if (--m_pending == 0)
        finish();
}

void CheckPass::finish()
{
    m_host.finish(m_sources, std::move(m_collected));
    if (m_done)
        m_done();
    deleteLater();
}

} // namespace lanternic
