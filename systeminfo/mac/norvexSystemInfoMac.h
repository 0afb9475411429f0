#pragma once

/// @file
/// The Macintosh section of the system-information report: what sysctl, Gestalt, IOKit, the file system and the system's
/// services say about the machine.
///
/// Every function asks the system at the moment of the call, keeps nothing and returns its text by value. No function
/// fails: a section leaves out a line whose query fails, and always has its heading. Warnings go to Qt's log
/// (`qWarning`). Lines end with sNewLine. A text of `sysctlbyname` has at most 511 bytes and its zero; the query of a
/// longer one fails.
///
/// std::bad_alloc passes through; nothing else is thrown. On Linux two libraries end the process when memory runs
/// out: libplist, behind checkFtdiDriver() when the property list is binary, and glob of the C library, behind cpuInfo()
/// and memoryInfo().
///
/// Threads: you may call all functions on any thread, on several at once. The records and iterators that they hand out
/// are yours; use each on one thread at a time.
///
/// On hosts without macOS's interfaces the same functions answer from this host, or from the recording of a Mac (see
/// norvexPlatform.h). On Linux the first call of bonjourVersion() that finds a system bus leaves a thread of Qt's
/// D-Bus module behind ("QDBusConnection"), which stays until the process ends; no other section leaves one. The first
/// question about a file, folder or file system leaves a descriptor of the kernel's mount table open, which tells when
/// mounts change; if somebody closes it, the next question opens one again.

#include "../norvexExport.h"

#include <QString>

// CoreFoundation's own types: a CFStringRef is a pointer to a constant __CFString, and so on.
struct __CFString;
struct __CFBoolean;
struct __CFNumber;
struct __CFData;

#if defined(__APPLE__)
struct statfs;
#else
namespace norvex {
struct MacStatfs;
}
#endif

