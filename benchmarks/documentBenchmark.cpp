#include "systeminfo/norvexReport.h"

#include <QFile>
#include <QJsonDocument>
#include <benchmark/benchmark.h>
#include <ctime>

namespace {

using norvex::SystemInfo::CReport;

const QString windowsBanner = QStringLiteral("############ Windows specific section ###########");

QString report()
{
    QFile file(QStringLiteral(NORVEX_TEST_DATA "/reports/macintosh.txt"));
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("%s cannot be read", qPrintable(file.fileName()));
    }
    return QString::fromUtf8(file.readAll());
}

/// A report with its last section, the environment, filled up to the length with further variables.
QString filled(int length, const QString& variables)
{
    QString text = report();
    text.reserve(length + variables.size() + 20);
    for (int number = 0; text.size() < length; ++number) {
        text += variables.arg(number);
    }
    text.truncate(length); // more is no JSON
    return text;
}

/// Short lines, as the reader's benchmark has them.
QString shortLines(int length)
{
    return filled(length,
                  QStringLiteral("  PATH_%1=/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin:/opt/tools/bin\n"
                                 "  XDG_SESSION_%1=c2\n"
                                 "  LS_COLORS_%1=rs=0:di=01;34:ln=01;36:mh=00:pi=40;33:so=01;35\n"
                                 "  SSH_AUTH_SOCK_%1=/private/tmp/com.example.launchd.7Xk2/Listeners\n"
                                 "  LC_CTYPE_%1=UTF-8\n"
                                 "  __CF_USER_TEXT_ENCODING_%1=0x1F5:0x0:0x3\n"));
}

/// Few enough lines for JSON.
QString longLines(int length)
{
    return filled(length, QStringLiteral("  LINE_%1=") + QString(200, QLatin1Char('x')) + QLatin1Char('\n'));
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

/// Processor time, so that other programs do not count.
double secondsSince(std::clock_t start)
{
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

double secondsOfOnePass(const QString& text)
{
    const int passes = 10;
    const std::clock_t start = std::clock();
    for (int i = 0; i < passes; ++i) {
        benchmark::DoNotOptimize(text.indexOf(windowsBanner));
    }
    return secondsSince(start) / passes;
}

/// The counter "passes" says how many passes of QString::indexOf for the Windows banner take the time of one parse,
/// "ns_a_line" what a line costs.
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

void lengths(benchmark::internal::Benchmark* benchmark)
{
    benchmark->RangeMultiplier(2)
        ->Range(1 << 23, 1 << 26)
        ->Complexity(benchmark::oN)
        ->Unit(benchmark::kMillisecond);
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
