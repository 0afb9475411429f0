#include "systeminfo/mac/platform/xmlInput.h"

#include <QFileDevice>
#include <QTextCodec>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstring>
#include <utility>

namespace norvex {

namespace {

constexpr int pieceSize = 1 << 16;

constexpr int maxAttributes = 64; // in a tag; those of property lists have one at most

/// The encoding that an XML declaration names; null for UTF-8, and where Qt does not know it.
QTextCodec* declaredCodec(const QByteArray& head)
{
    if (!head.startsWith("<?xml")) {
        return nullptr;
    }
    QXmlStreamReader declaration(head.left(head.indexOf('>') + 1));
    declaration.readNext();
    const QByteArray name = declaration.documentEncoding().toLatin1();
    QTextCodec* const codec = name.isEmpty() ? nullptr : QTextCodec::codecForName(name);
    constexpr int mibOfUtf8 = 106;
    return codec == nullptr || codec->mibEnum() == mibOfUtf8 ? nullptr : codec;
}

/// Null for UTF-8 without a byte-order mark.
QTextCodec* codecOf(const QByteArray& head)
{
    if (QTextCodec* const marked = QTextCodec::codecForUtfText(head, nullptr)) {
        return marked;
    }
    if (head.startsWith(QByteArray("<\0", 2))) {
        return QTextCodec::codecForName("UTF-16LE");
    }
    if (head.startsWith(QByteArray("\0<", 2))) {
        return QTextCodec::codecForName("UTF-16BE");
    }
    return declaredCodec(head);
}

/// The size of a text in UTF-8 without the character that its end cuts off, if it cuts one.
int sizeOfWholeCharacters(const QByteArray& text)
{
    const int size = text.size();
    for (int length = 1; length <= std::min(3, size); ++length) {
        const auto byte = static_cast<unsigned char>(text[size - length]);
        if ((byte & 0xc0U) != 0x80U) {
            const int needed = byte < 0xc0 ? 1 : byte < 0xe0 ? 2 : byte < 0xf0 ? 3 : 4;
            return needed > length ? size - length : size;
        }
    }
    return size;
}

/// The size of a text up to its first byte that is not valid UTF-8 or is zero: QXmlStreamReader would take the text for
/// UTF-16 because of zeros.
int sizeOfValidUtf8(const QByteArray& text)
{
    const void* const zero = std::memchr(text.constData(), 0, static_cast<std::size_t>(text.size()));
    const int size = zero == nullptr ? text.size() : int(static_cast<const char*>(zero) - text.constData());
    QTextCodec* const utf8 = QTextCodec::codecForName("UTF-8");
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    const QString decoded = utf8->toUnicode(text.constData(), size, &state);
    if (state.invalidChars == 0 && state.remainingChars == 0) {
        return size;
    }
    const QByteArray again = decoded.toUtf8();
    const auto end = again.cbegin() + std::min(again.size(), size);
    const auto same = std::mismatch(again.cbegin(), end, text.cbegin()).first - again.cbegin();
    return sizeOfWholeCharacters(text.left(int(same)));
}

/// What ends a section that begins with "<" and these bytes; empty for other markup.
std::string_view sectionEndOf(std::string_view head)
{
    if (head == "?") {
        return "?>";
    }
    if (head == "!--") {
        return "-->";
    }
    return head == "![CDATA[" ? "]]>" : "";
}

} // namespace

const char* MarkupScanner::next(char c)
{
    switch (state_) {
    case State::Text:
        if (c == '<') {
            state_ = State::Tag;
            head_.clear();
            attributes_ = 0;
        }
        break;
    case State::Tag: return nextInTag(c);
    case State::Quoted:
        if (c == quote_) {
            state_ = State::Tag;
        }
        break;
    case State::Section:
        sectionTail_.erase(0, sectionTail_.size() == sectionEnd_.size() ? 1 : 0);
        sectionTail_ += c;
        if (sectionTail_ == sectionEnd_) {
            state_ = State::Text;
        }
        break;
    }
    return nullptr;
}

const char* MarkupScanner::nextInTag(char c)
{
    constexpr std::string_view documentType = "!DOCTYPE";
    if (head_.size() < documentType.size()) {
        head_ += c;
        sectionEnd_ = sectionEndOf(head_);
        if (!sectionEnd_.empty()) {
            state_ = State::Section;
            sectionTail_.clear();
            return nullptr;
        }
    }
    if (c == '"' || c == '\'') {
        state_ = State::Quoted;
        quote_ = c;
    } else if (c == '>') {
        state_ = State::Text;
    } else if (c == '[' && head_ == documentType) {
        return "the document type has declarations of its own";
    } else if (c == '=') {
        ++attributes_;
    }
    return attributes_ <= maxAttributes ? nullptr : "too many attributes";
}

XmlInput::XmlInput(QIODevice& source) : source_(source)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 XmlInput::readData(char* data, qint64 maxSize)
{
    if (given_ == piece_.size()) {
        nextPiece();
    }
    const qint64 size = std::min<qint64>(maxSize, piece_.size() - given_);
    std::memcpy(data, piece_.constData() + given_, std::size_t(size));
    given_ += int(size);
    return size;
}

void XmlInput::nextPiece()
{
    piece_.clear();
    given_ = 0;
    while (piece_.isEmpty() && !isLast_) {
        const QByteArray bytes = readSource();
        if (std::exchange(isFirst_, false)) {
            chooseEncoding(bytes);
            piece_ = toUtf8(bytes);
            blankDeclaration();
        } else {
            piece_ = partial_ + toUtf8(bytes);
        }
        const int whole = isLast_ ? piece_.size() : sizeOfWholeCharacters(piece_);
        partial_ = piece_.mid(whole);
        piece_.truncate(whole);
        checkPiece();
    }
}

QByteArray XmlInput::readSource()
{
    QByteArray bytes(pieceSize, Qt::Uninitialized);
    int size = 0;
    qint64 got = 0;
    do {
        got = source_.read(bytes.data() + size, pieceSize - size);
        size += int(std::max<qint64>(got, 0));
    } while (got > 0 && size < pieceSize);
    bytes.truncate(size);
    isLast_ = got <= 0;
    const auto* const file = qobject_cast<const QFileDevice*>(&source_);
    if (got < 0 && (file == nullptr || file->error() != QFileDevice::NoError)) {
        hasSourceFailed_ = true;
        fail(source_.errorString());
        bytes.clear();
    }
    return bytes;
}

void XmlInput::chooseEncoding(const QByteArray& head)
{
    if (QTextCodec* const codec = codecOf(head)) {
        encoding_ = QString::fromLatin1(codec->name());
        canFail_ = encoding_.startsWith("UTF-16") || encoding_.startsWith("UTF-32") || encoding_ == "UTF-8";
        decoder_.reset(codec->makeDecoder());
        encoder_.reset(QTextCodec::codecForName("UTF-8")->makeEncoder(QTextCodec::IgnoreHeader));
    }
}

/// The decoder and the encoder keep what the end of a piece cuts: the first bytes of a character, the first half of a
/// surrogate pair. They convert line by line, so that a failure leaves all lines before it.
QByteArray XmlInput::toUtf8(const QByteArray& bytes)
{
    if (decoder_ == nullptr) {
        return bytes;
    }
    QByteArray text;
    for (int begin = 0, end = 0; begin < bytes.size(); begin = end) {
        end = bytes.indexOf('\n', begin);
        end = end == -1 ? bytes.size() : end + 1;
        while (end < bytes.size() && bytes[end] == 0) { // the rest of a line feed in UTF-16 or UTF-32
            ++end;
        }
        const QString line = decoder_->toUnicode(bytes.constData() + begin, end - begin);
        const QByteArray utf8 = encoder_->fromUnicode(line);
        const bool isCutOff = isLast_ && end == bytes.size() && decoder_->needsMoreData();
        const bool isReplaced = !canFail_ && line.contains(QChar::ReplacementCharacter);
        if (decoder_->hasFailure() || encoder_->hasFailure() || isCutOff || isReplaced) {
            failAsInvalidText();
            break;
        }
        text += utf8;
    }
    return text;
}

/// Overwrites the XML declaration with blanks: the text no longer has the encoding that it declares, and
/// QXmlStreamReader refuses all versions but 1.0.
void XmlInput::blankDeclaration()
{
    const int end = piece_.startsWith("<?xml ") ? piece_.indexOf("?>") + 2 : 0;
    std::replace_if(
        piece_.begin(), piece_.begin() + end, [](char c) { return c != '\n' && c != '\r'; }, ' ');
}

void XmlInput::checkPiece()
{
    const int valid = sizeOfValidUtf8(piece_);
    if (valid < piece_.size()) {
        piece_.truncate(valid);
        failAsInvalidText();
    }
    for (const char c : qAsConst(piece_)) {
        if (const char* const refusal = scanner_.next(c)) {
            piece_.clear();
            fail(QString::fromLatin1(refusal));
            return;
        }
        if (c == '\r' || (c == '\n' && last_ != '\r')) {
            ++line_;
        }
        last_ = c;
    }
}

void XmlInput::failAsInvalidText()
{
    fail(QStringLiteral("not well-formed XML: the text is not valid %1").arg(encoding_));
}

void XmlInput::fail(const QString& reason)
{
    if (failure_.isEmpty()) {
        failure_ = reason;
    }
    partial_.clear();
    isLast_ = true;
}

} // namespace norvex
