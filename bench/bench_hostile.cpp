// What a hostile feed can make the panel do: every panel action on its result must stay under
// 100 ms. The documents are relay feeds with a name of 100,000 combining marks, 20,000
// affected components, and 20,000 operational components with long names. Runs offscreen.

#include "sources/sourcecheck.h"
#include "store/displaysummary.h"
#include "ui/rowviews.h"

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMenu>
#include <QSettings>
#include <QToolButton>
#include <benchmark/benchmark.h>

using namespace lanternic;

namespace {

QByteArray relay(const QString &name, qsizetype components, const QString &status,
                 const QString &componentName)
{
    QJsonArray list;
    for (qsizetype i = 0; i < components; ++i) {
        list.append(QJsonObject{{QStringLiteral("id"), QString::number(i)},
                                {QStringLiteral("name"), componentName + QString::number(i)},
                                {QStringLiteral("status"), status}});
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("schema"), QStringLiteral("lanternic.v1")},
                                     {QStringLiteral("name"), name},
                                     {QStringLiteral("components"), list}})
        .toJson(QJsonDocument::Compact);
}

QByteArray document(int which)
{
    const QString marks = QStringLiteral("e") + QString(100'000, QChar(0x301));
    switch (which) {
    case 0:
        return relay(marks, 1, QStringLiteral("down"), marks);
    case 1:
        return relay(QStringLiteral("Many"), 20'000, QStringLiteral("major_outage"),
                     QStringLiteral("Affected "));
    default:
        return relay(QStringLiteral("Long"), 20'000, QStringLiteral("operational"),
                     QString(2'000, QChar(u'x')));
    }
}

DisplayProvider rowFor(int which)
{
    JSONSource source;
    source.id = QStringLiteral("hostile");
    source.name = QStringLiteral("Hostile");
    const SourceResult result = SourceCheck::read(source, document(which));
    QSettings nothingStored(QString(), QSettings::IniFormat);
    SilenceStore silence(nothingStored);
    return DisplaySummary::providers({result}, silence, QDateTime::currentDateTimeUtc()).first();
}

StatusRowView *rowView(const DisplayProvider &row)
{
    auto *view = new StatusRowView({[](const QString &, SilenceDuration) {},
                                    [](const QString &) { return false; },
                                    [](const QString &) { return NotifyRule::all; },
                                    [](const QString &, NotifyRule) {}, [](const QUrl &) {}});
    view->setContent(row, {}, QDateTime::currentDateTimeUtc());
    return view;
}

void ShowRow(benchmark::State &state)
{
    const DisplayProvider row = rowFor(int(state.range(0)));
    for (auto _ : state) {
        std::unique_ptr<StatusRowView> view(rowView(row));
        view->resize(320, 44);
        view->show();
        benchmark::DoNotOptimize(view->grab());
    }
}

void OpenSilenceMenu(benchmark::State &state)
{
    const DisplayProvider row = rowFor(int(state.range(0)));
    std::unique_ptr<StatusRowView> view(rowView(row));
    for (auto _ : state) {
        QMenu *menu = view->silenceButton()->menu();
        Q_EMIT menu->aboutToShow();
        menu->adjustSize();
        benchmark::DoNotOptimize(menu->actions().size());
    }
}

void ShowSilencedRow(benchmark::State &state)
{
    const DisplayProvider row = rowFor(0);
    for (auto _ : state) {
        SilencedRowView view(
            row.result.name, SilenceUntil::forever(), [] {},
            [] { return QDateTime::currentDateTimeUtc(); });
        view.resize(320, 30);
        view.show();
        benchmark::DoNotOptimize(view.grab());
    }
}

} // namespace

BENCHMARK(ShowRow)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenSilenceMenu)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(ShowSilencedRow)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
