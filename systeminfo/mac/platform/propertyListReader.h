#pragma once

/// @file
/// An XML property list as a stream of typed elements, with the recording format's sized integers.

#include "systeminfo/mac/platform/cfObjects.h"

#include <QIODevice>
#include <QString>

#include <stdexcept>
#include <string>

namespace norvex {

/// What is wrong with a property list; thrown by the parser and by its handlers.
class PlistError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Receives the elements in document order. A handler refuses an element by throwing PlistError.
class PlistHandler
{
public:
    virtual ~PlistHandler();

    virtual void beginDictionary() = 0;
    virtual void endDictionary() = 0;
    virtual void beginArray() = 0;
    virtual void endArray() = 0;
    /// The key of the value that follows in the innermost dictionary.
    virtual void key(const std::string& text) = 0;
    /// A string, number, boolean or data.
    virtual void value(ValueRef object) = 0;
};

/// Why a document was refused.
struct PlistFailure
{
    unsigned long long line = 0; ///< 0 where no line is at fault
    QString reason;              ///< empty: it was not refused
};

/// Parses a whole document.
PlistFailure parsePlist(QIODevice& device, PlistHandler& handler);

} // namespace norvex
