#include "benchmarks/longTexts.h"
#include "systeminfo/norvexReport.h"

#include <QJsonDocument>

namespace {

using norvex::SystemInfo::CReport;

/// Few enough lines for JSON.
QString longLines(int length)
{
    return filledReport(length,
                        QStringLiteral("  LINE_%1=") + QString(200, QLatin1Char('x')) + QLatin1Char('\n'));
}

QString repeated(const QString& text, int length)
{
    return text.repeated(length / text.size());
}

QString lineFeeds(int length)
{
    return repeated(QStringLiteral("\n"), length);
}

QString headings(int length)
{
    return repeated(QStringLiteral("Volumes\nModel:\n"), length);
}

QString processorLines(int length)
{
    return repeated(QStringLiteral("CPU stepping: 1\nL2 Cache size: 256.0 KByte\n"), length);
}

QString separators(int length)
{
    return QStringLiteral("System environemnt (QProcess::systemEnvironment()):\n") +
           repeated(QString(72, QLatin1Char('-')) + QLatin1Char('\n'), length);
}

QString almostSeparators(int length)
{
    return repeated(QString(71, QLatin1Char('-')) + QLatin1Char('\n'), length);
}

/// The counter "passes" says how many passes of QString::indexOf take the time of one parse, "ns_a_line" how many
/// nanoseconds a line takes.
void parse(benchmark::State& state, QString (*write)(int))
{
    const QString text = write(static_cast<int>(state.range(0)));
    const double pass = secondsOfOnePass(text);
    const std::clock_t start = std::clock();
    for (auto _ : state) {
        benchmark::DoNotOptimize(CReport::fromText(text));
    }
    const double seconds = secondsSince(start) / static_cast<double>(state.iterations());
    constexpr double nanosecondsInSecond = 1e9;
    state.counters["passes"] = seconds / pass;
    state.counters["ns_a_line"] = seconds * nanosecondsInSecond / text.count(QLatin1Char('\n'));
    state.SetComplexityN(state.range(0));
}

void toJson(benchmark::State& state, QString (*write)(int))
{
    const CReport report = CReport::fromText(write(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        QByteArray json = report.toJson().toJson();
        if (json.size() < report.text().size()) {
            state.SkipWithError("the report is not in it");
        }
        benchmark::DoNotOptimize(json);
    }
}

void fromJson(benchmark::State& state, QString (*write)(int))
{
    const CReport report = CReport::fromText(write(static_cast<int>(state.range(0))));
    const QByteArray json = report.toJson().toJson();
    for (auto _ : state) {
        const CReport again = CReport::fromJson(QJsonDocument::fromJson(json));
        if (again.text() != report.text()) {
            state.SkipWithError("the report is another one");
        }
    }
}

void compare(benchmark::State& state, QString (*write)(int))
{
    const QString text = write(static_cast<int>(state.range(0)));
    const CReport older = CReport::fromText(text);
    const CReport newer =
        CReport::fromText(QString(text).replace(QLatin1String("=0x1F5"), QLatin1String("=0x1F6")));
    for (auto _ : state) {
        benchmark::DoNotOptimize(older.compare(newer));
    }
}

void redact(benchmark::State& state, QString (*write)(int))
{
    const CReport report = CReport::fromText(write(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        benchmark::DoNotOptimize(report.redacted());
    }
}

void usualAndLargest(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(10000)->Arg(1 << 26)->Unit(benchmark::kMicrosecond);
}

/// A usual report: less than 0.2 ms. At 64 Mi characters: at most 20 passes.
BENCHMARK_CAPTURE(parse, shortLines, shortLines)->Apply(usualAndLargest);
/// Whatever the text: at most 20 ns a line, and twice the length, twice the time.
BENCHMARK_CAPTURE(parse, lineFeeds, lineFeeds)->Apply(lengths);
BENCHMARK_CAPTURE(parse, headings, headings)->Apply(lengths);
BENCHMARK_CAPTURE(parse, processorLines, processorLines)->Apply(lengths);
BENCHMARK_CAPTURE(parse, separators, separators)->Apply(lengths);
BENCHMARK_CAPTURE(parse, almostSeparators, almostSeparators)->Apply(lengths);
BENCHMARK_CAPTURE(toJson, longLines, longLines)->Apply(usualAndLargest);
BENCHMARK_CAPTURE(fromJson, longLines, longLines)->Apply(usualAndLargest);
BENCHMARK_CAPTURE(compare, shortLines, shortLines)->Apply(usualAndLargest);
BENCHMARK_CAPTURE(redact, shortLines, shortLines)->Apply(usualAndLargest);

} // namespace
