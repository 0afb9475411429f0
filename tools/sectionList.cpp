#include "tools/sectionList.h"

#include "tools/sections.h"

#include <algorithm>

namespace norvex::Tool {

using SystemInfo::SectionInfo;

namespace {

QString names()
{
    QString text;
    for (const SectionInfo& section : namedSections()) {
        text += QLatin1String(section.name) + QLatin1Char('\n');
    }
    return text;
}

QStringList topics()
{
    QStringList topics;
    for (const SectionInfo& section : namedSections()) {
        topics += section.topics;
    }
    topics.removeDuplicates();
    return topics;
}

QString descriptions(const QString& bold, const QString& plain)
{
    const int gap = 2;
    int width = 0;
    for (const SectionInfo& section : namedSections()) {
        width = std::max(width, static_cast<int>(qstrlen(section.name)) + gap);
    }
    QString text;
    for (const SectionInfo& section : namedSections()) {
        const QString name = QLatin1String(section.name);
        text += bold + name + plain + QString(width - name.size(), QLatin1Char(' ')) +
                QLatin1String(section.description) + QLatin1Char('\n');
    }
    return text + QStringLiteral("\nA topic stands for all its sections: %1\n")
                      .arg(topics().join(QStringLiteral(", ")));
}

} // namespace

QString sectionList(ListStyle style)
{
    switch (style) {
    case ListStyle::Names: return names();
    case ListStyle::Descriptions: return descriptions(QString(), QString());
    case ListStyle::BoldNames: break;
    }
    return descriptions(QStringLiteral("\x1b[1m"), QStringLiteral("\x1b[0m"));
}

} // namespace norvex::Tool
