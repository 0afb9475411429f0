#pragma once

#include <QString>

namespace norvex::Tool {

/// How a list of sections looks: for a program, or for a person.
enum class ListStyle {
    Names,        ///< a name a line
    Descriptions, ///< names and descriptions in columns, then the topics
    BoldNames     ///< the same with bold names, for a terminal that has them
};

/// What --section can name.
QString sectionList(ListStyle style);

} // namespace norvex::Tool
