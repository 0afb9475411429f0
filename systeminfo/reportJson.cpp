#include "systeminfo/reportPrivate.h"
#include "systeminfo/reportQuantities.h"
#include "systeminfo/surrogates.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QObject>

#include <algorithm>

namespace norvex::SystemInfo {

using namespace Internal;

namespace {

constexpr int formatNumber = 1;
constexpr qint64 mostCharacters = qint64(64) * 1024 * 1024;
constexpr qint64 mostLines = 1000000;

/// The names of the document's members.
struct Keys
{
    const QString format = QStringLiteral("format");
    const QString content = QStringLiteral("content");
    const QString banner = QStringLiteral("banner");
    const QString section = QStringLiteral("section");
    const QString half = QStringLiteral("half");
    const QString heading = QStringLiteral("heading");
    const QString separator = QStringLiteral("separator");
    const QString block = QStringLiteral("block");
    const QString label = QStringLiteral("label");
    const QString value = QStringLiteral("value");
    const QString values = QStringLiteral("values");
    const QString number = QStringLiteral("number");
    const QString unit = QStringLiteral("unit");
    const QString line = QStringLiteral("line");
    const QString text = QStringLiteral("text");
    const QString end = QStringLiteral("end");
    const QString utf16 = QStringLiteral("utf16");
};

const Keys& keys()
{
    static const Keys keys;
    return keys;
}

/// What speaks against a text as JSON; empty for nothing.
QString limitMessage(const QString& text)
{
    if (text.size() > mostCharacters) {
        return QObject::tr("The report has more than %1 characters.").arg(mostCharacters);
    }
    const qint64 lines = text.count(QLatin1Char('\n'));
    if (lines > mostLines) {
        return QObject::tr("The report has more than %1 lines.").arg(mostLines);
    }
#if QT_VERSION < QT_VERSION_CHECK(5, 15, 0)
    // These keep a document in one piece of at most 128 Mi bytes, and leave out what does not fit.
    constexpr qint64 bytesForCharacter = 16;
    constexpr qint64 bytesForLine = 400;
    constexpr qint64 mostBytes = qint64(128) * 1024 * 1024;
    if (text.size() * bytesForCharacter + (lines + 1) * bytesForLine > mostBytes) {
        return QObject::tr("The report is too long for JSON documents of this version of Qt.");
    }
#endif
    return QString();
}

/// Four hexadecimal digits for each of the text's UTF-16 code units.
QString codeUnits(const QString& text)
{
    QByteArray bytes;
    bytes.reserve(text.size() * 2);
    for (const QChar character : text) {
        bytes += static_cast<char>(character.row());
        bytes += static_cast<char>(character.cell());
    }
    return QString::fromLatin1(bytes.toHex());
}

class JsonWriter
{
public:
    explicit JsonWriter(const CReportPrivate& report) : report_(report), text_(report.text) {}

    QJsonDocument document() const;

private:
    QJsonObject part(const Part& part, int end) const;
    QJsonObject section(const Part& part, int end) const;
    QJsonArray content(const Container& container) const;
    QJsonObject piece(const Piece& piece, const Container& container) const;
    QJsonObject entry(const Piece& piece, const SectionFormat* format) const;
    void insertText(QJsonObject& object, const QString& key, int begin, int end) const;

