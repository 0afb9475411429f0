#pragma once

/// @file
/// The machine that the layer asks behind the functions that stand in for macOS's.

#include "systeminfo/mac/platform/norvexPlatform.h"
#include "systeminfo/mac/platform/registry.h"

#include <QByteArray>
#include <QList>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace norvex {

/// Failures that a recording injects into calls that concern no particular entry.
struct MachineFaults
{
    /// The result of IOMasterPort.
    std::int32_t masterPort = 0;
    /// The classes for which IOServiceMatching returns null.
    std::set<std::string, std::less<>> matching;
    /// Class -> the result of IOServiceGetMatchingServices.
    std::map<std::string, std::int32_t, std::less<>> services;
};

/// The result of `pathconf`, and `errno` when the result is -1.
struct PathconfAnswer
{
    long result = -1;
    int error = 0;
};

/// The version of the DNS service discovery daemon, or the error of the query.
struct DaemonAnswer
{
    std::int32_t error = 0; ///< a DNSServiceErrorType
    std::uint32_t version = 0;
};

/// The answers of one machine. Each call of the layer asks anew; when the answer is absent, the call fails. Paths and
/// texts are UTF-8. All functions may be called from several threads at once.
class Machine
{
public:
    Machine() = default;
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;
    virtual ~Machine();

    /// The bytes that `sysctlbyname` copies for a name; sysctlValue.h makes them.
    virtual std::optional<QByteArray> sysctl(const QByteArray& name) const = 0;
    /// The value behind a `Gestalt` selector.
    virtual std::optional<std::int32_t> gestalt(std::uint32_t selector) const = 0;

    /// A registry that contains the entries of a class, with all their ancestors and descendants.
    /// @param className empty for the whole registry
    /// @return a registry whose first entry is the root; null when the machine has none
    virtual RegistryPtr registry(const QByteArray& className) const = 0;
    /// A registry whose root is complete, but may lack descendants.
    virtual RegistryPtr root() const { return registry(QByteArray()); }
    /// The superclass of a registry class; empty when it is unknown.
    virtual QByteArray superclassOf(const QByteArray& className) const = 0;
    /// The calls that fail on this machine; none by default.
    virtual const MachineFaults& faults() const;

    /// Absolute paths of the volumes, in the order of the report.
    virtual QList<QByteArray> volumes() const = 0;
    /// What `statfs` says of the file system that holds a path.
    virtual std::optional<MacStatfs> statfs(const QByteArray& path) const = 0;
    /// `pathconf` for _PC_CASE_SENSITIVE.
    virtual PathconfAnswer caseSensitive(const QByteArray& path) const = 0;
    /// `pathconf` for _PC_CASE_PRESERVING.
    virtual PathconfAnswer casePreserving(const QByteArray& path) const = 0;

    /// Whether the device file of a serial port exists.
    virtual bool deviceFileExists(const QByteArray& path) const = 0;
    /// Whether anything exists at the path of a property list.
    virtual bool fileExists(const QByteArray& path) const = 0;
    /// The string at a key path of a property-list file; absent when there is none, or no such file.
    virtual std::optional<QByteArray> propertyListString(const QByteArray& path,
                                                         const QByteArray& keyPath) const = 0;
    /// The version of the DNS service discovery daemon.
    virtual DaemonAnswer daemonVersion() const = 0;
    /// The path of the application that opens URLs of a scheme.
    virtual std::optional<QByteArray> urlHandler(const QByteArray& scheme) const = 0;
};

/// The machine that answers now, as setMachine() chose it; never null.
std::shared_ptr<const Machine> currentMachine();

/// This host.
std::shared_ptr<const Machine> liveMachine();

} // namespace norvex
