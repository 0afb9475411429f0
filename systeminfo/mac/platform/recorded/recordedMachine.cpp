#include "systeminfo/mac/platform/recorded/recordedMachine.h"

#include "systeminfo/mac/platform/keyPath.h"

#include <cerrno>
#include <utility>

namespace norvex {

namespace {

template <typename Map>
std::optional<typename Map::mapped_type> found(const Map& map, const std::string& key)
{
    const auto place = map.find(key);
    return place == map.end() ? std::nullopt : std::make_optional(place->second);
}

} // namespace

RecordedMachine::RecordedMachine(Recording recording) : recording_(std::move(recording))
{
    for (const RecordedVolume& volume : recording_.volumes) {
        volumeAt_.emplace(volume.path.toStdString(), &volume);
    }
}

std::optional<QByteArray> RecordedMachine::sysctl(const QByteArray& name) const
{
    return found(recording_.sysctl, name.toStdString());
}

std::optional<std::int32_t> RecordedMachine::gestalt(std::uint32_t selector) const
{
    std::string code;
    for (int shift = 24; shift >= 0; shift -= 8) {
        code += char(selector >> shift);
    }
    return found(recording_.gestalt, code);
}

RegistryPtr RecordedMachine::registry(const QByteArray&) const
{
    return recording_.registry;
}

QByteArray RecordedMachine::superclassOf(const QByteArray& className) const
{
    const std::string* superclass =
        recording_.registry == nullptr ? nullptr : recording_.registry->superclassOf(className.toStdString());
    return superclass == nullptr ? QByteArray() : QByteArray::fromStdString(*superclass);
}

const MachineFaults& RecordedMachine::faults() const
{
    return recording_.faults;
}

QList<QByteArray> RecordedMachine::volumes() const
{
    QList<QByteArray> paths;
    for (const RecordedVolume& volume : recording_.volumes) {
        paths.append(volume.path);
    }
    return paths;
}

const RecordedVolume* RecordedMachine::volume(const QByteArray& path) const
{
    const auto place = volumeAt_.find(path.toStdString());
    return place == volumeAt_.end() ? nullptr : place->second;
}

std::optional<MacStatfs> RecordedMachine::statfs(const QByteArray& path) const
{
    const RecordedVolume* const place = volume(path);
    return place == nullptr || place->statfs == nullptr ? std::nullopt : std::make_optional(*place->statfs);
}

PathconfAnswer RecordedMachine::caseSensitive(const QByteArray& path) const
{
    const RecordedVolume* const place = volume(path);
    if (place == nullptr) {
        return {-1, ENOENT};
    }
    if (!place->caseSensitive) {
        return {-1, EINVAL};
    }
    return {*place->caseSensitive, place->error.value_or(EINVAL)};
}

PathconfAnswer RecordedMachine::casePreserving(const QByteArray& path) const
{
    const RecordedVolume* const place = volume(path);
    return {place == nullptr ? -1 : place->casePreserving, EINVAL};
}

bool RecordedMachine::deviceFileExists(const QByteArray& path) const
{
    return recording_.files.count(path.toStdString()) > 0;
}

bool RecordedMachine::fileExists(const QByteArray& path) const
{
    return recording_.propertyLists.count(path.toStdString()) > 0;
}

std::optional<QByteArray> RecordedMachine::propertyListString(const QByteArray& path,
                                                              const QByteArray& keyPath) const
{
    const auto file = recording_.propertyLists.find(path.toStdString());
    const QList<QByteArray> keys = keysOf(keyPath);
    if (file == recording_.propertyLists.end() || keys.isEmpty()) {
        return std::nullopt;
    }
    CFTypeRef value = file->second.get();
    for (const QByteArray& key : keys) {
        if (value == nullptr || objectOf(value)->kind() != ObjectKind::Dictionary) {
            return std::nullopt;
        }
        value = static_cast<CFDictionaryRef>(value)->value(makeString(key.toStdString()).get());
    }
    if (value == nullptr || objectOf(value)->kind() != ObjectKind::String) {
        return std::nullopt;
    }
    return QByteArray::fromStdString(static_cast<CFStringRef>(value)->utf8);
}

DaemonAnswer RecordedMachine::daemonVersion() const
{
    if (recording_.daemonVersion) {
        return {0, *recording_.daemonVersion};
    }
    return {recording_.daemonError, 0};
}

std::optional<QByteArray> RecordedMachine::urlHandler(const QByteArray& scheme) const
{
    return found(recording_.urlHandlers, scheme.toStdString());
}

} // namespace norvex
