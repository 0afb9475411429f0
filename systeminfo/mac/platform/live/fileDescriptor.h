#pragma once

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace norvex {

/// Owns a file descriptor, or none.
class FileDescriptor
{
public:
    FileDescriptor() = default;
    /// Takes over the descriptor that open(), socket() and their like return; -1 stands for none.
    explicit FileDescriptor(int number) noexcept : number_(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor other) noexcept
    {
        std::swap(number_, other.number_);
        return *this;
    }
    ~FileDescriptor()
    {
        if (number_ != -1) {
            ::close(number_);
        }
    }

    /// The descriptor, or -1. It stays this object's.
    int get() const { return number_; }
    /// Gives up the descriptor without closing it.
    void release() { number_ = -1; }
    explicit operator bool() const { return number_ != -1; }

private:
    int number_ = -1;
};

/// Waits until a descriptor is ready, or has failed so that a call on it says why. Signals do not end the wait.
/// @param events what to wait for: POLLIN or POLLOUT
/// @return false when the end comes first
inline bool waitUntilReady(int descriptor, short events, std::chrono::steady_clock::time_point end)
{
    pollfd news = {descriptor, events, 0};
    int ready = 0;
    do {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        ready = ::poll(&news, 1, int(std::max<std::chrono::milliseconds::rep>(left.count(), 0)));
    } while (ready == -1 && errno == EINTR);
    return ready == 1;
}

} // namespace norvex
