#include "tools/terminal.h"

#include <QByteArray>

namespace norvex::Tool {

namespace {

/// The terminal's colours as people set them, not fixed ones: they are readable on any background.
int codeOf(Style style)
{
    switch (style) {
    case Style::Heading: return 1;
    case Style::Removed: return 31;
    case Style::Added: return 32;
    case Style::Changed: break;
    }
    return 33;
}

bool knowsColours()
{
    const QByteArray terminal = qgetenv("TERM");
    return !terminal.isEmpty() && terminal != "dumb" && qgetenv("NO_COLOR").isEmpty();
}

} // namespace

Painter::Painter(bool isTerminal) : hasColours_(isTerminal && knowsColours()) {}

QString Painter::painted(const QString& text, Style style) const
{
    return hasColours_ ? QStringLiteral("\x1b[%1m%2\x1b[0m").arg(QString::number(codeOf(style)), text) : text;
}

} // namespace norvex::Tool
