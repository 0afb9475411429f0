#include "viewer/itemTitles.h"

#include "systeminfo/norvexSystemInfo.h"

namespace norvex::Viewer {

using namespace SystemInfo;

namespace {

const int longestTitle = 100;

QString shortened(const QString& title)
{
    return oneLine(title, longestTitle);
}

/// A heading or banner without what only sets it off.
QString withoutOrnaments(const QString& line)
{
    const auto isOrnament = [](QChar character) {
        return character.isSpace() || character == QLatin1Char('#') || character == QLatin1Char(':');
    };
    int begin = 0;
    int end = line.size();
    while (begin < end && isOrnament(line.at(begin))) {
        ++begin;
    }
    while (end > begin && isOrnament(line.at(end - 1))) {
        --end;
    }
    return line.mid(begin, end - begin);
}

/// A heading without where the section comes from, which stands behind it in parentheses.
QString withoutSource(const QString& heading)
{
    const int parenthesis = heading.indexOf(QLatin1String(" ("));
    return parenthesis > 0 && heading.endsWith(QLatin1Char(')')) ? heading.left(parenthesis) : heading;
}

/// Sections without a heading have their subject in the table.
QString subjectOf(const QString& section)
{
    for (const SectionInfo& info : sections()) {
        if (section == QLatin1String(info.name)) {
            QString subject = QString::fromLatin1(info.description).section(QLatin1Char(':'), 0, 0);
            subject[0] = subject.at(0).toUpper();
            return subject;
        }
    }
    return section;
}

} // namespace

QString oneLine(const QString& text, int mostCharacters)
{
    QString line = text.left(4 * mostCharacters).simplified();
    if (line.size() <= mostCharacters) {
        return line;
    }
    int end = mostCharacters - 1;
    if (line.at(end).isLowSurrogate()) {
        --end;
    }
    return line.left(end) + QChar(0x2026);
}

QString titleOfHalf(const CReportItem& banner)
{
    const QString line = banner.text().left(2 * longestTitle);
    for (const char* name : {"Macintosh", "Windows", "Qt"}) {
        if (line.contains(QLatin1String(name))) {
            return QLatin1String(name);
        }
    }
    return shortened(withoutOrnaments(line));
}

QString titleOf(const CReportSection& section)
{
    const QString heading = withoutOrnaments(section.heading().left(2 * longestTitle));
    if (heading.isEmpty()) {
        return section.isKnown() ? subjectOf(section.name()) : shortened(section.name());
    }
    return shortened(section.isKnown() ? withoutSource(heading) : heading);
}

QString titleOf(const CReportBlock& block)
{
    const QString name = block.name();
    for (const char* label : {"Model", "Device name"}) {
        const QString model = block.entry(QLatin1String(label)).value();
        if (model.isEmpty()) {
            continue;
        }
        const QString bsdName = block.entry(QStringLiteral("BSD Name")).value();
        return shortened(bsdName.isEmpty() ? model : QStringLiteral("%1 (%2)").arg(model, bsdName));
    }
    bool isNumber = false;
    name.toInt(&isNumber);
    return isNumber ? QLatin1Char('#') + name : shortened(name);
}

} // namespace norvex::Viewer
