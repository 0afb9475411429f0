#include "systeminfo/mac/platform/failureInjection.h"

#include <atomic>

namespace norvex {

namespace {
std::atomic<std::int64_t> callsMade{0};
std::atomic<std::int64_t> failingCall{0};
} // namespace

void failCall(std::int64_t number)
{
    callsMade = 0;
    failingCall = number;
}

std::int64_t countedCalls()
{
    return callsMade;
}

bool callFails()
{
    return callsMade.fetch_add(1, std::memory_order_relaxed) + 1 ==
           failingCall.load(std::memory_order_relaxed);
}

} // namespace norvex
