#include "fuzz/require.h"
#include "systeminfo/mac/platform/live/propertyListFile.h"

#include <QString>

/// Looks for strings in any bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray contents(reinterpret_cast<const char*>(data), static_cast<int>(size));
    for (const char* keyPath : {"k", "d.k", "d.d.k"}) {
        const std::optional<QByteArray> text = norvex::propertyListString(contents, keyPath);
        if (text) {
            require(QString::fromUtf8('x' + *text).toUtf8() == 'x' + *text, "texts are UTF-8");
            require(text->size() <= 4 * contents.size(), "a text comes from the file");
            require(!norvex::propertyListString(contents, QByteArray(keyPath) + ".k"),
                    "nothing is below a string");
        }
    }
    return 0;
}
