#include "systeminfo/mac/frameworks.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/propertyLines.h"

#include <QtGlobal>

#include <memory>

namespace norvex::SystemInfo::MacSysInfo {

QString CFStringToQString(const __CFString* string)
{
    if (string == nullptr) {
        return QString();
    }
    const CFIndex size =
        CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8) + 1;
    const std::unique_ptr<char[]> buffer(new char[std::size_t(size)]);
    if (!CFStringGetCString(string, buffer.get(), size, kCFStringEncodingUTF8)) {
        qWarning("CFStringToQString: conversion failed.");
        return QString();
    }
    return QString::fromUtf8(buffer.get());
}

QString CFBooleanToQStringYesNo(const __CFBoolean* value)
{
    return yesNo(CFBooleanGetValue(value) != 0);
}

} // namespace norvex::SystemInfo::MacSysInfo
