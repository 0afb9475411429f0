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
/// What the kernel calls a disk or its partition: "sda1", "nvme0n1", "disk2s1".
bool isDiskName(const QString& name);
/// Whether a device has its model's name: "Magic Keyboard".
bool isModelName(const QString& name);
/// Whether a word is the key of a property: "model".
bool isPropertyKey(const QString& word);

} // namespace norvex::Privacy
