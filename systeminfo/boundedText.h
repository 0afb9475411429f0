#pragma once

#include <QString>

namespace norvex::SystemInfo::Internal {

/// A text from outside as a message quotes it: in one line, each character that does not print escaped ("\x1b"), and
/// the middle of a longer text replaced with three dots.
/// @param longest characters of the result
QString boundedText(const QString& text, int longest);

} // namespace norvex::SystemInfo::Internal
