#pragma once

/// @file
/// A machine that answers from a recording.

#include "systeminfo/mac/platform/machine.h"
#include "systeminfo/mac/platform/propertyListReader.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace norvex {

/// What a recording says about a volume.
struct RecordedVolume
{
    QByteArray path;
    std::unique_ptr<MacStatfs> statfs; ///< large, and moved about while volumes are sorted
    std::optional<long> caseSensitive;
    long casePreserving = -1;
    std::optional<int> error; ///< errno of a caseSensitive of -1
};

/// Everything that a recording says; absent members answer nothing.
struct Recording
{
    std::unordered_map<std::string, QByteArray> sysctl;
    std::unordered_map<std::string, std::int32_t> gestalt;
    std::shared_ptr<Registry> registry;
    std::vector<RecordedVolume> volumes; ///< in the order of the report
    std::unordered_set<std::string> files;
    std::unordered_map<std::string, ObjectRef<CFDictionaryRef>> propertyLists;
    std::optional<std::uint32_t> daemonVersion;
    std::int32_t daemonError = -65563; ///< kDNSServiceErr_ServiceNotRunning
    std::unordered_map<std::string, QByteArray> urlHandlers;
    MachineFaults faults;
};

/// The machine of a recording.
class RecordedMachine : public Machine
{
public:
    explicit RecordedMachine(Recording recording);

    std::optional<QByteArray> sysctl(const QByteArray& name) const override;
    std::optional<std::int32_t> gestalt(std::uint32_t selector) const override;
    RegistryPtr registry(const QByteArray& className) const override;
    QByteArray superclassOf(const QByteArray& className) const override;
    const MachineFaults& faults() const override;
    QList<QByteArray> volumes() const override;
    std::optional<MacStatfs> statfs(const QByteArray& path) const override;
    PathconfAnswer caseSensitive(const QByteArray& path) const override;
    PathconfAnswer casePreserving(const QByteArray& path) const override;
    bool deviceFileExists(const QByteArray& path) const override;
    bool fileExists(const QByteArray& path) const override;
    std::optional<QByteArray> propertyListString(const QByteArray& path,
                                                 const QByteArray& keyPath) const override;
    DaemonAnswer daemonVersion() const override;
    std::optional<QByteArray> urlHandler(const QByteArray& scheme) const override;

private:
    const RecordedVolume* volume(const QByteArray& path) const;

    const Recording recording_;
    std::unordered_map<std::string, const RecordedVolume*> volumeAt_;
};

/// Reads a recording from an open device.
/// @return null when it is refused; the failure says why
std::shared_ptr<const Machine> readRecording(QIODevice& device, PropertyListFailure& failure);

} // namespace norvex
