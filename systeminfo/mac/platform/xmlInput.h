#pragma once

/// @file
/// Prepares an XML document for QXmlStreamReader: converts it to UTF-8, and ends it where it has what would take that
/// reader quadratic time or what the reader accepts although it is not well-formed.

#include <QIODevice>
#include <QTextDecoder>
#include <QTextEncoder>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace norvex {

/// Finds what takes QXmlStreamReader quadratic time: many attributes in one tag, because it compares each with all
/// others, and declarations in a document type.
class MarkupScanner
{
public:
    /// Takes the next byte of a document.
    /// @return why the document is refused; null while it is not
    const char* next(char c);

private:
    enum class State {
        Text,
        Tag,
        Quoted, ///< an attribute's value
        Section ///< a comment, a CDATA section or a processing instruction
    };

    const char* nextInTag(char c);

    State state_ = State::Text;
    std::string head_; ///< the first bytes behind the "<"
    char quote_ = 0;   ///< around the value
    std::string_view sectionEnd_;
    std::string sectionTail_; ///< the last bytes of a section
    int attributes_ = 0;      ///< of the tag
};

/// Reads a document in UTF-8, UTF-16 or the encoding that it declares, and gives it as UTF-8. It ends early, with a
/// failure, at the first byte that is not valid in its encoding, and where the scanner refuses the document.
class XmlInput : public QIODevice
{
public:
    /// @param source open for reading; must outlive this object
    explicit XmlInput(QIODevice& source);

    bool isSequential() const override { return true; }

    /// Why the input ended early; empty when it did not.
    const QString& failure() const { return failure_; }
    /// The line at which the input ended early; 0 when the source could not be read, so that no line is at fault.
    unsigned long long failureLine() const { return hasSourceFailed_ ? 0 : line_; }

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    void nextPiece();
    QByteArray readSource();
    void chooseEncoding(const QByteArray& head);
    QByteArray toUtf8(const QByteArray& bytes);
    void blankDeclaration();
    void checkPiece();
    void failAsInvalidText();
    void fail(const QString& reason);

    QIODevice& source_;
    QString encoding_ = QStringLiteral("UTF-8");
    bool canFail_ = true; ///< whether the decoder reports invalid bytes; others replace them silently
    std::unique_ptr<QTextDecoder> decoder_; ///< null for UTF-8 without a byte-order mark
    std::unique_ptr<QTextEncoder> encoder_;
    QByteArray piece_;            ///< valid UTF-8
    int given_ = 0;               ///< bytes of piece_ that the reader has
    QByteArray partial_;          ///< the first bytes of a character that the next piece completes
    unsigned long long line_ = 1; ///< at the end of piece_
    char last_ = 0;               ///< the last byte of piece_
    MarkupScanner scanner_;
    bool isFirst_ = true;
    bool isLast_ = false;
    bool hasSourceFailed_ = false;
    QString failure_;
};

} // namespace norvex
