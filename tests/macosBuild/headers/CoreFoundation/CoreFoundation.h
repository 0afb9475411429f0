#include "systeminfo/mac/platform/coreFoundation.h"
