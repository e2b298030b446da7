#include "cli/checkcommand.h"
#include "cli/listcommands.h"
#include "cli/passcommand.h"
#include "present/resultjson.h"
#include "sources/network.h"
#include "sources/sourcecheck.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QLocale>
#include <cstdio>

using namespace lanternic;

namespace {

int usageError(const QString &message)
{
    std::fprintf(stderr, "lanternic-check: %s\n", qUtf8Printable(message));
    return cli::usageExitCode;
}

int report(const SourceResult &result, bool pretty)
{
    const QByteArray compact = resultJson(result);
    const QByteArray text =
        pretty ? QJsonDocument::fromJson(compact).toJson(QJsonDocument::Indented).trimmed()
               : compact;
    std::fputs((text + '\n').constData(), stdout);
    return cli::exitCodeFor(result.health);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    // Scripts read what it writes: English and C formats, whatever the desktop's language.
    QLocale::setDefault(QLocale::c());
    const auto parsed = cli::parseArguments(QCoreApplication::arguments());
    if (auto *error = std::get_if<cli::UsageError>(&parsed))
        return usageError(error->message);
    const auto &invocation = std::get<cli::Invocation>(parsed);

    switch (invocation.mode) {
    case cli::Mode::help:
        std::fputs(qUtf8Printable(cli::helpText()), stdout);
        return 0;
    case cli::Mode::version:
        std::fputs("lanternic-check " LANTERNIC_VERSION "\n", stdout);
        return 0;
    case cli::Mode::read: {
        const auto input = cli::readInput(invocation.target);
        if (auto *error = std::get_if<cli::UsageError>(&input))
            return usageError(error->message);
        return report(SourceCheck::read(invocation.source, std::get<QByteArray>(input)),
                      invocation.pretty);
    }
    case cli::Mode::pass:
        return cli::runPass(invocation);
    case cli::Mode::catalog:
        return cli::runCatalog(invocation);
    case cli::Mode::sources:
        return cli::runSources(invocation);
    case cli::Mode::history:
        return cli::runHistory(invocation);
    case cli::Mode::fetch: {
        network::Session session;
        SourceCheck::check(invocation.source, session, &app, [&](SourceResult result) {
            QCoreApplication::exit(report(result, invocation.pretty));
        });
        return QCoreApplication::exec();
    }
    }
    return cli::usageExitCode;
}
