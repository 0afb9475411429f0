#pragma once

/// @file
/// The text of an XML document for QXmlStreamReader, without what that reader takes too long over or takes for
/// well-formed although it is not.

#include <QIODevice>
#include <QTextDecoder>
#include <QTextEncoder>

#include <cstdint>
#include <memory>

namespace norvex {

/// Reads a document in UTF-8, UTF-16 or the encoding that it declares, and gives it as UTF-8. It ends early, with
/// a failure, before the first byte that is no text in this encoding, when no element begins in the first 64 KiB
/// (declarations of a document type take quadratic time), and before a tag or text with 20,000 equals signs:
/// QXmlStreamReader compares each attribute with those before it.
class XmlInput : public QIODevice
{
public:
    /// @param source open for reading; must outlive this object
    explicit XmlInput(QIODevice& source);

    bool isSequential() const override { return true; }

    /// Call it as soon as the root element is known: only then does the document go on after its first 64 KiB.
    void beginRoot() { hasRoot_ = true; }

    /// Why the input ended early; empty when it did not.
    const QString& failure() const { return failure_; }
    /// Where the input ended early; 0 when reading the source failed, so that no line of the document is at fault.
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
    bool countByte(char c);
    void failAsInvalidText();
    void fail(const QString& reason);

    QIODevice& source_;
    QString encoding_ = QStringLiteral("UTF-8");
    std::unique_ptr<QTextDecoder> decoder_; ///< null for UTF-8 without a byte-order mark
    std::unique_ptr<QTextEncoder> encoder_;
    QByteArray piece_;              ///< valid UTF-8
    int given_ = 0;                 ///< bytes of piece_ that the reader has
    QByteArray partial_;            ///< the beginning of a character that ends in the next piece
    unsigned long long line_ = 1;   ///< at the end of piece_
    char last_ = 0;                 ///< byte of it
    std::uint64_t attributes_ = 0;  ///< at most so many since the last "<"
    std::uint64_t comparisons_ = 0; ///< of attributes, at most
    bool isFirst_ = true;
    bool isLast_ = false;
    bool hasRoot_ = false;
    bool hasSourceFailed_ = false;
    QString failure_;
};

} // namespace norvex
