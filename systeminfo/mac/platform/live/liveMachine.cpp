#include "systeminfo/mac/platform/live/caseSensitivity.h"
#include "systeminfo/mac/platform/live/desktopFiles.h"
#include "systeminfo/mac/platform/live/deviceRegistry.h"
#include "systeminfo/mac/platform/live/fileSystemQuery.h"
#include "systeminfo/mac/platform/live/kernel.h"
#include "systeminfo/mac/platform/live/kernelFiles.h"
#include "systeminfo/mac/platform/live/propertyListFile.h"
#include "systeminfo/mac/platform/live/services.h"
#include "systeminfo/mac/platform/live/sysctl.h"
#include "systeminfo/mac/platform/live/volumes.h"
#include "systeminfo/mac/platform/machine.h"

#include <cerrno>
#include <sys/stat.h>

namespace norvex {

namespace {

/// This host. It keeps nothing: each call looks at the host again.
class LiveMachine : public Machine
{
public:
    std::optional<QByteArray> sysctl(const QByteArray& name) const override
    {
        return hostSysctl(name, hostCpuid(), KernelFiles());
    }

    std::optional<std::int32_t> gestalt(std::uint32_t selector) const override
    {
        return kernelGestalt(selector, KernelFiles());
    }

    RegistryPtr registry(const QByteArray& className) const override { return hostRegistry(className); }
    RegistryPtr root() const override { return hostRoot(); }
    QByteArray superclassOf(const QByteArray& className) const override
    {
        return hostSuperclassOf(className);
    }

    QList<QByteArray> volumes() const override { return hostVolumes(); }
    std::optional<MacStatfs> statfs(const QByteArray& path) const override { return hostStatfs(path); }

    PathconfAnswer caseSensitive(const QByteArray& path) const override
    {
        const auto caseSensitivity = caseSensitivityOf(path);
        return caseSensitivity ? PathconfAnswer{caseSensitivity->isSensitive, 0} : PathconfAnswer{-1, ENOENT};
    }

    PathconfAnswer casePreserving(const QByteArray& path) const override
    {
        const auto caseSensitivity = caseSensitivityOf(path);
        return caseSensitivity ? PathconfAnswer{caseSensitivity->isPreserving, 0}
                               : PathconfAnswer{-1, ENOENT};
    }

    bool deviceFileExists(const QByteArray& path) const override { return fileExists(path); }
    bool fileExists(const QByteArray& path) const override
    {
        struct stat64 status = {};
        return fileSystemsAnswer({path}) && ::stat64(path.constData(), &status) == 0;
    }

    std::optional<QByteArray> propertyListString(const QByteArray& path,
                                                 const QByteArray& keyPath) const override
    {
        return fileSystemsAnswer({path}) ? propertyListFileString(path, keyPath) : std::nullopt;
    }

    DaemonAnswer daemonVersion() const override { return avahiVersion(); }
    std::optional<QByteArray> urlHandler(const QByteArray& scheme) const override
    {
        return urlHandlerPath(scheme);
    }
};

} // namespace

std::shared_ptr<const Machine> liveMachine()
{
    static const std::shared_ptr<const Machine> machine = std::make_shared<LiveMachine>();
    return machine;
}

} // namespace norvex
