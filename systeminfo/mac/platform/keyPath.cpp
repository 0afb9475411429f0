#include "systeminfo/mac/platform/keyPath.h"

#include <algorithm>

namespace norvex {

QList<QByteArray> keysOf(const QByteArray& keyPath)
{
    const QList<QByteArray> keys = keyPath.split('.');
    const bool hasOperator =
        std::any_of(keys.begin(), keys.end(), [](const QByteArray& key) { return key.startsWith('@'); });
    return hasOperator ? QList<QByteArray>() : keys;
}

} // namespace norvex
