#include "systeminfo/mac/platform/ioKit.h"
