#pragma once

/// @file
/// The bytes that `sysctlbyname` copies for a value.

#include <QByteArray>

#include <cstdint>
#include <sys/time.h>
#include <type_traits>

namespace norvex {

/// A text, with the zero byte that ends it.
inline QByteArray sysctlTextBytes(const QByteArray& text)
{
    return QByteArray(text).append('\0');
}

/// An integer in the width of its type and the host's byte order.
template <typename Integer>
QByteArray sysctlIntegerBytes(Integer value)
{
    static_assert(std::is_integral<Integer>::value, "an integer is expected");
    return QByteArray(reinterpret_cast<const char*>(&value), int(sizeof value));
}

/// A moment, such as `kern.boottime`, as a timeval.
/// @param seconds since 1970, in UTC
inline QByteArray sysctlTimeBytes(std::int64_t seconds)
{
    timeval time = {};
    time.tv_sec = time_t(seconds);
    return QByteArray(reinterpret_cast<const char*>(&time), int(sizeof time));
}

} // namespace norvex
