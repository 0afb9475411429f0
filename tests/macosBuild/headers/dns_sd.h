#pragma once

#include <stdint.h>

typedef int32_t DNSServiceErrorType;
#define kDNSServiceProperty_DaemonVersion "DaemonVersion"
extern "C" DNSServiceErrorType DNSServiceGetProperty(const char* property, void* result, uint32_t* size);
