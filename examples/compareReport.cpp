// Prints what differs between a report in a file and this machine.

#include <systeminfo/norvexReport.h>
#include <systeminfo/norvexSystemInfo.h>

#include <QApplication>
#include <QFile>

#include <cstdio>

using namespace norvex::SystemInfo;

/// Further lines of a value are indented.
static void print(QString line)
{
    line.replace(QLatin1Char('\n'), QStringLiteral("\n    "));
    std::fputs((line + QLatin1Char('\n')).toUtf8().constData(), stdout);
}

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: compareReport FILE\n", stderr);
        return 2;
    }
    QFile file(QFile::decodeName(argv[1]));
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s: %s\n", argv[1], qPrintable(file.errorString()));
        return 2;
    }
    const CReport older = CReport::fromText(QString::fromUtf8(file.readAll()));
    const CReport newer = CReport::fromText(allInfos(false));

    bool isSame = true;
    const QVector<CReportDifference> differences = older.compare(newer);
    for (const CReportDifference& difference : differences) {
        if (difference.isVolatile()) {
            continue; // the date, free space and the like, which differ at any time
        }
        isSame = false;
        switch (difference.kind()) {
        case CReportDifference::Added: print(QStringLiteral("+ ") + difference.path()); break;
        case CReportDifference::Removed: print(QStringLiteral("- ") + difference.path()); break;
        case CReportDifference::Moved:
            print(QStringLiteral("> %1 (was %2)").arg(difference.path(), difference.oldPath()));
            break;
        case CReportDifference::Changed:
            print(QStringLiteral("* ") + difference.path());
            print(QStringLiteral("    ") + difference.oldValue());
            print(QStringLiteral("    ") + difference.newValue());
            break;
        }
    }
    return isSame ? 0 : 1;
}
