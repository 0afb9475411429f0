#include "systeminfo/boundedText.h"

#include <QVector>

namespace norvex::SystemInfo::Internal {

QString boundedText(const QString& text, int longest)
{
    const QVector<uint> dots(3, '.');
    QVector<uint> shown;
    for (const uint character : text.toUcs4()) {
        if (QChar::isPrint(character)) {
            shown += character;
        } else {
            shown += QStringLiteral("\\x%1").arg(character, 2, 16, QLatin1Char('0')).toUcs4();
        }
    }
    if (shown.size() > longest) {
        const int kept = longest - dots.size();
        const int tail = kept / 2;
        shown = shown.mid(0, kept - tail) + dots + shown.mid(shown.size() - tail);
    }
    return QString::fromUcs4(shown.constData(), shown.size());
}

} // namespace norvex::SystemInfo::Internal
