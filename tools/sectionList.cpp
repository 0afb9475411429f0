#include "tools/sectionList.h"

#include "tools/sections.h"

#include <algorithm>

namespace norvex::Tool {

using SystemInfo::SectionInfo;

namespace {

QStringList topics()
{
    QStringList topics;
    for (const SectionInfo& section : namedSections()) {
        topics += section.topics;
    }
    topics.removeDuplicates();
    return topics;
}

} // namespace

QString sectionList()
{
    QString text;
    for (const SectionInfo& section : namedSections()) {
        text += QLatin1String(section.name) + QLatin1Char('\n');
    }
    return text;
}

QString describedSectionList(const Painter& painter)
{
    const int gap = 2;
    int width = 0;
    for (const SectionInfo& section : namedSections()) {
        width = std::max(width, static_cast<int>(qstrlen(section.name)) + gap);
    }
    QString text;
    for (const SectionInfo& section : namedSections()) {
        const QString name = QLatin1String(section.name);
        text += painter.painted(name, Style::Heading) + QString(width - name.size(), QLatin1Char(' ')) +
                QLatin1String(section.description) + QLatin1Char('\n');
    }
    return text + QStringLiteral("\nA topic stands for all its sections: %1\n")
                      .arg(topics().join(QStringLiteral(", ")));
}

} // namespace norvex::Tool
