#pragma once

#include <QKeySequence>

namespace norvex {
namespace Viewer {

/// A key pressed with others. The sum of two different enumerations, as Qt writes it, is an error for some compilers.
/// @param modifiers the sum of values of Qt::Modifier
inline QKeySequence keys(int modifiers, Qt::Key key)
{
    return QKeySequence(modifiers + key);
}

} // namespace Viewer
} // namespace norvex
