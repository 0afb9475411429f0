#pragma once

/// @file
/// An XML property list as a stream of elements.

#include <QString>

#include <stdexcept>
#include <string>

QT_FORWARD_DECLARE_CLASS(QIODevice)

namespace norvex {

/// XML's white space.
template <typename Character>
bool isXmlSpace(Character c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

/// What is wrong with a property list. The parser and its handlers throw it; readPropertyList() catches it.
class PropertyListError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The elements of property lists.
enum class PropertyListElement { Plist, Dict, Array, Key, String, Integer, Real, Data, Date, True, False };

/// A value that holds no others, as it stands in the document.
struct PropertyListValue
{
    PropertyListElement element;
    std::string text; ///< UTF-8, empty for True and False
    int bits;         ///< the size of an Integer: 8, 16, 32, 64, or 0 where it has none
};

/// Receives the elements in document order. A handler throws PropertyListError to refuse an element; other exceptions
/// pass through the parser.
class PropertyListHandler
{
public:
    virtual ~PropertyListHandler();

    virtual void beginDictionary() = 0;
    virtual void endDictionary() = 0;
    virtual void beginArray() = 0;
    virtual void endArray() = 0;
    /// The key of the value that follows in the innermost dictionary.
    virtual void key(const std::string& text) = 0;
    virtual void value(const PropertyListValue& value) = 0;
};

/// Which property lists are accepted.
enum class PropertyListDialect {
    Recording, ///< an <integer> may have an attribute "size", its bits; there are no dates
    Foundation ///< dates too, and a document without the element <plist> around its value
};

/// Why a document was refused.
struct PropertyListFailure
{
    unsigned long long line = 0; ///< 0 where no line is at fault
    QString reason;              ///< empty: it was not refused
};

/// Parses a whole document, in UTF-8, UTF-16 or the encoding that it declares. A document type may name an external
/// file, which is never read. A document type with declarations of its own is refused, and so are all entities but
/// XML's five. The memory that this takes depends only on the longest text or tag and on the depth of nesting.
/// std::bad_alloc passes through.
PropertyListFailure readPropertyList(QIODevice& device, PropertyListDialect dialect,
                                     PropertyListHandler& handler);

} // namespace norvex
