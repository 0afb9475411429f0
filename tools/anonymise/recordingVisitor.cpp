#include "tools/anonymise/recordingVisitor.h"

#include <algorithm>

namespace norvex::Tool {

RecordingVisitor::~RecordingVisitor() = default;

namespace {

using namespace Privacy;
using Kind = RecordedValue::Kind;

/// Bluetooth devices have names that users give.
bool isBluetoothDevice(const RecordedValue& dictionary)
{
    const RecordedValue* transport = dictionary.find("Transport");
    return (transport != nullptr && transport->bytes.startsWith("Bluetooth")) ||
           dictionary.find("BD_ADDR") != nullptr || dictionary.find("BluetoothDeviceAddress") != nullptr;
}

/// @param isBluetooth whether a Bluetooth device offers the service whose properties these are
PrivateKind privateKindIn(const RecordedValue& dictionary, const QByteArray& key, bool isBluetooth)
{
    const PrivateKind kind = privateKindOf(key);
    if (isBluetooth && kind == PrivateKind::SerialPort) {
        return PrivateKind::BluetoothPort;
    }
    const bool isName = key == "Product" || key == "Name" || key == "DeviceName" || key == "Device Name";
    return isName && isBluetoothDevice(dictionary) ? PrivateKind::Name : kind;
}

/// Volumes and partitions have users' names; a whole disk has its model's.
bool isNamedByUser(const RecordedValue& entry)
{
    const RecordedValue* classes = entry.find("classes");
    const RecordedValue* properties = entry.find("properties");
    const RecordedValue* whole = properties == nullptr ? nullptr : properties->find("Whole");
    const auto isMedia = [](const RecordedValue::Item& item) {
        return item.value.bytes == "IOMedia" || item.value.bytes == "AppleAPFSVolume";
    };
    return classes != nullptr && std::any_of(classes->items.begin(), classes->items.end(), isMedia) &&
           (whole == nullptr || whole->number == 0);
}

/// Arrays share the kind of their key.
void visitValue(RecordedValue& value, PrivateKind privateKind, RecordingVisitor& visitor,
                bool isBluetooth = false)
{
    if (value.kind == Kind::Dictionary) {
        std::vector<PrivateKind> kinds;
        for (const RecordedValue::Item& item : value.items) {
            kinds.push_back(privateKindIn(value, item.key, isBluetooth));
        }
        bool isSorted = true;
        for (std::size_t i = 0; i < kinds.size(); ++i) {
            const QByteArray key = value.items[i].key;
            visitor.visitKey(value.items[i].key);
            visitValue(value.items[i].value, kinds[i], visitor, isBluetooth);
            isSorted = isSorted && value.items[i].key == key;
        }
        if (!isSorted) {
            value.sortKeys();
        }
    } else if (value.kind == Kind::Array) {
        for (RecordedValue::Item& item : value.items) {
            visitValue(item.value, privateKind, visitor, isBluetooth);
        }
    } else {
        visitor.visit(value, privateKind);
    }
}

bool isBluetoothService(const RecordedValue& entry)
{
    const RecordedValue* classes = entry.find("classes");
    return classes != nullptr &&
           std::any_of(classes->items.begin(), classes->items.end(),
                       [](const auto& item) { return item.value.bytes.startsWith("IOBluetooth"); });
}

/// @param isBluetooth whether the entry above is a service of a Bluetooth device
void visitEntry(RecordedValue& entry, RecordingVisitor& visitor, bool isBluetooth = false)
{
    const bool isService = isBluetoothService(entry);
    const PrivateKind nameKind = isNamedByUser(entry) ? PrivateKind::Label : PrivateKind::None;
    for (RecordedValue::Item& item : entry.items) {
        if (item.key == "children") {
            for (RecordedValue::Item& child : item.value.items) {
                visitEntry(child.value, visitor, isService);
            }
        } else if (item.key != "classes") {
            visitValue(item.value, nameKind, visitor, isBluetooth);
        }
    }
}

void visitVolume(RecordedValue& volume, RecordingVisitor& visitor)
{
    for (RecordedValue::Item& item : volume.items) {
        visitValue(item.value, item.key == "path" ? PrivateKind::MountPoint : PrivateKind::None, visitor);
    }
}

} // namespace

void visitRecording(RecordedValue& recording, RecordingVisitor& visitor)
{
    for (RecordedValue::Item& item : recording.items) {
        if (item.key == "registry") {
            visitEntry(item.value, visitor);
        } else if (item.key == "volumes") {
            for (RecordedValue::Item& volume : item.value.items) {
                visitVolume(volume.value, visitor);
            }
        } else {
            visitValue(item.value, item.key == "files" ? PrivateKind::SerialPort : PrivateKind::None,
                       visitor);
        }
    }
}

} // namespace norvex::Tool
