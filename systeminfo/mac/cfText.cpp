#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/propertyLines.h"

#include <QtGlobal>

namespace norvex::SystemInfo::MacSysInfo {

QString CFStringToQString(const __CFString* string)
{
    if (string == nullptr) {
        return QString();
    }
    const auto text = utf8Of(string);
    if (!text) {
        qWarning("CFStringToQString: conversion failed.");
        return QString();
    }
    return QString::fromUtf8(text->c_str());
}

QString CFBooleanToQStringYesNo(const __CFBoolean* value)
{
    return yesNo(CFBooleanGetValue(value) != 0);
}

} // namespace norvex::SystemInfo::MacSysInfo
