#pragma once

/// @file
/// The Macintosh section of the system-information report: what sysctl, Gestalt, IOKit, the file system and the
/// system's services say about the machine.
///
/// Every function asks the system at the moment of the call and keeps nothing. A function that returns a section never
/// fails: it leaves out each line whose query fails, and its heading, if it has one, is always there. Warnings go to
/// Qt's log (`qWarning`); docs/report-format.md lists them. Lines end with sNewLine. A query of `sysctlbyname` for a
/// text of more than 511 bytes fails.
///
/// std::bad_alloc passes through; nothing else is thrown. On Linux two libraries end the process when memory runs out:
/// libplist, behind checkFtdiDriver() when the property list is binary, and glob of the C library, behind cpuInfo() and
/// memoryInfo().
///
/// You may call all functions on any thread, on several at once, and without an application object. The records and
/// iterators that they hand out are yours; use each on one thread at a time. Unless a description names a limit, a call
/// usually takes a few milliseconds.
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

/// The whole Macintosh section: its banner line, then the sections that SystemInfo::sections() lists for this half,
/// with a separator line behind each group. A failing query shows in its own section only.
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
/// @param bugFixVersion ignored
/// @return the name, empty for every other version
///
/// The result depends on the arguments alone.
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

/// The memory: logical and physical RAM, low memory, page size, parity and MMU type, from `Gestalt` ('lram', 'ram '
/// with 'ramm', 'lmem', 'pgsz', 'prty', 'mmu '); each line only when its query succeeds. The system gives sizes as
/// signed 32-bit numbers of bytes. Only the physical size is also available in megabytes ('ramm'), which the section
/// uses from 2 GiB on.
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

/// The value of a video-memory property that is a number.
/// @param number a CFNumber, not null; stays yours
/// @return its value, if it is stored as a signed 32- or 64-bit integer and not negative; otherwise 0, and a warning
///        goes to the log
NORVEX_SYSTEMINFO_EXPORT unsigned long long ConvertVRAM_CFNumberToUInt64(const __CFNumber* number);

/// The value of a video-memory property that is data.
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

/// The attached USB devices (class IOUSBDevice): a heading and a block for each device. A device without a readable
/// name has no block, and a warning goes to the log.
NORVEX_SYSTEMINFO_EXPORT QString ioKitUsbDevices();

/// Opens an iterator over all USB devices (class IOUSBDevice).
/// @param iterator not null; receives the handle on success and is untouched on failure. Take the entries with
///        IOIteratorNext and release them and the iterator with IOObjectRelease; on systems other than macOS with
///        norvex::nextObject() and norvex::releaseObject().
/// @return a kern_return_t: 0 on success; else the code of the call that failed (5 when there is no matching
///        dictionary), and a warning goes to the log
NORVEX_SYSTEMINFO_EXPORT int ioKitGetUsbDevIterator(unsigned int* iterator);

/// Reads one USB device.
/// @param device an entry of the iterator; stays yours. 0 and handles that are not valid give an error code.
/// @param info not null; reset, then filled. Numbers come from values stored as signed 32-bit integers. Another stored
///        type, or a read that fails, leaves 0 and logs a warning (a failed read of "idProduct" logs none). A value
///        that is absent or no number leaves 0. A text that is not plain ASCII may count as empty.
/// @return a kern_return_t: the result of `IORegistryEntryGetName`, 0 on success
NORVEX_SYSTEMINFO_EXPORT int ioKitGetUsbDevInfo(unsigned int device, usbDeviceInfoStruct_t* info);

/// The name of a USB vendor, from a built-in table of 64.
/// @param vendorId its ID; there is no name for IDs above 0xffff
/// @return the name, or a null string
///
/// The result depends on the argument alone.
NORVEX_SYSTEMINFO_EXPORT QString convertUsbVendorIdToName(unsigned int vendorId);

/// The serial ports (class IOSerialBSDClient) with the drivers above them and, for USB adapters, their IDs.
/// @param rs232Only true for the ports of type "IORS232SerialStream" and those of unknown type; false for all ports
/// @return the section, at least its heading. Two warnings about a port, that it has no callout device or that the
///        callout device does not exist as a file, go to the log and into its block. A type or callout device that is
///        no string counts as absent.
NORVEX_SYSTEMINFO_EXPORT QString ioKitGetRs232SerialDevices(bool rs232Only);

