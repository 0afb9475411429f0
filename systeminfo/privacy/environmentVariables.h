#pragma once

#include "systeminfo/privacy/privateValues.h"

#include <QString>

namespace norvex::Privacy {

/// What the value of an environment variable is. Variables that are known to be harmless have None; private parts in
/// their values are private all the same. A variable that is in no list has Token.
PrivateKind kindOfVariable(const QString& name);

} // namespace norvex::Privacy
