#pragma once

#include "model/health.h"
#include "present/passreports.h"
#include "sources/sourcecheck.h"

#include <QString>
#include <QStringList>
#include <variant>

namespace lanternic::cli {

enum class Mode { help, version, read, fetch, pass, catalog, sources, history };

using Format = ReportFormat;

// What the command line asked for.
struct Invocation {
    Mode mode = Mode::help;
    QString target; // the file (or "-") to read, or the URL to fetch
    JSONSource source;
    bool pretty = false;
    // A whole pass: the settings file (else the user's own, left untouched), the sources
    // text replacing the stored one for this run, and whether to print JSON.
    std::optional<QString> settingsFile;
    std::optional<QString> sourcesText;
    ReportOptions report;
    QStringList words; // catalog: what to look for
    int days = 7;      // history: the window
};

struct UsageError {
    QString message;
};

std::variant<Invocation, UsageError> parseArguments(const QStringList &arguments);

QString helpText();

// Monitoring-plugin convention: 0 OK, 1 warning, 2 critical, 3 unknown (and usage errors).
int exitCodeFor(Health health);
inline constexpr int usageExitCode = 3;

// Reads a whole file ("-" for standard input) of at most the network body limit.
std::variant<QByteArray, UsageError> readInput(const QString &path);

} // namespace lanternic::cli