/// Opens an iterator over all serial ports (class IOSerialBSDClient), like ioKitGetUsbDevIterator().
/// @param iterator as there
/// @return as there
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
/// @param path absolute, or relative to the current folder; the system gets it in UTF-8
/// @param info filled on success, undefined otherwise; with null the call fails
/// @return whether `statfs` succeeded
///
/// On Linux the call fails after 2 seconds when the path leads to a file system of a server or of a program (NFS, FUSE)
/// that does not answer. Further calls of the same thread then fail at once until the file system answers again. A
/// helper process asks such file systems; the call also fails when that process cannot be started. Neither `wait` nor
/// `SIGCHLD` notices it. On macOS nothing limits the time.
NORVEX_SYSTEMINFO_EXPORT bool getFileSystemInfo(const QString& path, FileSystemRecord* info);

/// The case sensitivity of the file system that holds a path.
/// @param path in any form that the file system takes
/// @return 1 case sensitive (also if the file system does not know the query), 2 case preserving but not sensitive,
///        0 neither, -1 on failure
///
/// From `pathconf` (_PC_CASE_SENSITIVE, _PC_CASE_PRESERVING), which gets the path in UTF-8. The limit of time is that
/// of getFileSystemInfo().
NORVEX_SYSTEMINFO_EXPORT int getFileSystemCaseSensitivity(const QString& path);

/// @}
/// @name Drivers and services
/// @{

/// Whether the FTDI USB-serial driver is installed, with version and name from its property list. Two or three lines; a
/// failure has a line of its own.
NORVEX_SYSTEMINFO_EXPORT QString checkFtdiDriver();

/// One line with the version of the DNS service discovery daemon, or with the error of the query. On Linux the daemon
/// is Avahi, if it already runs; its version 0.8 counts as 800. The query takes at most 0.2 s there.
NORVEX_SYSTEMINFO_EXPORT QString bonjourVersion();

/// Asks the DNS service discovery daemon for its version (`DNSServiceGetProperty`, "DaemonVersion").
/// @param[out] errorCode receives 0, or the error of the query (a DNSServiceErrorType)
/// @param[in,out] versionText receives the version, such as "878.30.4", behind what it already holds; untouched on
///        failure
///
/// On Linux the query takes at most 0.2 s, as for bonjourVersion().
NORVEX_SYSTEMINFO_EXPORT void checkBonjour(int& errorCode, QString& versionText);

/// One line with the path of the application that opens "mailto:" links (`LSGetApplicationForURL`). Without one the
/// line says `<failed>`, and a warning goes to the log. On Linux the path is that of the application's desktop file:
/// the first that exists of those named in the user's, the desktop's and the administrator's mimeapps.list, else in
/// mimeinfo.cache.
NORVEX_SYSTEMINFO_EXPORT QString defaultEmailApp();

/// @}
/// @name Value formatting
/// The results depend on the arguments alone.
/// @{

/// A frequency in Hz, kHz, MHz or GHz: decimal units, rounded half up to four significant digits; from 1000 GHz on
/// truncated, without a fraction.
/// @param hz in hertz; any value
/// @return for example "2.400 GHz"
NORVEX_SYSTEMINFO_EXPORT QString clockSpeedConvertUserFriendly(unsigned long long hz);

/// A memory size in Byte, KByte, MByte or GByte: binary units, one digit after the point, truncated.
/// @param bytes in bytes; any value
/// @return for example "16.0 GByte"
NORVEX_SYSTEMINFO_EXPORT QString memorySizeConvertUserFriendly(unsigned long long bytes);

/// A disk size in Byte, KB, MB or GB: MB and GB are decimal units, a KB has 1024 bytes but is used from 1000 bytes on;
/// one digit after the point, truncated.
/// @param bytes in bytes; any value
/// @return for example "500.1 GB"
NORVEX_SYSTEMINFO_EXPORT QString diskSizeConvertUserFriendly(unsigned long long bytes);

/// The text of a CoreFoundation string up to its first zero character.
/// @param string may be null; stays yours
/// @return the text; a null QString for null, and when CoreFoundation cannot convert the string, which logs a warning
NORVEX_SYSTEMINFO_EXPORT QString CFStringToQString(const __CFString* string);

/// The word for a CoreFoundation boolean.
/// @param value not null; stays yours
/// @return "Yes" or "No"
NORVEX_SYSTEMINFO_EXPORT QString CFBooleanToQStringYesNo(const __CFBoolean* value);

/// @}

} // namespace MacSysInfo
} // namespace SystemInfo
} // namespace norvex
