#pragma once

#include <stddef.h>

#define _PC_CASE_SENSITIVE 11 // of unistd.h
#define _PC_CASE_PRESERVING 12
extern "C" int sysctlbyname(const char* name, void* oldp, size_t* oldlenp, void* newp, size_t newlen);
