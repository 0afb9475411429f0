#pragma once

/// @file
/// The identification data (EDID) of displays.

#include <QByteArray>
#include <QList>

#include <functional>

namespace norvex::Privacy {

/// The serial numbers in data that holds EDID blocks at any place: texts, and numbers in decimal.
/// @param isDisplay whether the data is a display's even if it does not begin with the header of EDID
QList<QByteArray> displaySerials(const QByteArray& data, bool isDisplay);

/// Data whose displays have other serial numbers, with their checksums mended.
/// @param replaced gives a text of the same length
QByteArray withoutDisplaySerials(const QByteArray& data, bool isDisplay,
                                 const std::function<QByteArray(const QByteArray&)>& replaced);

/// The bytes of a text of hexadecimal digits that holds EDID blocks; empty for any other text.
QByteArray displayDataOf(const QByteArray& text);

} // namespace norvex::Privacy
