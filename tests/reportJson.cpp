// Prints reports as JSON, a document a line: those of the files that the arguments name, then generated ones.

#include "reportGenerator.h"
#include "systeminfo/norvexReport.h"

#include <QJsonDocument>

#include <cstdio>

using norvex::SystemInfo::CReport;

static bool print(const QString& text)
{
    const QByteArray json = CReport::fromText(text).toJson().toJson(QJsonDocument::Compact) + '\n';
    return std::fwrite(json.constData(), std::size_t(json.size()), 1, stdout) == 1;
}

int main(int argc, char** argv)
{
    bool isPrinted = true;
    for (int i = 1; i < argc; ++i) {
        QFile file(argv[i]);
        isPrinted = isPrinted && file.open(QIODevice::ReadOnly) && print(QString::fromUtf8(file.readAll()));
    }
    ReportGenerator generator;
    for (int i = 0; i < 200; ++i) {
        isPrinted = isPrinted && print(generator.next());
    }
    return isPrinted ? 0 : 1;
}
