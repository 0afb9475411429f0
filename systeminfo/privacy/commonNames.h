#pragma once

/// @file
/// Names that many machines have. They tell nothing about one of them, and replacing them would spoil a text.

#include <QString>

namespace norvex::Privacy {

/// Of a user or a host: "root", "localhost", and the accounts of systems that start from a medium.
bool isCommonName(const QString& name);
/// Of a volume: "Macintosh HD", "EFI", the name of a disk.
bool isCommonLabel(const QString& label);
/// Of a folder that systems and servers make: "Users", "export", "Documents".
bool isCommonFolder(const QString& folder);
/// Of a home folder that no person has: "/root".
bool isCommonHome(const QString& path);
/// Of a folder that systems make in homes: "Desktop", ".local".
bool isHomeFolder(const QString& folder);
/// What the kernel calls a disk or its partition: "sda1", "nvme0n1", "disk2s1".
bool isDiskName(const QString& name);
/// What systems call a network interface: "en0", "wlp2s0", "wg0".
bool isInterfaceName(const QString& name);
/// Whether a device has its model's name: "Magic Keyboard".
bool isModelName(const QString& name);
/// Whether a word is the key of a property: "model".
bool isPropertyKey(const QString& word);

/// Whether a name is a word that reports and machines use, so that a name of that spelling is only one where its place
/// says so: "intel", "disk".
bool isTechnicalWord(const QString& name);
/// What makers write where a serial number would be: "0000", "To be filled by O.E.M.".
bool isNoSerialNumber(const QString& text);

} // namespace norvex::Privacy
