#pragma once

/// @file
/// The interfaces that the Macintosh section uses: on macOS those of the system's own headers, elsewhere those of the
/// platform layer, which declares the same names. Only this header tells the two apart.

#include "systeminfo/deprecatedCalls.h"

#if defined(__APPLE__)

#include <CoreFoundation/CoreFoundation.h>
#include <CoreServices/CoreServices.h>
#include <IOKit/IOKitLib.h>
#include <dns_sd.h>
#include <sys/mount.h>
#include <sys/param.h>
#include <sys/sysctl.h>
#include <sys/time.h>
#include <unistd.h>

#else

#include "systeminfo/mac/platform/coreFoundation.h"
#include "systeminfo/mac/platform/coreServices.h"
#include "systeminfo/mac/platform/ioKit.h"
#include "systeminfo/mac/platform/libSystem.h"

#include <sys/time.h>

#endif
