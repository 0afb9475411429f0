#include "systeminfo/mac/platform/libSystem.h"

#include "systeminfo/mac/platform/failureInjection.h"
#include "systeminfo/mac/platform/machine.h"

#include <cerrno>
#include <cstring>

using norvex::callFails;
using norvex::currentMachine;

extern "C" {

int sysctlbyname(const char* name, void* oldp, std::size_t* oldlenp, void*, std::size_t)
{
    const auto value = currentMachine()->sysctl(name);
    if (callFails() || !value) {
        errno = ENOENT;
        return -1;
    }
    const auto size = std::size_t(value->size());
    if (size > *oldlenp) {
        errno = ENOMEM;
        return -1;
    }
    std::memcpy(oldp, value->constData(), size);
    *oldlenp = size;
    return 0;
}

DNSServiceErrorType DNSServiceGetProperty(const char* property, void* result, std::uint32_t* size)
{
    constexpr DNSServiceErrorType unknownError = -65537;
    constexpr DNSServiceErrorType badParameter = -65540;
    if (callFails()) {
        return unknownError;
    }
    if (std::strcmp(property, kDNSServiceProperty_DaemonVersion) != 0 || *size < sizeof(std::uint32_t)) {
        return badParameter;
    }
    const norvex::DaemonAnswer answer = currentMachine()->daemonVersion();
    if (answer.error == 0) {
        std::memcpy(result, &answer.version, sizeof answer.version);
        *size = sizeof answer.version;
    }
    return answer.error;
}

} // extern "C"

namespace norvex {

int statfs(const char* path, MacStatfs* record)
{
    const auto answer = currentMachine()->statfs(path);
    if (callFails() || !answer) {
        errno = ENOENT;
        return -1;
    }
    *record = *answer;
    return 0;
}

long pathconf(const char* path, PathconfName name)
{
    const auto machine = currentMachine();
    PathconfAnswer answer =
        name == _PC_CASE_SENSITIVE ? machine->caseSensitive(path) : machine->casePreserving(path);
    if (callFails()) {
        answer = {-1, EIO};
    }
    if (answer.result == -1) {
        errno = answer.error;
    }
    return answer.result;
}

} // namespace norvex
