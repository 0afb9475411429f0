#include "benchmarks/longTexts.h"
#include "systeminfo/norvexSystemInfo.h"

namespace {

using norvex::SystemInfo::extractAccessKeyValues;

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

void onePass(benchmark::State& state)
{
    const QString report = shortLines(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(searchBanner(report));
    }
    state.SetComplexityN(state.range(0));
}

/// The counter "passes" says how many passes of QString::indexOf take the time of one reading.
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

BENCHMARK(onePass)->Apply(lengths);
/// At 64 Mi characters: at most 4 passes.
BENCHMARK_CAPTURE(read, shortLines, shortLines)->Apply(lengths);
/// At 64 Mi characters: less than half a second.
BENCHMARK_CAPTURE(read, interfaceBlocks, interfaceBlocks)->Apply(lengths);
BENCHMARK_CAPTURE(read, shortestBlocks, shortestBlocks)->Apply(lengths);
/// Whatever the text: twice the length, twice the time.
BENCHMARK_CAPTURE(read, separators, separators)->Apply(lengths);
BENCHMARK_CAPTURE(read, almostSeparators, almostSeparators)->Apply(lengths);
BENCHMARK_CAPTURE(read, labels, labels)->Apply(lengths);
BENCHMARK_CAPTURE(read, underscores, underscores)->Apply(lengths);

} // namespace
