#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the run with the input that is being tried when something does not hold that always must.
inline void require(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "Does not hold: %s\n", what);
        std::abort();
    }
}
