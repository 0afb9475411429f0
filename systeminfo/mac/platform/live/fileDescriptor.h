#pragma once

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

} // namespace norvex
