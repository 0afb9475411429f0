#pragma once

#include <csignal>

#include <sys/time.h>

/// Interrupts this process with a signal every 10 ms while it lives; a call that waits then fails with EINTR.
class Interruptions
{
public:
    Interruptions()
    {
        struct sigaction action = {};
        action.sa_handler = [](int) {};
        sigaction(SIGALRM, &action, &previous_);
        setInterval(10000);
    }
    Interruptions(const Interruptions&) = delete;
    Interruptions& operator=(const Interruptions&) = delete;
    ~Interruptions()
    {
        setInterval(0);
        sigaction(SIGALRM, &previous_, nullptr);
    }

private:
    static void setInterval(suseconds_t microseconds)
    {
        const itimerval timer = {{0, microseconds}, {0, microseconds}};
        setitimer(ITIMER_REAL, &timer, nullptr);
    }

    struct sigaction previous_ = {};
};
