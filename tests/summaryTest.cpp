#include "tools/summary.h"
#include "systeminfo/norvexReport.h"

#include <QDir>
#include <QFile>
#include <QTest>

using norvex::SystemInfo::CReport;
using norvex::Tool::summaryOf;

/// The summaries of the reports beside them: NAME.summary, or NAME.otherMachine where the Macintosh half is another
/// machine's.
class SummaryTest : public QObject
{
    Q_OBJECT

private slots:
    void files_data();
    void files();
};

static QString contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void SummaryTest::files_data()
{
    QTest::addColumn<QFileInfo>("expected");
    const QDir folder(QStringLiteral(NORVEX_TEST_DATA "/reports"));
    const QStringList kinds = {QStringLiteral("*.summary"), QStringLiteral("*.otherMachine")};
    for (const QFileInfo& file : folder.entryInfoList(kinds, QDir::Files, QDir::Name)) {
        QTest::newRow(qPrintable(file.fileName())) << file;
    }
}

void SummaryTest::files()
{
    QFETCH(QFileInfo, expected);
    const QString report = expected.path() + QLatin1Char('/') + expected.completeBaseName();
    const bool hasOtherMachine = expected.suffix() == QLatin1String("otherMachine");
    QCOMPARE(summaryOf(CReport::fromText(contents(report + QStringLiteral(".txt"))), hasOtherMachine),
             contents(expected.filePath()));
}

QTEST_GUILESS_MAIN(SummaryTest)
#include "summaryTest.moc"
