#include "tools/record/recordingWriter.h"

#include <QString>
#include <QTextCodec>
#include <QXmlStreamWriter>

#include <algorithm>

namespace norvex::Tool {

namespace {

using Kind = RecordedValue::Kind;

/// The shortest text that toDouble() reads back as the same number.
QString realText(double number)
{
    constexpr int alwaysEnough = 17;
    QByteArray text;
    for (int digits = 15; digits <= alwaysEnough; ++digits) {
        text = QByteArray::number(number, 'g', digits);
        if (text.toDouble() == number) {
            break;
        }
    }
    return QString::fromLatin1(text);
}

/// A byte order mark is a character of the text.
QString decoded(const QByteArray& utf8)
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    return QTextCodec::codecForName("UTF-8")->toUnicode(utf8.constData(), utf8.size(), &state);
}

bool isXmlCharacter(ushort unit)
{
    return unit >= 0x20 ? unit < 0xfffe : (unit == '\t' || unit == '\n' || unit == '\r');
}

class Writer
{
public:
    Writer() : xml_(&text_)
    {
        xml_.setAutoFormatting(true);
        xml_.setAutoFormattingIndent(1);
    }

    QByteArray document(const RecordedValue& root)
    {
        xml_.writeStartDocument();
        xml_.writeStartElement(QStringLiteral("plist"));
        xml_.writeAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
        write(root);
        xml_.writeEndDocument();
        return text_;
    }

private:
    void write(const RecordedValue& value)
    {
        switch (value.kind) {
        case Kind::Text: writeText(QStringLiteral("string"), value.bytes); break;
        case Kind::Boolean:
            xml_.writeEmptyElement(value.number != 0 ? QStringLiteral("true") : QStringLiteral("false"));
            break;
        case Kind::Integer:
            xml_.writeStartElement(QStringLiteral("integer"));
            xml_.writeAttribute(QStringLiteral("size"), QString::number(value.size));
            xml_.writeCharacters(QString::number(value.number));
            xml_.writeEndElement();
            break;
        case Kind::Real: xml_.writeTextElement(QStringLiteral("real"), realText(value.realNumber)); break;
        case Kind::Data:
            xml_.writeTextElement(QStringLiteral("data"), QString::fromLatin1(value.bytes.toBase64()));
            break;
        case Kind::Dictionary: writeItems(QStringLiteral("dict"), value); break;
        case Kind::Array: writeItems(QStringLiteral("array"), value); break;
        }
    }

    void writeItems(const QString& element, const RecordedValue& container)
    {
        xml_.writeStartElement(element);
        for (const RecordedValue::Item& item : container.items) {
            if (container.kind == Kind::Dictionary) {
                writeText(QStringLiteral("key"), item.key);
            }
            write(item.value);
        }
        xml_.writeEndElement();
    }

    /// A parser turns a literal carriage return into a line feed.
    void writeText(const QString& element, const QByteArray& utf8)
    {
        xml_.writeStartElement(element);
        xml_.setAutoFormatting(false); // it would indent the references
        const QString text = decoded(utf8);
        int start = 0;
        for (int end = text.indexOf(QLatin1Char('\r')); end >= 0;
             end = text.indexOf(QLatin1Char('\r'), start)) {
            xml_.writeCharacters(text.mid(start, end - start));
            xml_.writeEntityReference(QStringLiteral("#13"));
            start = end + 1;
        }
        xml_.writeCharacters(text.mid(start));
        xml_.writeEndElement();
        xml_.setAutoFormatting(true);
    }

    QByteArray text_;
    QXmlStreamWriter xml_;
};

} // namespace

QByteArray xmlText(const QByteArray& utf8)
{
    if (std::all_of(utf8.begin(), utf8.end(), [](char c) { return c >= 0x20 && c < 0x7f; })) {
        return utf8;
    }
    QString text = decoded(utf8);
    for (int i = 0; i < text.size(); ++i) {
        const QChar unit = text.at(i);
        if (unit.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            ++i;
        } else if (unit.isSurrogate() || !isXmlCharacter(unit.unicode())) {
            text[i] = unit.unicode() < 0x20 ? QChar(QLatin1Char('?')) : QChar(QChar::ReplacementCharacter);
        }
    }
    return text.toUtf8();
}

QByteArray recordingText(const RecordedValue& recording)
{
    return Writer().document(recording);
}

} // namespace norvex::Tool
