#pragma once

#include <QString>
#include <QVector>

namespace norvex::Viewer {

/// The lines of a text, and the columns that its characters take in a fixed-width font: none for marks that stand on
/// another character, two for the wide characters of East Asia, eight at most for a tabulator, one for all others. Looking
/// something up takes the same short time however long the text or its lines are.
///
/// An offset is a place in the text in UTF-16 code units.
class TextLines
{
public:
    static const int tabColumns = 8;

    TextLines() : TextLines(QString()) {}
    /// Takes time in proportion to the text, and shares it.
    explicit TextLines(const QString& text);

    const QString& text() const { return text_; }

    /// The number of lines; a text has at least one. What follows the last line feed is a line if there is something.
    int count() const { return begins_.size() - 1; }
    int begin(int line) const { return begins_.at(line); }
    /// Behind the last character of the line, in front of its line end.
    int end(int line) const;
    /// The line that an offset stands in.
    int lineAt(int offset) const;

    /// The columns of the line with the most.
    int mostColumns() const { return mostColumns_; }
    /// The column at which the character of an offset begins in its line.
    int columnAt(int offset) const;
    /// The offset of the character that stands at a column of a line, at most the line's end.
    int offsetAt(int line, int column) const;

private:
    /// Between them columns are counted.
    static const int checkpointDistance = 4096;

    QString text_;
    QVector<int> begins_;      // of the lines, and the end of the text
    QVector<int> checkpoints_; // the column of every checkpointDistance-th character
    int mostColumns_ = 0;
};

/// The first place not in front of `offset` at which a text can be cut in two: no character's halves nor a mark and its
/// character are separated.
int cutAt(const QString& text, int offset, int end);

/// A part of a text as it is shown: with symbols for characters that do not print or that change how their neighbours
/// are shown.
QString shownText(const QString& text, int begin, int end);

} // namespace norvex::Viewer
