#include "viewer/reportReading.h"

#include "viewer/recordings.h"

#include "systeminfo/norvexReport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QTextCodec>

namespace norvex {
namespace Viewer {

namespace {

/// Far more than any report. The columns of a line of as many tabulators can still be counted.
const qint64 longestFile = 250000000;
const qint64 chunkSize = 4 << 20;
/// Where the first tag of a property list stands.
const int longestPreamble = 1024;

struct Reading
{
    Q_DECLARE_TR_FUNCTIONS(Reading)
};

QString tooLarge()
{
    return Reading::tr("The file is too large for a report: it has more than %1 MB.")
        .arg(longestFile / 1000000);
}

/// @return the reason of a failure; empty on success
QString readBytes(const QString& fileName, const JobControl& control, QByteArray& bytes)
{
    const QFileInfo info(fileName);
    if (!info.exists()) {
        return Reading::tr("There is no such file.");
    }
    if (info.isDir()) {
        return Reading::tr("This is a folder.");
    }
    // A pipe or a device can keep its reader waiting for ever.
    if (!info.isFile()) {
        return Reading::tr("This is no regular file.");
    }
    if (info.size() > longestFile) {
        return tooLarge();
    }
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        return file.errorString();
    }
    // Files of the kernel say that they are empty.
    bytes.reserve(static_cast<int>(info.size()));
    QByteArray chunk;
    while (!control.isCancelled() && bytes.size() <= longestFile &&
           !(chunk = file.read(chunkSize)).isEmpty()) {
        bytes += chunk;
        control.setProgress(info.size() == 0 ? 0 : static_cast<int>(100LL * bytes.size() / info.size()));
    }
    if (bytes.size() > longestFile) {
        return tooLarge();
    }
    return file.error() == QFileDevice::NoError ? QString() : file.errorString();
}

/// Puts U+FFFD in the place of halves of characters, which no file could hold again.
bool replaceLoneSurrogates(QString& text)
{
    bool hasAny = false;
    for (int i = 0; i < text.size(); ++i) {
        if (!text.at(i).isSurrogate()) {
            continue;
        }
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            ++i;
            continue;
        }
        text[i] = QChar(QChar::ReplacementCharacter);
        hasAny = true;
    }
    return hasAny;
}

void readJson(FileContent& content)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(content.text.toUtf8(), &error);
    if (error.error != QJsonParseError::NoError) {
        content.notices += Reading::tr("The file looks like JSON but is none: %1.").arg(error.errorString());
        return;
    }
    QString reason;
    const SystemInfo::CReport report = SystemInfo::CReport::fromJson(document, &reason);
    if (report.isNull()) {
        content.notices += Reading::tr("The JSON is shown as it is. %1").arg(reason);
        return;
    }
    content.text = report.text();
}

void readMachine(const QString& fileName, FileContent& content)
{
    QString report;
    QString reason;
    content.isRecording = readRecording(fileName, report, reason);
    if (content.isRecording) {
        content.text = report;
        content.notices += Reading::tr("The Macintosh half of a recorded machine.");
    } else {
        content.notices += Reading::tr("The file is no recording of a machine: %1").arg(reason);
    }
}

} // namespace

QString decodeText(const QByteArray& bytes, bool& hasBadBytes)
{
    if (bytes.startsWith("\xff\xfe") || bytes.startsWith("\xfe\xff")) {
        QString text = QTextCodec::codecForName("UTF-16")->toUnicode(bytes);
        hasBadBytes = replaceLoneSurrogates(text);
        if (bytes.size() % 2 != 0) {
            text += QChar(QChar::ReplacementCharacter);
            hasBadBytes = true;
        }
        return text;
    }
    QString text = QString::fromUtf8(bytes.constData(), bytes.size());
    const QChar replacement(QChar::ReplacementCharacter);
    // A file may hold some of its own.
    hasBadBytes = text.contains(replacement) && text.count(replacement) != bytes.count("\xef\xbf\xbd");
    return text;
}

FileContent readReportFile(const QString& fileName, const JobControl& control)
{
    FileContent content;
    QByteArray bytes;
    content.errorMessage = readBytes(fileName, control, bytes);
    if (!content.errorMessage.isEmpty() || control.isCancelled()) {
        return content;
    }
    bool hasBadBytes = false;
    content.text = decodeText(bytes, hasBadBytes);
    bytes = QByteArray();
    if (content.text.isEmpty()) {
        content.errorMessage = Reading::tr("The file is empty.");
        return content;
    }
    if (hasBadBytes) {
        content.notices += Reading::tr("Parts of the file are no text: %1 stands for them.")
                               .arg(QChar(QChar::ReplacementCharacter));
    }
    if (content.text.contains(QChar(QChar::Null))) {
        content.notices +=
            Reading::tr("The file is hardly a report: symbols stand for characters that do not print.");
    }
    if (SystemInfo::CReport::isJson(content.text)) {
        readJson(content);
    } else if (canReadRecordings() &&
               content.text.leftRef(longestPreamble).contains(QLatin1String("<plist"))) {
        readMachine(fileName, content);
    }
    return content;
}

} // namespace Viewer
} // namespace norvex
