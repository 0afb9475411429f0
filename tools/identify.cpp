#include "tools/identify.h"

#include "systeminfo/norvexSystemInfo.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace norvex::Tool {

namespace {

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
