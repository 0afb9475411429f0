#pragma once

/// @file
/// How a text falls into the parts of a report, and a part into blocks, entries and lines. Everything here is
/// places in a text that the caller has; nothing is copied.

#include "systeminfo/reportFormat.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace norvex::SystemInfo::Internal {

/// A part of a report outside its sections, or a section. It ends where the next one begins, the last one with the
/// text. There may be millions of them, so they are small.
struct Part
{
    enum Type : quint8 { Banner, Section, Separator, Lines };

    int begin;
    qint16 formatIndex; ///< of sectionFormats(), or unknownFormat
    Type type;
    Half half; ///< of a banner its own; of a section that is in no table the one of the banner above it

    static constexpr qint16 unknownFormat = -1;

    const SectionFormat* format() const
    {
        return formatIndex == unknownFormat ? nullptr : sectionFormats().data() + formatIndex;
    }
};

/// The parts of a text, in linear time.
QVector<Part> partsOf(const QString& text);

/// The place of a label and its value in a line. The value of a list or of a variable goes on behind the line.
struct EntryPlace
{
    int labelBegin;
    int labelEnd;
    int valueBegin;
    int valueEnd;
    const EntryFormat* format; ///< null for a label, a colon and a text
};

/// A piece of a section or block.
struct Piece
{
    enum Type : quint8 { Block, Entry, Lines };

    Type type;
    int begin;
    int end;          ///< behind the last line end
    int number;       ///< of a block: its place among the blocks, from 1
    EntryPlace entry; ///< of an entry
};

/// The lines of a section or block that are its content, and what is known of them.
struct Container
{
    const SectionFormat* format;
    int begin;
    int end;
    int ownLines;   ///< so many lines at the begin are no entries
    bool hasBlocks; ///< whether blocks stand here
};

/// The heading of a section; empty, at its begin, when it has none. A section that is in no table has its first line
/// for a heading unless that has a value.
Line headingOf(const QString& text, const Part& part, int end);
/// The content of a section behind its heading.
Container contentOf(const QString& text, const Part& part, int end);
/// The content of a block of that section.
Container contentOf(const Piece& block, const SectionFormat& format);

/// The pieces of a section or block, one after the other.
class PieceReader
{
public:
    /// The text must outlive the reader.
    PieceReader(const QString& text, const Container& container);

    /// Whether there was another piece, which is in `piece` then.
    bool next(Piece& piece);

private:
    bool opensBlockHere(const Line& line) const;
    bool readEntry(const Line& line, EntryPlace& entry) const;
    int blockEnd(const Line& first) const;
    int entryEnd(const Line& line, const EntryPlace& entry) const;
    int linesEnd(const Line& first);

    const QString& text_;
    const Container container_;
    int position_;
    int blocks_ = 0;
    int ownLines_;
};

/// The name of a section: its own in the table, or what its first line says.
QString sectionName(const QString& text, const Part& part, int end);
/// The name of a block, its number in decimal where nothing names it.
QString blockName(const QString& text, const Piece& block, const SectionFormat& format);
QString labelOf(const QString& text, const EntryPlace& entry);
/// The value, those of a list with a line feed between them.
QString valueOf(const QString& text, const Piece& entry, const SectionFormat* format);
QStringList valuesOf(const QString& text, const Piece& entry, const SectionFormat* format);
bool isList(const EntryPlace& entry);

/// Where the last line end of a piece or part begins: "\n", "\r\n" or nothing.
int withoutLineEnd(const QString& text, int begin, int end);

} // namespace norvex::SystemInfo::Internal

Q_DECLARE_TYPEINFO(norvex::SystemInfo::Internal::Part, Q_PRIMITIVE_TYPE);
