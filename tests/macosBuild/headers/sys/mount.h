#pragma once

#include <stdint.h>

struct statfs
{
    uint32_t f_bsize;
    int32_t f_iosize;
    uint64_t f_blocks;
    uint64_t f_bfree;
    uint64_t f_bavail;
    uint64_t f_files;
    uint64_t f_ffree;
    char f_fstypename[16];
    char f_mntonname[1024];
    char f_mntfromname[1024];
};

extern "C" int statfs(const char* path, struct statfs* record);
