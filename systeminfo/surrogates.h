#pragma once

#include <QString>

namespace norvex::SystemInfo::Internal {

/// Calls `visit` with the place of each surrogate that is not half of a pair.
template <typename Visit>
void forEachLoneSurrogate(const QString& text, Visit visit)
{
    for (int i = 0; i < text.size(); ++i) {
        if (!text.at(i).isSurrogate()) {
            continue;
        }
        const bool isPair =
            text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (isPair) {
            ++i;
        } else {
            visit(i);
        }
    }
}

/// The text with U+FFFD in place of each lone surrogate, which UTF-8 cannot encode.
inline QString validText(const QString& text)
{
    QString valid = text;
    forEachLoneSurrogate(text, [&valid](int place) { valid[place] = QChar(QChar::ReplacementCharacter); });
    return valid;
}

} // namespace norvex::SystemInfo::Internal
