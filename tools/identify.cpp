#include "tools/identify.h"

#include "systeminfo/norvexSystemInfo.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace norvex::Tool {

namespace {

/// Far more than any report; this much text still fits a QString.
const int longestReport = 1000000000;
const qint64 chunkSize = 1 << 20;

QByteArray toJson(const QStringList& macAddresses, int numberOfProcessors, int processorRevision)
{
    const QJsonObject object{{QStringLiteral("macAddresses"), QJsonArray::fromStringList(macAddresses)},
                             {QStringLiteral("numberOfProcessors"), numberOfProcessors},
                             {QStringLiteral("processorRevision"), processorRevision}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QByteArray toLines(QStringList lines, int numberOfProcessors, int processorRevision)
{
    lines << QString::number(numberOfProcessors) << QString::number(processorRevision) << QString();
    return lines.join(QLatin1Char('\n')).toUtf8();
}

} // namespace

QString shownName(const QByteArray& fileName)
{
    return fileName == "-" ? QStringLiteral("standard input")
                           : QStringLiteral("'%1'").arg(QFile::decodeName(fileName));
}

bool readReport(const QByteArray& fileName, QString& report, QString& errorMessage)
{
    QFile file(QFile::decodeName(fileName));
    const bool isOpen =
        fileName == "-" ? file.open(fileno(stdin), QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    QByteArray bytes;
    QByteArray chunk;
    while (isOpen && bytes.size() <= longestReport && !(chunk = file.read(chunkSize)).isEmpty()) {
        bytes += chunk;
    }
    const bool isTooLong = bytes.size() > longestReport;
    if (isTooLong || file.error() != QFileDevice::NoError) {
        errorMessage = QStringLiteral("cannot read %1: %2")
                           .arg(shownName(fileName),
                                isTooLong ? QStringLiteral("too large for a report") : file.errorString());
        return false;
    }
    report = QString::fromUtf8(bytes.constData(), bytes.size());
    return true;
}

bool identify(const QString& report, bool skipBraced, bool asJson, QByteArray& text, QString& errorMessage)
{
    QStringList macAddresses;
    unsigned char numberOfProcessors = 0;
    unsigned short processorRevision = 0;
    if (!SystemInfo::extractAccessKeyValues(report, skipBraced, macAddresses, numberOfProcessors,
                                            processorRevision, errorMessage)) {
        return false;
    }
    text = asJson ? toJson(macAddresses, numberOfProcessors, processorRevision)
                  : toLines(macAddresses, numberOfProcessors, processorRevision);
    return true;
}

} // namespace norvex::Tool
