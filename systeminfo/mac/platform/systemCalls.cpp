#include "systeminfo/mac/platform/systemCalls.h"

#include "systeminfo/mac/hostQueries.h"
#include "systeminfo/mac/platform/callCounter.h"
#include "systeminfo/mac/platform/cfObjects.h"
#include "systeminfo/mac/platform/machine.h"

#include <cerrno>
#include <cstring>

using norvex::callFails;
using norvex::currentMachine;

extern "C" {

OSErr Gestalt(OSType selector, SInt32* response)
{
    constexpr OSErr undefinedSelector = -5551;
    const auto value = currentMachine()->gestalt(selector);
    if (callFails() || !value)
        return undefinedSelector;
    *response = *value;
    return 0;
}

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
    if (callFails())
        return unknownError;
    if (std::strcmp(property, kDNSServiceProperty_DaemonVersion) != 0 || *size < sizeof(std::uint32_t))
        return badParameter;
    const norvex::DaemonAnswer answer = currentMachine()->daemonVersion();
    if (answer.error == 0) {
        std::memcpy(result, &answer.version, sizeof answer.version);
        *size = sizeof answer.version;
    }
    return answer.error;
}

OSStatus LSGetApplicationForURL(CFURLRef inURL, LSRolesMask, FSRef*, CFURLRef* outAppURL)
{
    constexpr OSStatus applicationNotFound = -10814;
    const std::string scheme = inURL->text.substr(0, inURL->text.find(':'));
    const auto path = currentMachine()->urlHandler(QByteArray::fromStdString(scheme));
    if (callFails() || !path)
        return applicationNotFound;
    *outAppURL = norvex::handOut(CFURLRef(new __CFURL("file://" + path->toStdString())));
    return 0;
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
    if (callFails())
        answer = {-1, EIO};
    if (answer.result == -1)
        errno = answer.error;
    return answer.result;
}

namespace SystemInfo {
namespace MacSysInfo {

bool deviceFileExists(const QString& path)
{
    const bool exists = currentMachine()->deviceFileExists(path.toUtf8());
    return !callFails() && exists;
}

QStringList volumeEntries()
{
    QStringList paths;
    const QList<QByteArray> volumes = callFails() ? QList<QByteArray>() : currentMachine()->volumes();
    for (const QByteArray& volume : volumes)
        paths.append(QString::fromUtf8(volume));
    return paths;
}

} // namespace MacSysInfo
} // namespace SystemInfo
} // namespace norvex
