#pragma once

#include <QString>

namespace norvex::Tool {

/// What a piece of a text is, for the eye.
enum class Style { Heading, Added, Removed, Changed };

/// Gives pieces of a text the colours of a terminal, or none.
class Painter
{
public:
    /// @param isTerminal whether the text goes to a terminal. It gets no colours all the same if that has none, or if
    ///        NO_COLOR is set.
    explicit Painter(bool isTerminal);

    QString painted(const QString& text, Style style) const;

private:
    const bool hasColours_;
};

} // namespace norvex::Tool
