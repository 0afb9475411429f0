#include "systeminfo/mac/platform/live/propertyListFile.h"

#include "systeminfo/mac/platform/cfObjects.h"
#include "systeminfo/mac/platform/keyPath.h"
#include "systeminfo/mac/platform/live/propertyListCheck.h"
#include "systeminfo/mac/platform/live/regularFile.h"
#include "systeminfo/mac/platform/propertyListReader.h"

#include <QBuffer>
#include <QString>

#include <algorithm>
#include <memory>
#include <type_traits>

#include <plist/plist.h>

namespace norvex {

namespace {

/// Finds the string at a key path while the parser reads the document.
class StringFinder : public PropertyListHandler
{
public:
    explicit StringFinder(const QList<QByteArray>& keys) : keys_(keys) {}

    const std::optional<QByteArray>& found() const { return found_; }

    void beginDictionary() override
    {
        const bool isNextOnPath = depth_ == onPath_ && (depth_ == 0 || isAtKey_) && depth_ < keys_.size();
        open();
        onPath_ += isNextOnPath ? 1 : 0;
    }
    void endDictionary() override { close(); }
    void beginArray() override { open(); }
    void endArray() override { close(); }

    void key(const std::string& text) override
    {
        if (depth_ != onPath_) {
            return;
        }
        isAtKey_ = keys_.at(depth_ - 1) == text.c_str();
        if (isAtKey_) {
            found_.reset(); // an earlier value of the same key
        }
    }

    void value(const PropertyListValue& value) override
    {
        if (depth_ == onPath_ && isAtKey_ && depth_ == keys_.size() &&
            value.element == PropertyListElement::String) {
            found_ = QByteArray::fromStdString(value.text);
        }
    }

private:
    void open()
    {
        if (++depth_ > static_cast<int>(propertyListMaxDepth)) {
            throw PropertyListError("values are nested too deep");
        }
        isAtKey_ = false;
    }

    void close()
    {
        onPath_ -= onPath_ == depth_ ? 1 : 0;
        --depth_;
        isAtKey_ = false;
    }

    const QList<QByteArray> keys_;
    int depth_ = 0;  ///< dictionaries and arrays that are open
    int onPath_ = 0; ///< how many of them, from the outermost, are dictionaries that the path goes through
    bool isAtKey_ = false;
    std::optional<QByteArray> found_;
};

std::optional<QByteArray> stringInXml(const QByteArray& contents, const QList<QByteArray>& keys)
{
    // Foundation tolerates white space before the XML declaration.
    const auto start = std::find_if_not(contents.begin(), contents.end(), isXmlSpace<char>);
    QByteArray document = contents.mid(static_cast<int>(start - contents.begin()));
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    StringFinder finder(keys);
    const PropertyListFailure failure = readPropertyList(buffer, PropertyListDialect::Foundation, finder);
    return failure.reason.isEmpty() ? finder.found() : std::nullopt;
}

struct FreePropertyList
{
    void operator()(plist_t list) const { plist_free(list); }
};
using PropertyList = std::unique_ptr<std::remove_pointer_t<plist_t>, FreePropertyList>;

std::optional<QByteArray> stringInBinary(const QByteArray& contents, const QList<QByteArray>& keys)
{
    plist_t root = nullptr;
    if (isAcceptableBinaryPropertyList(contents)) {
        plist_from_bin(contents.constData(), static_cast<std::uint32_t>(contents.size()), &root);
    }
    const PropertyList list(root);
    plist_t node = root;
    for (const QByteArray& key : keys) {
        if (!node || plist_get_node_type(node) != PLIST_DICT) {
            return std::nullopt;
        }
        node = plist_dict_get_item(node, key.constData());
    }
    if (!node || plist_get_node_type(node) != PLIST_STRING) {
        return std::nullopt;
    }
    // As a C string: a zero character ends it. plist_get_string_val would abort there.
    const char* value = plist_get_string_ptr(node, nullptr);
    const QByteArray text(value);
    return value != nullptr && isUtf8(value) ? std::make_optional(text) : std::nullopt;
}

} // namespace

std::optional<QByteArray> propertyListFileString(const QByteArray& path, const QByteArray& keyPath)
{
    if (keysOf(keyPath).isEmpty()) {
        return std::nullopt;
    }
    const std::optional<QByteArray> contents = regularFileContents(path);
    return contents ? propertyListString(*contents, keyPath) : std::nullopt;
}

std::optional<QByteArray> propertyListString(const QByteArray& contents, const QByteArray& keyPath)
{
    const QList<QByteArray> keys = keysOf(keyPath);
    if (keys.isEmpty()) {
        return std::nullopt;
    }
    return contents.startsWith("bplist00") ? stringInBinary(contents, keys) : stringInXml(contents, keys);
}

} // namespace norvex
