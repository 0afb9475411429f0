#include "systeminfo/norvexSystemInfo.h"

#include <QFile>
#include <benchmark/benchmark.h>
#include <ctime>

namespace {

using norvex::SystemInfo::extractAccessKeyValues;

const QString windowsBanner = QStringLiteral("############ Windows specific section ###########");

/// A report as a Mac writes it, its environment section filled up with further variables.
QString filledReport(int length)
{
    QFile file(QStringLiteral(NORVEX_TEST_DATA "/reports/macintosh.txt"));
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("%s cannot be read", qPrintable(file.fileName()));
    }
    QString report = QString::fromUtf8(file.readAll());
    const QString variables =
        QStringLiteral("  PATH_%1=/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin:/opt/tools/bin\n"
                       "  XDG_SESSION_%1=c2\n"
                       "  LS_COLORS_%1=rs=0:di=01;34:ln=01;36:mh=00:pi=40;33:so=01;35\n"
                       "  SSH_AUTH_SOCK_%1=/private/tmp/com.example.launchd.7Xk2/Listeners\n"
                       "  LC_CTYPE_%1=UTF-8\n"
                       "  __CF_USER_TEXT_ENCODING_%1=0x1F5:0x0:0x3\n");
    report.reserve(length + 1000);
    for (int number = 0; report.size() < length; ++number) {
        report += variables.arg(number);
    }
    return report;
}

/// The start of a report whose last section is the network's.
QString reportStart()
{
    return QStringLiteral("############ Macintosh specific section ###########\n"
                          "Number of physical cores: 4\nCPU signature: 198339\n"
                          "###### System informations retrieved using Qt #######\n"
                          "Network Interfaces Info\n");
}

QString repeated(const QString& text, int length)
{
    return reportStart() + text.repeated(length / text.size());
}

QString interfaceBlocks(int length)
{
    return repeated(QString(55, QLatin1Char('_')) +
                        QStringLiteral("\nen0\nHardware address: A0:99:9B:0C:11:22\nStatus: Up\n"
                                       "Addresses: IP , netmask , broadcast\n"
                                       "192.0.2.10 , 255.255.255.0 , 192.0.2.255\n"),
                    length);
}

QString shortestBlocks(int length)
{
    return repeated(QString(55, QLatin1Char('_')) + QStringLiteral("\na\nHardware address:1:2:3:4:5:6\n"),
                    length);
}

QString separators(int length)
{
    return repeated(QString(55, QLatin1Char('_')) + QLatin1Char('\n'), length);
}

QString almostSeparators(int length)
{
    return repeated(QString(54, QLatin1Char('_')) + QChar(0x15f), length);
}

QString labels(int length)
{
    return repeated(QStringLiteral("Hardware address: \n"), length);
}

QString underscores(int length)
{
    return repeated(QStringLiteral("_"), length);
}

/// Processor time, so that other programs do not count.
double secondsSince(std::clock_t start)
{
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

double secondsOfOnePass(const QString& report)
{
    const int passes = 10;
    const std::clock_t start = std::clock();
    for (int i = 0; i < passes; ++i) {
        benchmark::DoNotOptimize(report.indexOf(windowsBanner));
    }
    return secondsSince(start) / passes;
}

void onePass(benchmark::State& state)
{
    const QString report = filledReport(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(report.indexOf(windowsBanner));
    }
    state.SetComplexityN(state.range(0));
}

/// The counter "passes" says how many passes of QString::indexOf for the Windows banner take the time of a
/// reading.
void read(benchmark::State& state, QString (*write)(int))
{
    const QString report = write(static_cast<int>(state.range(0)));
    const double pass = secondsOfOnePass(report);
    const std::clock_t start = std::clock();
    for (auto _ : state) {
        QStringList macAddresses;
        unsigned char processors = 0;
        unsigned short revision = 0;
        QString message;
        benchmark::DoNotOptimize(
            extractAccessKeyValues(report, false, macAddresses, processors, revision, message));
    }
    state.counters["passes"] = secondsSince(start) / static_cast<double>(state.iterations()) / pass;
    state.SetComplexityN(state.range(0));
}

void lengths(benchmark::internal::Benchmark* benchmark)
{
    benchmark->RangeMultiplier(2)
        ->Range(1 << 23, 1 << 26)
        ->Complexity(benchmark::oN)
        ->Unit(benchmark::kMillisecond);
}

BENCHMARK(onePass)->Apply(lengths);
/// At 64 Mi characters: at most 4 passes.
BENCHMARK_CAPTURE(read, filledReport, filledReport)->Apply(lengths);
/// At 64 Mi characters: less than half a second.
BENCHMARK_CAPTURE(read, interfaceBlocks, interfaceBlocks)->Apply(lengths);
BENCHMARK_CAPTURE(read, shortestBlocks, shortestBlocks)->Apply(lengths);
/// Whatever the text: twice the length, twice the time.
BENCHMARK_CAPTURE(read, separators, separators)->Apply(lengths);
BENCHMARK_CAPTURE(read, almostSeparators, almostSeparators)->Apply(lengths);
BENCHMARK_CAPTURE(read, labels, labels)->Apply(lengths);
BENCHMARK_CAPTURE(read, underscores, underscores)->Apply(lengths);

} // namespace
