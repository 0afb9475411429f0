#pragma once

/// @file
/// CoreServices for systems that lack it: Gestalt and Launch Services, declared as in the framework's own headers.

#include "systeminfo/mac/platform/coreFoundation.h"

typedef OptionBits LSRolesMask;
struct FSRef;

enum : LSRolesMask { kLSRolesAll = 0xFFFFFFFF };

extern "C" {

OSErr Gestalt(OSType selector, SInt32* response);
OSStatus LSGetApplicationForURL(CFURLRef inURL, LSRolesMask inRoleMask, FSRef* outAppRef,
                                CFURLRef* outAppURL);

} // extern "C"