    const CReportPrivate& report_;
    const QString& text_;
};

QJsonDocument JsonWriter::document() const
{
    QJsonArray content;
    for (int i = 0; i < report_.parts.size(); ++i) {
        content.append(part(report_.parts.at(i), report_.endOf(i)));
    }
    QJsonObject document;
    document.insert(keys().content, content);
    document.insert(keys().format, formatNumber);
    return QJsonDocument(document);
}

QJsonObject JsonWriter::part(const Part& part, int end) const
{
    QJsonObject object;
    switch (part.type) {
    case Part::Section: return section(part, end);
    case Part::Banner:
        object.insert(keys().banner, QLatin1String(halfName(part.half)));
        insertText(object, keys().text, part.begin, end);
        break;
    case Part::Separator: insertText(object, keys().separator, part.begin, end); break;
    case Part::Lines: insertText(object, keys().line, part.begin, end); break;
    }
    return object;
}

QJsonObject JsonWriter::section(const Part& part, int end) const
{
    QJsonObject object;
    object.insert(keys().content, content(contentOf(text_, part, end)));
    const Line heading = headingOf(text_, part, end);
    if (heading.next != part.begin) {
        insertText(object, keys().heading, part.begin, heading.next);
    }
    if (halfOf(part) != Half::None) {
        object.insert(keys().half, QLatin1String(halfName(halfOf(part))));
    }
    object.insert(keys().section, validText(sectionName(text_, part, end)));
    return object;
}

QJsonArray JsonWriter::content(const Container& container) const
{
    QJsonArray content;
    PieceReader reader(text_, container);
    for (Piece each; reader.next(each);) {
        content.append(piece(each, container));
    }
    return content;
}

QJsonObject JsonWriter::piece(const Piece& piece, const Container& container) const
{
    QJsonObject object;
    switch (piece.type) {
    case Piece::Entry: return entry(piece, container.format);
    case Piece::Block:
        object.insert(keys().block, validText(blockName(text_, piece, *container.format)));
        object.insert(keys().content, content(contentOf(piece, *container.format)));
        break;
    case Piece::Lines: insertText(object, keys().line, piece.begin, piece.end); break;
    }
    return object;
}

QJsonObject JsonWriter::entry(const Piece& piece, const SectionFormat* format) const
{
    QJsonObject object;
    const QString value = valueOf(text_, piece, format);
    object.insert(keys().label, validText(labelOf(text_, piece.entry)));
    if (piece.entry.format != nullptr) {
        QJsonArray numbers;
        QJsonArray units;
        const QVector<Quantity> quantities = quantitiesIn(value, piece.entry.format->kind);
        for (const Quantity& quantity : quantities) {
            numbers.append(quantity.number);
            units.append(QLatin1String(quantity.unit));
        }
        if (!numbers.isEmpty()) {
            const bool isOne = numbers.size() == 1;
            object.insert(keys().number, isOne ? numbers.first() : QJsonValue(numbers));
            object.insert(keys().unit, isOne ? units.first() : QJsonValue(units));
        }
    }
    insertText(object, keys().text, piece.begin, piece.end);
    object.insert(keys().value, validText(value));
    if (isList(piece.entry)) {
        QStringList values = valuesOf(text_, piece, format);
        std::transform(values.begin(), values.end(), values.begin(), validText);
        object.insert(keys().values, QJsonArray::fromStringList(values));
    }
    return object;
}

/// The lines from one place to another, and what their line end or their characters need beside.
void JsonWriter::insertText(QJsonObject& object, const QString& key, int begin, int end) const
{
    const int lineEnd = withoutLineEnd(text_, begin, end);
    const QString text = text_.mid(begin, lineEnd - begin);
    const QString valid = validText(text);
    object.insert(key, valid);
    if (end - lineEnd != 1) {
        object.insert(keys().end, text_.mid(lineEnd, end - lineEnd));
    }
    if (valid != text) {
        object.insert(keys().utf16, codeUnits(text));
    }
}

/// Puts the texts of a document one behind the other.
class JsonReader
{
public:
    /// The text; null after a failure.
    QString read(const QJsonDocument& json);
    QString errorMessage() const { return errorMessage_; }

private:
    enum Level { Top, InSection, InBlock };

    bool readContent(const QJsonObject& object, Level level, const QString& place);
    bool readItem(const QJsonObject& item, Level level, const QString& place);
    bool readSection(const QJsonObject& section, const QString& place);
    bool readText(const QJsonObject& object, const QString& key, const QString& place);
    bool readCodeUnits(const QJsonValue& hex, QString& text) const;
    bool append(const QString& text);
    bool fail(const QString& place, const QString& reason);

