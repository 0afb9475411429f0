#include "systeminfo/mac/platform/live/propertyListFile.h"

#include "systeminfo/mac/platform/live/propertyListCheck.h"

#include <QString>

#include <cerrno>
#include <memory>
#include <optional>
#include <type_traits>

#include <fcntl.h>
#include <plist/plist.h>
#include <sys/stat.h>
#include <unistd.h>

namespace norvex {

namespace {

struct FreePropertyList
{
    void operator()(plist_t list) const { plist_free(list); }
};
using PropertyList = std::unique_ptr<std::remove_pointer_t<plist_t>, FreePropertyList>;

PropertyListAnswer noString()
{
    return {PropertyListAnswer::NoString, {}};
}

/// The whole of a regular file of acceptable size.
std::optional<QByteArray> readRegularFile(const QByteArray& path)
{
    // The file may have become another one since it was looked at, hence non-blocking, and the second look.
    const int file = open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file == -1) {
        return std::nullopt;
    }
    struct stat status = {};
    QByteArray contents;
    ssize_t got = -1;
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size <= propertyListMaxFileSize) {
        contents.resize(static_cast<int>(status.st_size));
        int length = 0;
        do {
            got = read(file, contents.data() + length, static_cast<std::size_t>(contents.size() - length));
            length += got > 0 ? static_cast<int>(got) : 0;
        } while (got > 0 || (got == -1 && errno == EINTR));
        contents.truncate(length);
    }
    close(file);
    return got == 0 ? std::make_optional(contents) : std::nullopt;
}

/// Null for contents that are no property list, or not one that libplist may see.
PropertyList parse(const QByteArray& contents)
{
    plist_t list = nullptr;
    if (contents.startsWith("bplist00")) {
        if (isAcceptableBinaryPropertyList(contents)) {
            plist_from_bin(contents.constData(), static_cast<std::uint32_t>(contents.size()), &list);
        }
    } else if (const std::optional<std::string> xml = normalisedXmlPropertyList(contents)) {
        plist_from_xml(xml->data(), static_cast<std::uint32_t>(xml->size()), &list);
    }
    return PropertyList(list);
}

/// Binary property lists may claim other bytes to be text.
bool isUtf8(const QByteArray& text)
{
    // The letter in front keeps a byte order mark from being taken away.
    const QByteArray prefixed = 'x' + text;
    return QString::fromUtf8(prefixed).toUtf8() == prefixed;
}

} // namespace

const char* const propertyListNoKeyPath = "@";

QList<QByteArray> propertyListKeys(const QByteArray& keyPath)
{
    const QList<QByteArray> keys = keyPath.split('.');
    for (const QByteArray& key : keys) {
        if (key.startsWith('@')) {
            return {};
        }
    }
    return keys;
}

PropertyListAnswer propertyListFileString(const QByteArray& path, const QByteArray& keyPath)
{
    struct stat status = {};
    if (stat(path.constData(), &status) != 0) {
        return {};
    }
    // Opening can do things to a device, so anything but a regular file is left alone.
    if (!S_ISREG(status.st_mode) || propertyListKeys(keyPath).isEmpty()) {
        return noString();
    }
    const std::optional<QByteArray> contents = readRegularFile(path);
    return contents ? propertyListString(*contents, keyPath) : noString();
}

PropertyListAnswer propertyListString(const QByteArray& contents, const QByteArray& keyPath)
{
    const QList<QByteArray> keys = propertyListKeys(keyPath);
    if (keys.isEmpty()) {
        return noString();
    }
    const PropertyList list = parse(contents);
    plist_t node = list.get();
    for (const QByteArray& key : keys) {
        if (!node || plist_get_node_type(node) != PLIST_DICT) {
            return noString();
        }
        node = plist_dict_get_item(node, key.constData());
    }
    if (!node || plist_get_node_type(node) != PLIST_STRING) {
        return noString();
    }
    // As a C string: a zero character ends it. plist_get_string_val would abort there.
    const char* value = plist_get_string_ptr(node, nullptr);
    const QByteArray text(value);
    return value && isUtf8(text) ? PropertyListAnswer{PropertyListAnswer::Found, text} : noString();
}

} // namespace norvex
