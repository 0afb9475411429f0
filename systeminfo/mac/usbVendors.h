#pragma once

#include <QString>

namespace norvex::SystemInfo::MacSysInfo {

/// What follows a USB vendor ID in a line: " = " and the vendor's name; nothing for a vendor that is not in the table.
QString usbVendorSuffix(unsigned int vendorId);

} // namespace norvex::SystemInfo::MacSysInfo
