#include "systeminfo/mac/platform/coreServices.h"

#include "systeminfo/mac/platform/cfObjects.h"
#include "systeminfo/mac/platform/failureInjection.h"
#include "systeminfo/mac/platform/machine.h"

using norvex::callFails;
using norvex::currentMachine;

extern "C" {

OSErr Gestalt(OSType selector, SInt32* response)
{
    constexpr OSErr undefinedSelector = -5551;
    const auto value = currentMachine()->gestalt(selector);
    if (callFails() || !value) {
        return undefinedSelector;
    }
    *response = *value;
    return 0;
}

OSStatus LSGetApplicationForURL(CFURLRef inURL, LSRolesMask, FSRef*, CFURLRef* outAppURL)
{
    constexpr OSStatus applicationNotFound = -10814;
    const std::string scheme = inURL->text.substr(0, inURL->text.find(':'));
    const auto path = currentMachine()->urlHandler(QByteArray::fromStdString(scheme));
    if (callFails() || !path) {
        return applicationNotFound;
    }
    *outAppURL = norvex::handOut(CFURLRef(new __CFURL("file://" + path->toStdString())));
    return 0;
}

} // extern "C"
