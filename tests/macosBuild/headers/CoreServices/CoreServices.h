#pragma once

#include "systeminfo/mac/platform/coreFoundation.h"

typedef OptionBits LSRolesMask;
struct FSRef;
enum : LSRolesMask { kLSRolesAll = 0xFFFFFFFF };

extern "C" {
OSErr Gestalt(OSType selector, SInt32* response);
OSStatus LSGetApplicationForURL(CFURLRef inURL, LSRolesMask inRoleMask, FSRef* outAppRef,
                                CFURLRef* outAppURL);
}
