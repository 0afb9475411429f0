#include "tools/reportForms.h"

#include "tools/selection.h"

#include "systeminfo/surrogates.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace norvex::Tool {

using namespace SystemInfo;

namespace {

/// The same lines, the last one of which ends, too, so that others can follow it.
CReport wholeLines(const CReport& report)
{
    const QString text = report.text();
    const bool isWhole = text.isEmpty() || text.endsWith(QLatin1Char('\n'));
    return isWhole ? report : CReport::fromText(text + QLatin1Char('\n'));
}

} // namespace

SelectedReport selectedSections(const CReport& report, const Selection& selection)
{
    if (selection.isAll()) {
        return {report, std::nullopt};
    }
    const CReport whole = wholeLines(report);
    return {whole, selection.places(whole.content())};
}

CReport selectedReport(const CReport& report, const Selection& selection)
{
    if (selection.isAll()) {
        return report;
    }
    const CReport whole = wholeLines(report);
    return CReport::fromText(textOf({whole, selection.placesInReport(whole.content())}));
}

QString textOf(const SelectedReport& selected)
{
    if (!selected.places) {
        return selected.report.text();
    }
    QString text;
    const QVector<CReportItem> items = selected.report.content();
    for (const int place : *selected.places) {
        text += items.at(place).text();
    }
    return text;
}

bool jsonOf(const SelectedReport& selected, QByteArray& json, QString& errorMessage)
{
    QJsonDocument document = selected.report.toJson(&errorMessage);
    if (document.isNull()) {
        return false;
    }
    if (selected.places) {
        // The items of the document are the report's, one by one.
        const QString key = QStringLiteral("content");
        QJsonObject object = document.object();
        const QJsonArray all = object.value(key).toArray();
        QJsonArray wanted;
        for (const int place : *selected.places) {
            wanted.append(all.at(place));
        }
        object.insert(key, wanted);
        document.setObject(object);
    }
    json = document.toJson();
    return true;
}

QByteArray toBytes(const QString& text)
{
    return Internal::validText(text).toUtf8();
}

} // namespace norvex::Tool