namespace norvex {
namespace SystemInfo {
namespace MacSysInfo {

#if defined(__APPLE__)
/// The C library's record of a file system, `struct statfs` of <sys/mount.h>.
using FileSystemRecord = struct ::statfs;
#else
/// A record with the fields that macOS's `struct statfs` has, see norvexPlatform.h.
using FileSystemRecord = ::norvex::MacStatfs;
#endif

/// The line terminator of the Macintosh section: one line feed. Loading the library sets it. Do not change it.
extern NORVEX_SYSTEMINFO_EXPORT QString sNewLine;

/// @name Assembly
/// @{

/// The whole Macintosh section: its banner line, then the sections that SystemInfo::sections() lists for this half, with
/// a separator line behind each group. A failing query shows in its own section only.
NORVEX_SYSTEMINFO_EXPORT QString allInfos();

/// The line behind a group of sections: 72 hyphens and sNewLine.
NORVEX_SYSTEMINFO_EXPORT QString separator();

/// @}
/// @name Operating system and model
/// @{

/// The operating-system version.
/// @param asReportLine true for the report's line, "MacOS version: 10.13.6 (High Sierra)" and sNewLine; false
///        for the bare name, "MacOS 10.13.6 (High Sierra)", without a line end.
/// @return the text; the label alone when the query of one of the three version numbers fails
///
/// From `Gestalt` (selectors 'sys1', 'sys2', 'sys3'). On Linux the numbers are those of the running kernel's release.
NORVEX_SYSTEMINFO_EXPORT QString osVersion(bool asReportLine);

/// The operating system's name and version without a line end: osVersion(false).
NORVEX_SYSTEMINFO_EXPORT QString platformName();

/// The release name of a version of the system.
/// @param majorVersion only releases of version 10 have names
/// @param minorVersion 0 ("Cheetah") to 14 ("Mojave")
/// @param bugFixVersion has no influence
/// @return the name, empty for every other version
///
/// Pure; asks nothing.
NORVEX_SYSTEMINFO_EXPORT QString osVersionName(int majorVersion, int minorVersion, int bugFixVersion);

/// The kernel: a heading, then build, version, boot time (local time zone) and kernel architecture, each line only when
/// its query succeeds. From `sysctlbyname` ("kern.osversion", "kern.version", "kern.boottime", "hw.machine").
NORVEX_SYSTEMINFO_EXPORT QString kernelInfo();

/// The line with the hardware model identifier, such as "Model: MacPro6,1"; empty when `sysctlbyname`
/// ("hw.model") fails.
NORVEX_SYSTEMINFO_EXPORT QString macModel();

/// Two lines: the machine's architecture (`Gestalt` 'sysa'; left out when that fails) and the architecture that this
/// library was compiled for: "Intel (64bit mode)" on x86-64, "ARM (64bit mode)" on arm64, others in the same form.
NORVEX_SYSTEMINFO_EXPORT QString architecture();

/// @}
/// @name Processor and memory
/// @{

/// The processor: core counts, the Mach type, sub-type and family with their names, vendor, brand, family, model,
/// stepping, signature, microcode, features, clock speeds, cache sizes and byte order. Each line stands only when its
/// `sysctlbyname` query succeeds. norvex::SystemInfo::extractAccessKeyValues reads "Number of physical cores:",
/// "CPU signature:" and "CPU sub type" back.
NORVEX_SYSTEMINFO_EXPORT QString cpuInfo();

/// The memory: logical and physical RAM, low memory, page size, parity and MMU type, from `Gestalt` ('lram', 'ram ' with
/// 'ramm', 'lmem', 'pgsz', 'prty', 'mmu '). The system gives sizes as signed 32-bit numbers; for the physical size alone,
/// 'ramm' tells RAM of 2 GiB and more in megabytes.
NORVEX_SYSTEMINFO_EXPORT QString memoryInfo();

/// @}
/// @name Devices in the I/O registry
/// @{

/// The drives on AHCI controllers (class AppleAHCIDiskDriver): a heading, then a block for each drive, numbered from 1.
/// A value that is absent or of an unexpected kind has no line; a drive without readable properties has no block. When
/// listing the drives fails, the section is its heading alone, and a warning goes to the log.
NORVEX_SYSTEMINFO_EXPORT QString ioKitSataDiskDevices();

/// The optical drives on AHCI controllers (class IOAHCISerialATAPI), like ioKitSataDiskDevices().
NORVEX_SYSTEMINFO_EXPORT QString ioKitSerialAtapiDevices();

/// The NVM Express controllers (class IONVMeController), like ioKitSataDiskDevices().
NORVEX_SYSTEMINFO_EXPORT QString ioKitNVMExpressDevices();

/// The Ethernet interfaces, wired and wireless (class IOEthernetInterface), each with its controller's model and
/// hardware address (lower-case hexadecimal pairs). When listing them fails, the section is its heading alone, and a
/// warning goes to the log.
NORVEX_SYSTEMINFO_EXPORT QString ioKitEthernetDevices();

/// The machine's serial number and hardware UUID (class IOPlatformExpertDevice), each line only when the
/// property is a string. The heading alone when there is no such entry.
NORVEX_SYSTEMINFO_EXPORT QString ioKitPlatformInfos();

/// The operating-system and IOKit builds that the root of the I/O registry publishes. When `IOMasterPort` fails, a line
/// says so.
NORVEX_SYSTEMINFO_EXPORT QString ioKitRootInfos();

/// The display controllers (class IOPCIDevice with the IOName "display", in any letter case), each with model and video
/// memory: "???" and 0 if the registry does not tell them.
NORVEX_SYSTEMINFO_EXPORT QString ioKitGraphicsCards();

/// The number behind a video-memory property.
/// @param number a CFNumber, not null; stays yours
/// @return its value, if it is stored as a signed 32- or 64-bit integer and not negative; otherwise 0, and a warning
///        goes to the log
NORVEX_SYSTEMINFO_EXPORT unsigned long long ConvertVRAM_CFNumberToUInt64(const __CFNumber* number);

/// The number behind a video-memory property that is data.
/// @param data a CFData, not null; stays yours
/// @return its 1 to 8 bytes as a little-endian unsigned integer; 0 for any other length
NORVEX_SYSTEMINFO_EXPORT unsigned long long ConvertVRAM_CFDataToUInt64(const __CFData* data);

/// What the I/O registry says about one USB device. A field whose property is missing or unusable is 0 or
/// empty.
struct usbDeviceInfoStruct_t
{
    unsigned int vendorId;   ///< "idVendor"
    unsigned int productId;  ///< "idProduct"
    unsigned int locationId; ///< "locationID", the path of ports to the device
    unsigned int address;    ///< "USB Address", the device's address on its bus
    unsigned int speed;      ///< "Device Speed": 0 low, 1 full, 2 high, 3 super speed
    char name[128];          ///< the entry's registry name, zero-terminated UTF-8 (IOKit's io_name_t)
    QString productName;     ///< "USB Product Name"
    QString vendorName;      ///< "USB Vendor Name"
};

/// The attached USB devices (class IOUSBDevice): a heading and a block for each device. A device without a readable name
/// has no block, and a warning goes to the log.
NORVEX_SYSTEMINFO_EXPORT QString ioKitUsbDevices();

/// Opens an iterator over all USB devices.
/// @param iterator receives the handle on success; release it with IOObjectRelease, on other hosts than macOS with
///        norvex::releaseObject()
/// @return a kern_return_t: 0 on success, else the code of the call that failed (5 without a matching dictionary); a
///        warning goes to the log
NORVEX_SYSTEMINFO_EXPORT int ioKitGetUsbDevIterator(unsigned int* iterator);

/// Reads one USB device.
/// @param device an entry of the iterator; stays yours
/// @param info reset, then filled. Numbers come from values stored as signed 32-bit integers. Another stored type, or a
///        read that fails, leaves 0 and logs a warning (a failed read of "idProduct" logs none). A value that is
///        absent or no number leaves 0. A string without a direct C string counts as empty.
/// @return a kern_return_t: the result of `IORegistryEntryGetName`, 0 on success
NORVEX_SYSTEMINFO_EXPORT int ioKitGetUsbDevInfo(unsigned int device, usbDeviceInfoStruct_t* info);

/// The maker behind a USB vendor ID, from a built-in table of 64.
/// @param vendorId all 32 bits count; no ID above 0xffff has a name
/// @return the name, or a null string
///
/// Pure; asks nothing.
NORVEX_SYSTEMINFO_EXPORT QString convertUsbVendorIdToName(unsigned int vendorId);

/// The serial ports (class IOSerialBSDClient) with the drivers above them and, for USB adapters, their IDs.
/// @param rs232Only true for the ports of type "IORS232SerialStream" and those of unknown type; false for all ports
/// @return the section, at least its heading. Two warnings about a port (no callout device, or none as a file) go to
///        the log and into its block. A type or callout device that is no string counts as absent.
NORVEX_SYSTEMINFO_EXPORT QString ioKitGetRs232SerialDevices(bool rs232Only);

/// Opens an iterator over all serial ports, like ioKitGetUsbDevIterator().
/// @param iterator receives the handle on success; release it as there
/// @return a kern_return_t, as there
NORVEX_SYSTEMINFO_EXPORT int ioKitGetSerialBsdDevicesIterator(unsigned int* iterator);

/// @}
/// @name Volumes
/// @{

/// The volumes: the entries of /Volumes by name, ignoring case, each with mount point and source, type, case
/// sensitivity, block and file-node counts, and sizes. When `statfs` fails, only the path stands. A count of all ones
/// prints as "-" or has no size line. On Linux the volumes are the mounted file systems that hold user data, each under
/// its mount point. A file system that does not answer counts as a failure there, see getFileSystemInfo(); all that do
/// not answer take 2 seconds together.
NORVEX_SYSTEMINFO_EXPORT QString listFileSystemVolumesInfo();

/// Asks `statfs` about the file system that holds a path.
/// @param path in any form that the file system takes; passed in UTF-8
/// @param info filled on success, undefined otherwise; null fails
/// @return whether `statfs` succeeded
///
/// On Linux it fails after 2 seconds when the path leads to a file system of a server or of a program (NFS, FUSE) that does
/// not answer, and then fails at once as long as the same thread lives and the file system is silent. A process of its own
/// asks such file systems; where none can be started, it fails. That process is no child that `wait` or `SIGCHLD` tell
/// about. On macOS nothing limits the time.
NORVEX_SYSTEMINFO_EXPORT bool getFileSystemInfo(const QString& path, FileSystemRecord* info);

/// The case sensitivity of the file system that holds a path.
/// @param path in any form that the file system takes
/// @return 1 case sensitive (also if the file system does not know the query), 2 case preserving but not sensitive,
///        0 neither, -1 on failure
///
/// From `pathconf` (_PC_CASE_SENSITIVE, _PC_CASE_PRESERVING) on the UTF-8 form of the path. Takes as long as
/// getFileSystemInfo().
NORVEX_SYSTEMINFO_EXPORT int getFileSystemCaseSensitivity(const QString& path);

/// @}
/// @name Drivers and services
/// @{

/// Whether the FTDI USB-serial driver is installed, with version and name from its property list. Two or three lines; a
/// failure has a line of its own.
NORVEX_SYSTEMINFO_EXPORT QString checkFtdiDriver();

/// One line with the version of the DNS service discovery daemon, or with the error of the query. On Linux the daemon is
/// Avahi, if it already runs; its version 0.8 counts as 800. The query takes at most 0.2 s there.
NORVEX_SYSTEMINFO_EXPORT QString bonjourVersion();

/// Asks the DNS service discovery daemon for its version (`DNSServiceGetProperty`, "DaemonVersion").
/// @param errorCode receives 0 or the query's error
/// @param versionText on success the version, as "878.30.4", is appended; untouched otherwise
NORVEX_SYSTEMINFO_EXPORT void checkBonjour(int& errorCode, QString& versionText);

/// One line with the path of the application that opens "mailto:" links (`LSGetApplicationForURL`). Without one the line
/// says `<failed>`, and a warning goes to the log. On Linux the path is that of the handler's desktop file: the
/// first that is there of those in mimeapps.list, with the lists of desktops and administrators, else in mimeinfo.cache.
NORVEX_SYSTEMINFO_EXPORT QString defaultEmailApp();

/// @}
/// @name Value formatting
/// Pure functions; the numbers are exact for every input.
/// @{

/// A frequency in Hz, kHz, MHz or GHz: decimal units, rounded half up, four significant digits below 1000
/// units.
/// @param hz in hertz
/// @return for example "2.400 GHz"
NORVEX_SYSTEMINFO_EXPORT QString clockSpeedConvertUserFriendly(unsigned long long hz);

/// A memory size in Byte, KByte, MByte or GByte: binary units, one digit after the point, truncated.
/// @param bytes in bytes
/// @return for example "16.0 GByte"
NORVEX_SYSTEMINFO_EXPORT QString memorySizeConvertUserFriendly(unsigned long long bytes);

/// A disk size in Byte, KB, MB or GB: decimal units for MB and GB, 1024 bytes for a KB, one digit after the
/// point, truncated.
/// @param bytes in bytes
/// @return for example "500.1 GB"
NORVEX_SYSTEMINFO_EXPORT QString diskSizeConvertUserFriendly(unsigned long long bytes);

/// The text of a CoreFoundation string up to its first zero character.
/// @param string may be null; stays yours
/// @return the text; a null QString for null, and when the conversion to UTF-8 fails, which logs a warning
NORVEX_SYSTEMINFO_EXPORT QString CFStringToQString(const __CFString* string);

/// The word for a CoreFoundation boolean.
/// @param value not null; stays yours
/// @return "Yes" or "No"
NORVEX_SYSTEMINFO_EXPORT QString CFBooleanToQStringYesNo(const __CFBoolean* value);

/// @}

} // namespace MacSysInfo
} // namespace SystemInfo
} // namespace norvex
