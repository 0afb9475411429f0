#include "tools/reading.h"

#include "tools/output.h"

#include "systeminfo/surrogates.h"

#include <QFile>
#include <QJsonDocument>
#include <QTextCodec>

#include <cstdio>

namespace norvex::Tool {

using SystemInfo::CReport;

namespace {

/// Far more than any report; this much text still fits a QString.
const int longestReport = 1000000000;
const qint64 chunkSize = 1 << 20;

const char utf8Mark[] = "\xef\xbb\xbf";
const char utf8Replacement[] = "\xef\xbf\xbd";

/// What the bytes of a file say.
struct DecodedText
{
    QString text;
    int firstBadByte = -1; // its offset in the file
    int firstBadPlace = 0; // in the text
};

/// Looks at the bytes behind each U+FFFD: a text may hold some of its own.
void findBadByte(const QByteArray& bytes, DecodedText& decoded)
{
    const QString& text = decoded.text;
    const int replacementSize = static_cast<int>(qstrlen(utf8Replacement));
    int offset = bytes.startsWith(utf8Mark) ? static_cast<int>(qstrlen(utf8Mark)) : 0;
    int begin = 0;
    int place = 0;
    while ((place = text.indexOf(QChar(QChar::ReplacementCharacter), begin)) != -1) {
        offset += text.midRef(begin, place - begin).toUtf8().size();
        if (qstrncmp(bytes.constData() + offset, utf8Replacement, uint(replacementSize)) != 0) {
            decoded.firstBadByte = offset;
            decoded.firstBadPlace = place;
            return;
        }
        offset += replacementSize;
        begin = place + 1;
    }
}

DecodedText fromUtf16(const QByteArray& bytes)
{
    DecodedText decoded;
    decoded.text = QTextCodec::codecForName("UTF-16")->toUnicode(bytes);
    const int unitSize = 2;
    const auto note = [&decoded](int place) {
        if (decoded.firstBadByte == -1) {
            decoded.firstBadPlace = place;
            decoded.firstBadByte = (place + 1) * unitSize; // behind the mark
        }
    };
    SystemInfo::Internal::forEachLoneSurrogate(decoded.text, note);
    decoded.text = SystemInfo::Internal::validText(decoded.text);
    if (bytes.size() % unitSize != 0) {
        note(decoded.text.size());
        decoded.text += QChar(QChar::ReplacementCharacter);
    }
    return decoded;
}

DecodedText decode(const QByteArray& bytes)
{
    if (bytes.startsWith("\xff\xfe") || bytes.startsWith("\xfe\xff")) {
        return fromUtf16(bytes);
    }
    DecodedText decoded;
    decoded.text = QString::fromUtf8(bytes.constData(), bytes.size());
    findBadByte(bytes, decoded);
    return decoded;
}

bool parseJson(const QByteArray& json, CReport& report, QString& errorMessage)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        const int line = json.left(error.offset).count('\n') + 1;
        errorMessage = QStringLiteral("line %1, byte %2: this is no JSON: %3")
                           .arg(line)
                           .arg(error.offset)
                           .arg(error.errorString());
        return false;
    }
    report = CReport::fromJson(document, &errorMessage);
    return !report.isNull();
}

} // namespace

QString shownName(const QByteArray& fileName)
{
    return fileName == "-" ? QStringLiteral("standard input")
                           : QStringLiteral("'%1'").arg(QFile::decodeName(fileName));
}

bool readFile(const QByteArray& fileName, QByteArray& bytes, QString& errorMessage)
{
    QFile file(QFile::decodeName(fileName));
    const bool isOpen =
        fileName == "-" ? file.open(fileno(stdin), QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
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
    return true;
}

bool parseReport(const QByteArray& fileName, const QByteArray& bytes, CReport& report, QString& errorMessage)
{
    const DecodedText decoded = decode(bytes);
    if (decoded.firstBadByte != -1) {
        const int line = decoded.text.leftRef(decoded.firstBadPlace).count(QLatin1Char('\n')) + 1;
        printMessage(
            QStringLiteral("%1: line %2, byte %3: this is no text; U+FFFD stands for it and its like")
                .arg(shownName(fileName))
                .arg(line)
                .arg(decoded.firstBadByte + 1));
    }
    if (!CReport::isJson(decoded.text)) {
        report = CReport::fromText(decoded.text);
        return true;
    }
    if (!parseJson(decoded.text.toUtf8(), report, errorMessage)) {
        errorMessage.prepend(shownName(fileName) + QStringLiteral(": "));
        return false;
    }
    return true;
}

} // namespace norvex::Tool
