// Makes a report and reads the identification values back out of it.

#include <systeminfo/norvexSystemInfo.h>

#include <QApplication>

#include <cstdio>

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    const QString report = norvex::SystemInfo::allInfos(true);

    QStringList macAddresses;
    unsigned char processors = 0;
    unsigned short revision = 0;
    QString error;
    if (!norvex::SystemInfo::extractAccessKeyValues(report, true, macAddresses, processors, revision,
                                                    error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    std::printf("MAC addresses: %s\n", qPrintable(macAddresses.join(QStringLiteral(", "))));
    std::printf("Processors: %d, revision: %d\n", processors, revision);
    return 0;
}
