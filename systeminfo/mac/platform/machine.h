#pragma once

/// @file
/// The interface behind the stand-ins for macOS's calls.

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

/// Failures that a recording injects into calls that are about no entry in particular.
struct MachineFaults
{
    std::int32_t masterPort = 0;                 ///< result of IOMasterPort
    std::set<std::string, std::less<>> matching; ///< classes for which IOServiceMatching gives null
    std::map<std::string, std::int32_t, std::less<>>
        services; ///< class -> result of IOServiceGetMatchingServices
};

/// What `pathconf` gives: its result, and `errno` when that is -1.
struct PathconfAnswer
{
    long result = -1;
    int error = 0;
};

/// The version of the DNS service discovery daemon, or the error of asking for it.
struct DaemonAnswer
{
    std::int32_t error = 0; ///< a DNSServiceErrorType
    std::uint32_t version = 0;
};

/// One machine's answers. It is asked at each call and keeps nothing for its callers; an absent answer fails
/// the call. Paths and texts are UTF-8. Implementations are safe to ask from several threads.
class Machine
{
public:
    Machine() = default;
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;
    virtual ~Machine();

    /// The bytes that `sysctlbyname` copies: a text with its zero byte, or an integer in the host's byte
    /// order.
    virtual std::optional<QByteArray> sysctl(const QByteArray& name) const = 0;
    /// The value behind a `Gestalt` selector.
    virtual std::optional<std::int32_t> gestalt(std::uint32_t selector) const = 0;

    /// The registry, as far as entries of the class need it: themselves, what is below them and above them.
    /// @param className empty for the whole registry
    /// @return null when there is none at all. Its first entry is the root.
    virtual RegistryPtr registry(const QByteArray& className) const = 0;
    /// A registry of which only the root is asked for; what is below it may be missing.
    virtual RegistryPtr root() const { return registry(QByteArray()); }
    /// The class above a class in the hierarchy of registry classes, empty when unknown.
    virtual QByteArray superclassOf(const QByteArray& className) const = 0;
    virtual const MachineFaults& faults() const;

    /// Absolute paths of the volumes, in the order of the report.
    virtual QList<QByteArray> volumes() const = 0;
    virtual std::optional<MacStatfs> statfs(const QByteArray& path) const = 0;
    virtual PathconfAnswer caseSensitive(const QByteArray& path) const = 0;
    virtual PathconfAnswer casePreserving(const QByteArray& path) const = 0;

    virtual bool deviceFileExists(const QByteArray& path) const = 0;
    /// Whether anything exists at the path of a property list.
    virtual bool fileExists(const QByteArray& path) const = 0;
    /// The string at a key path of a property-list file; absent when there is none, or no such file.
    virtual std::optional<QByteArray> propertyListString(const QByteArray& path,
                                                         const QByteArray& keyPath) const = 0;
    virtual DaemonAnswer daemonVersion() const = 0;
    /// The path of the application that opens URLs of a scheme.
    virtual std::optional<QByteArray> urlHandler(const QByteArray& scheme) const = 0;
};

/// The keys of a key path, outermost first: what stands between its dots. A key may be empty, so the empty key path
/// is one empty key and a trailing dot ends with one, as in Foundation. An empty list means that the path names
/// nothing in any dictionary: a key that begins with "@" is an operator there and never an entry.
QList<QByteArray> propertyListKeys(const QByteArray& keyPath);

/// The machine that answers at this moment, never null.
std::shared_ptr<const Machine> currentMachine();

/// Lets a machine answer from now on; null for this host.
void setCurrentMachine(std::shared_ptr<const Machine> machine);

/// This host.
std::shared_ptr<const Machine> liveMachine();

} // namespace norvex