    QString text_ = QString(QLatin1String(""));
    QString errorMessage_;
};

QString JsonReader::read(const QJsonDocument& json)
{
    const QJsonObject document = json.object();
    const QString root = QStringLiteral("document");
    bool isRead = false;
    if (!json.isObject()) {
        fail(root, QObject::tr("is no object"));
    } else if (document.value(keys().format) != QJsonValue(formatNumber)) {
        fail(root, QObject::tr("has another format than %1").arg(formatNumber));
    } else {
        isRead = readContent(document, Top, QString());
    }
    return isRead ? text_ : QString();
}

bool JsonReader::fail(const QString& place, const QString& reason)
{
    errorMessage_ = QObject::tr("This is no report: %1 %2.").arg(place, reason);
    return false;
}

bool JsonReader::readContent(const QJsonObject& object, Level level, const QString& place)
{
    const QJsonValue content = object.value(keys().content);
    const QString list = place + keys().content;
    if (!content.isArray()) {
        return fail(list, QObject::tr("is no list"));
    }
    int index = 0;
    const QJsonArray items = content.toArray();
    for (const QJsonValue item : items) {
        const QString itemPlace = list + QStringLiteral("[%1]").arg(index++);
        if (!item.isObject()) {
            return fail(itemPlace, QObject::tr("is no object"));
        }
        if (!readItem(item.toObject(), level, itemPlace)) {
            return false;
        }
    }
    return true;
}

bool JsonReader::readItem(const QJsonObject& item, Level level, const QString& place)
{
    if (item.contains(keys().line)) {
        return readText(item, keys().line, place);
    }
    if (level == Top) {
        if (item.contains(keys().section)) {
            return readSection(item, place);
        }
        if (item.contains(keys().banner)) {
            return readText(item, keys().text, place);
        }
        if (item.contains(keys().separator)) {
            return readText(item, keys().separator, place);
        }
        return fail(place, QObject::tr("is no banner, section, separator or line"));
    }
    if (level == InSection && item.contains(keys().block)) {
        return readContent(item, InBlock, place + QLatin1Char('.'));
    }
    return item.contains(keys().label) ? readText(item, keys().text, place)
                                       : fail(place, QObject::tr("is no entry, line, or block of a section"));
}

bool JsonReader::readSection(const QJsonObject& section, const QString& place)
{
    return (!section.contains(keys().heading) || readText(section, keys().heading, place)) &&
           readContent(section, InSection, place + QLatin1Char('.'));
}

bool JsonReader::readText(const QJsonObject& object, const QString& key, const QString& place)
{
    const QJsonValue value = object.value(key);
    if (!value.isString()) {
        return fail(place + QLatin1Char('.') + key, QObject::tr("is no text"));
    }
    QString text = value.toString();
    if (object.contains(keys().utf16) && !readCodeUnits(object.value(keys().utf16), text)) {
        return fail(place + QLatin1Char('.') + keys().utf16, QObject::tr("does not spell the text"));
    }
    const QString end = object.value(keys().end).toString(QStringLiteral("\n"));
    if (object.contains(keys().end) && end != QLatin1String("\r\n") && !end.isEmpty()) {
        return fail(place + QLatin1Char('.') + keys().end, QObject::tr("is no line end"));
    }
    return append(text) && append(end);
}

/// Replaces a text by the one that it stands for.
bool JsonReader::readCodeUnits(const QJsonValue& hex, QString& text) const
{
    constexpr int digitsForUnit = 4;
    const QString digits = hex.toString();
    const QByteArray bytes = QByteArray::fromHex(digits.toLatin1());
    if (digits.size() != text.size() * digitsForUnit || bytes.size() != text.size() * 2) {
        return false;
    }
    QString exact(text.size(), Qt::Uninitialized);
    for (int i = 0; i < exact.size(); ++i) {
        exact[i] = QChar(static_cast<uchar>(bytes.at(2 * i + 1)), static_cast<uchar>(bytes.at(2 * i)));
    }
    const bool isSpelled = validText(exact) == text;
    text = exact;
    return isSpelled;
}

bool JsonReader::append(const QString& text)
{
    if (qint64(text_.size()) + text.size() > mostCharacters) {
        errorMessage_ = QObject::tr("The report has more than %1 characters.").arg(mostCharacters);
        return false;
    }
    text_ += text;
    return true;
}

void setMessage(QString* target, const QString& message)
{
    if (target != nullptr) {
        *target = message;
    }
}

} // namespace

QJsonDocument CReport::toJson(QString* errorMessage) const
{
    const QString message = limitMessage(text());
    setMessage(errorMessage, message);
    if (!message.isEmpty()) {
        return QJsonDocument();
    }
    return isNull() ? JsonWriter(CReportPrivate(QString())).document() : JsonWriter(*d).document();
}

bool CReport::isJson(const QString& text)
{
    const auto skipBlanks = [&text](int place) {
        while (place < text.size() && text.at(place).isSpace()) {
            ++place;
        }
        return place;
    };
    const int begin = skipBlanks(0);
    const int next = skipBlanks(begin + 1);
    return next < text.size() && text.at(begin) == QLatin1Char('{') && text.at(next) == QLatin1Char('"');
}

CReport CReport::fromJson(const QJsonDocument& json, QString* errorMessage)
{
    JsonReader reader;
    const QString text = reader.read(json);
    const QString message = reader.errorMessage().isEmpty() ? limitMessage(text) : reader.errorMessage();
    setMessage(errorMessage, message);
    return message.isEmpty() ? fromText(text) : CReport();
}

} // namespace norvex::SystemInfo
