#include "systeminfo/privacy/spellings.h"

#include <algorithm>
#include <iterator>

namespace norvex::Privacy {

namespace {

constexpr int netBiosLength = 15; ///< what Windows keeps of the name of a host

QString onlyIts(const QString& text, bool (*isIts)(QChar))
{
    QString result;
    std::copy_if(text.begin(), text.end(), std::back_inserter(result), isIts);
    return result;
}

bool isAscii(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

} // namespace

QString asFileName(const QString& text, QChar separator)
{
    const QString decomposed = isAscii(text) ? text : text.normalized(QString::NormalizationForm_D);
    QString result = onlyIts(decomposed, [](QChar c) {
        return !c.isMark() && c != QLatin1Char('\'') && c != QChar(0x2019) && c != QChar(0x2bc);
    });
    for (QChar& c : result) {
        const bool mayStand = c == QLatin1Char('.') || c == QLatin1Char('-') || c == QLatin1Char('_');
        c = c.isLetterOrNumber() || mayStand ? c : separator;
    }
    return result;
}

QString spelled(const QString& text, int way)
{
    switch (way) {
    case 0: return text;
    case 1: return QString::fromLatin1(text.toUtf8().toPercentEncoding());
    case 2: return QString(text).replace(QLatin1Char('-'), QLatin1String("--")); // by the device mapper
    case 3: return asFileName(text, QLatin1Char('-'));
    case 4: return asFileName(text, QLatin1Char('_'));
    case 5: return QString(text).replace(QLatin1Char(' '), QLatin1String("\\x20")); // by udev
    case 6: return QString(text).replace(QLatin1Char(' '), QLatin1String("\\040")); // by the mount table
    case 7: return asFileName(text, QLatin1Char(' ')).remove(QLatin1Char(' '));
    case 8: return QString(text).replace(QChar(0x2019), QLatin1Char('\''));
    case 9: return QString(text).replace(QLatin1Char('\''), QChar(0x2019));
    default: return text.contains(QLatin1Char(' ')) ? text : text.left(netBiosLength);
    }
}

QString commonSpelling(const QString& text)
{
    const auto isPlain = [](QChar c) { return c.unicode() < 0x80 && c.isLetterOrNumber(); };
    if (std::all_of(text.begin(), text.end(), isPlain)) {
        return text.toLower();
    }
    QString name = text;
    if (name.contains(QLatin1Char('%'))) {
        const QByteArray decoded = QByteArray::fromPercentEncoding(name.toUtf8());
        name = decoded.contains('\0') ? name : QString::fromUtf8(decoded);
    }
    if (name.contains(QLatin1Char('\\'))) {
        name.replace(QLatin1String("\\x20"), QLatin1String(" "));
        name.replace(QLatin1String("\\040"), QLatin1String(" "));
    }
    name.replace(QLatin1String("--"), QLatin1String("-"));
    const QString common =
        asFileName(name, QLatin1Char('-')).replace(QLatin1Char('_'), QLatin1Char('-')).toLower();
    const bool isName =
        std::any_of(common.begin(), common.end(), [](QChar c) { return c.isLetterOrNumber(); });
    return isName ? common : name;
}

} // namespace norvex::Privacy
