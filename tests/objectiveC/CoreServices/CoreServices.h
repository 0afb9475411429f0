#pragma once

// The part of the framework's interface that applicationServicesMac.mm calls, for checking that file elsewhere.

#include <stdint.h>

typedef int16_t OSErr;
typedef int32_t OSStatus;
typedef int32_t SInt32;
typedef uint32_t UInt32;
typedef uint32_t FourCharCode;
typedef FourCharCode OSType;

extern "C" OSErr Gestalt(OSType selector, SInt32* response);
