#pragma once

/// @file
/// The values of recordings: those of property lists, with sizes for integers.

#include "systeminfo/mac/platform/cfObjects.h"
#include "systeminfo/mac/platform/propertyListReader.h"

namespace norvex {

/// The object that a value stands for, null for one that recordings do not have. Throws PropertyListError for a text
/// that is none of its element.
ValueRef recordedValue(const PropertyListValue& value);

} // namespace norvex
