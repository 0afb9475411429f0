#include "fuzz/require.h"
#include "systeminfo/mac/platform/live/propertyListCheck.h"
#include "systeminfo/mac/platform/live/propertyListFile.h"

#include <QString>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using norvex::PropertyListAnswer;
    const QByteArray contents(reinterpret_cast<const char*>(data), static_cast<int>(size));
    for (const char* keyPath : {"k", "d.k", "d.d.k"}) {
        const PropertyListAnswer answer = norvex::propertyListString(contents, keyPath);
        require(answer.outcome != PropertyListAnswer::NoFile, "contents are a file");
        require((answer.outcome == PropertyListAnswer::Found) || answer.text.isEmpty(),
                "no text without a string");
        require(QString::fromUtf8('x' + answer.text).toUtf8() == 'x' + answer.text, "texts are UTF-8");
        require(answer.text.size() <= 4 * contents.size(), "a text comes from the file");
        if (answer.outcome == PropertyListAnswer::Found) {
            const QByteArray below = QByteArray(keyPath) + ".k";
            require(norvex::propertyListString(contents, below).outcome == PropertyListAnswer::NoString,
                    "nothing is below a string");
        }
    }
    // A carriage return gets there through a character reference only, which libplist would not take for a
    // line end.
    const std::optional<std::string> normalised = norvex::normalisedXmlPropertyList(contents);
    if (normalised && normalised->find('\r') == std::string::npos) {
        const QByteArray again(normalised->data(), static_cast<int>(normalised->size()));
        require(norvex::normalisedXmlPropertyList(again) == normalised, "normalising twice changes nothing");
    }
    return 0;
}
