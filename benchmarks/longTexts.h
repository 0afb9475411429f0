#pragma once

/// @file
/// What the benchmarks of the two readers of reports share: long reports, the time of one search as a measure, and the
/// lengths by which they show that a reader takes linear time.

#include <QFile>
#include <QString>

#include <benchmark/benchmark.h>
#include <ctime>

/// The report of a Mac, whose last section, the environment, is filled up to a length with further variables.
/// @param variables lines that are repeated, with a number in place of "%1"
inline QString filledReport(int length, const QString& variables)
{
    QFile file(QStringLiteral(NORVEX_TEST_DATA "/reports/macintosh.txt"));
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("%s cannot be read", qPrintable(file.fileName()));
    }
    QString report = QString::fromUtf8(file.readAll());
    report.reserve(length + variables.size() + 20);
    for (int number = 0; report.size() < length; ++number) {
        report += variables.arg(number);
    }
    report.truncate(length); // a longer report than the longest cannot become JSON
    return report;
}

/// A report with variables as they usually are.
inline QString shortLines(int length)
{
    return filledReport(
        length, QStringLiteral("  PATH_%1=/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin:/opt/tools/bin\n"
                               "  XDG_SESSION_%1=c2\n"
                               "  LS_COLORS_%1=rs=0:di=01;34:ln=01;36:mh=00:pi=40;33:so=01;35\n"
                               "  SSH_AUTH_SOCK_%1=/private/tmp/com.example.launchd.7Xk2/Listeners\n"
                               "  LC_CTYPE_%1=UTF-8\n"
                               "  __CF_USER_TEXT_ENCODING_%1=0x1F5:0x0:0x3\n"));
}

/// The processor time since a moment, in seconds: other programs do not count.
inline double secondsSince(std::clock_t start)
{
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// One pass over a text: a search for a banner that is not there.
inline int searchBanner(const QString& text)
{
    return text.indexOf(QStringLiteral("############ Windows specific section ###########"));
}

/// The time of one pass. The counter "passes" of a benchmark relates its time to this one.
inline double secondsOfOnePass(const QString& text)
{
    const int passes = 10;
    const std::clock_t start = std::clock();
    for (int i = 0; i < passes; ++i) {
        benchmark::DoNotOptimize(searchBanner(text));
    }
    return secondsSince(start) / passes;
}

/// From 8 Mi to 64 Mi characters, with the order of growth.
inline void lengths(benchmark::internal::Benchmark* benchmark)
{
    benchmark->RangeMultiplier(2)
        ->Range(1 << 23, 1 << 26)
        ->Complexity(benchmark::oN)
        ->Unit(benchmark::kMillisecond);
}
