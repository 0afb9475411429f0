#pragma once

#include <QString>

namespace norvex::SystemInfo::MacSysInfo {

/// What follows a USB vendor ID in a line: " = " and the vendor's name, or nothing for one without a name.
QString usbVendorSuffix(unsigned int vendorId);

} // namespace norvex::SystemInfo::MacSysInfo
