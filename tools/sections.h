#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace norvex::Tool {

/// What a section of the report needs of Qt, each kind more than the one before it.
enum class ApplicationKind { Core, Gui, Widgets };

/// A section of the report as --section names it.
struct Section
{
    const char* name;
    ApplicationKind needs;
    QString (*text)();
};

/// All sections in the order of --list-sections, which is the report's.
const std::vector<Section>& allSections();

/// The section of that name, letter case counts; null when there is none.
const Section* findSection(const QByteArray& name);

} // namespace norvex::Tool
