#include "tools/anonymise/privateValueCollector.h"

#include "systeminfo/privacy/privateValues.h"
#include "tools/anonymise/recordingVisitor.h"

#include <QRegularExpression>

#include <algorithm>

namespace norvex::Tool {

namespace {

using namespace Privacy;
using Kind = RecordedValue::Kind;
using TextKind = PseudonymMap::TextKind;

class Collector : public RecordingVisitor
{
public:
    explicit Collector(PseudonymMap& pseudonyms) : pseudonyms_(pseudonyms) {}

    void collect(RecordedValue& recording, const QString& hostName)
    {
        visitRecording(recording, *this);
        addHost(hostName.toUtf8());
        if (const RecordedValue* volumes = recording.find("volumes")) {
            for (const RecordedValue::Item& volume : volumes->items) {
                addVolume(volume.value);
            }
        }
        const auto isLonger = [](const QByteArray& a, const QByteArray& b) { return a.size() > b.size(); };
        std::stable_sort(serials_.begin(), serials_.end(), isLonger);
        for (const QByteArray& serial : serials_) {
            pseudonyms_.addText(serial, TextKind::Serial);
        }
    }

    void visitKey(QByteArray& key) override { addAddressesIn(QString::fromLatin1(key)); }

    void visit(RecordedValue& value, PrivateKind privateKind) override
    {
        if (privateKind == PrivateKind::Constant) {
            return;
        }
        switch (value.kind) {
        case Kind::Text: addText(value.bytes, privateKind); break;
        case Kind::Data: addData(value.bytes, privateKind); break;
        case Kind::Integer: addInteger(value, privateKind); break;
        default: break;
        }
        if (value.kind == Kind::Text || value.kind == Kind::Data) {
            addFoundIn(QString::fromLatin1(value.bytes));
        }
    }

private:
    void addText(const QByteArray& text, PrivateKind privateKind)
    {
        const QByteArray bytes = hexBytesOf(text);
        const bool mayBeNumber = privateKind == PrivateKind::Address || privateKind == PrivateKind::Uuid;
        if (mayBeNumber && bytes.size() == uuidSize) {
            pseudonyms_.addUuid(bytes);
        } else if (privateKind == PrivateKind::Address &&
                   (bytes.size() == addressSize || bytes.size() == extendedAddressSize)) {
            pseudonyms_.addAddress(bytes);
        } else if (mayBeNumber || privateKind == PrivateKind::Serial) {
            serials_.push_back(text);
        } else if (privateKind == PrivateKind::Name) {
            addName(text);
        } else if (privateKind == PrivateKind::Label && !isCommonLabel(text)) {
            pseudonyms_.addText(text, TextKind::Label);
        }
    }

    void addData(const QByteArray& data, PrivateKind privateKind)
    {
        const bool mayBeNumber = privateKind == PrivateKind::Address || privateKind == PrivateKind::Uuid;
        const QList<QByteArray> texts = textsIn(data);
        if (mayBeNumber && data.size() == uuidSize) {
            pseudonyms_.addUuid(data);
        } else if (privateKind == PrivateKind::Address && data.size() >= addressSize) {
            for (const QByteArray& address : addressesIn(data)) {
                pseudonyms_.addAddress(address);
            }
        } else if (privateKind == PrivateKind::Display) {
            for (const QByteArray& serial : displaySerials(data)) {
                serials_.push_back(serial);
            }
        } else if (texts.isEmpty() && (privateKind == PrivateKind::Serial || mayBeNumber)) {
            pseudonyms_.addSerialBytes(data);
        } else {
            for (const QByteArray& text : texts) {
                addText(text, privateKind);
            }
        }
        if (privateKind == PrivateKind::Name && texts.isEmpty()) {
            addName(data);
        }
    }

    void addInteger(const RecordedValue& integer, PrivateKind privateKind)
    {
        if (privateKind == PrivateKind::Serial && isSerialNumber(integer.unsignedNumber())) {
            serials_.push_back(QByteArray::number(qulonglong(integer.unsignedNumber())));
        }
        const QByteArray address =
            privateKind == PrivateKind::Address ? addressOf(integer.unsignedNumber()) : QByteArray();
        if (!address.isEmpty()) {
            pseudonyms_.addAddress(address);
        }
    }

    void addName(const QByteArray& name)
    {
        if (!name.startsWith("localhost") && name != "root" && name != "admin") {
            pseudonyms_.addText(name, TextKind::Name);
        }
    }

    // A host has several names.
    void addHost(QByteArray host)
    {
        static const QRegularExpression address(QStringLiteral("^[0-9.]+$|^\\[.*\\]$"));
        for (const char* domain : {"._smb._tcp.local", "._afpovertcp._tcp.local", ".local"}) {
            if (host.endsWith(domain)) {
                host.chop(static_cast<int>(qstrlen(domain)));
            }
        }
        addName(host);
        if (!address.match(QString::fromUtf8(host)).hasMatch()) {
            addName(host.left(host.indexOf('.')));
        }
    }

    void addVolume(const RecordedValue& volume)
    {
        // The folders in which systems mount what users connect. On Linux the user's name is part of the path.
        static const QRegularExpression folder(
            QStringLiteral("^/(?:Volumes|mnt|(?:run/)?media/([^/]+))/([^/]+)"));
        // "//domain;user:password@host/share" and "user@host:/folder"
        static const QRegularExpression remote(QStringLiteral(
            "^[a-z]*:?//(?:(?:[^@/;]*;)?([^@/:]*)(?::([^@/]*))?@)?([^/:]+)(?::[0-9]+)?(?:/([^/]*))?"));
        static const QRegularExpression exportedFolder(
            QStringLiteral("^(?:([^@/:]+)@)?([^/:@]+|\\[[^/]+\\]):/"));
        const RecordedValue* path = volume.find("path");
        const RecordedValue* record = volume.find("statfs");
        const RecordedValue* source = record == nullptr ? nullptr : record->find("f_mntfromname");
        const auto mounted = folder.match(QString::fromUtf8(path->bytes));
        addName(mounted.captured(1).toUtf8());
        addText(mounted.captured(2).toUtf8(), PrivateKind::Label);
        const QString from = source == nullptr ? QString() : QString::fromUtf8(source->bytes);
        const auto share = remote.match(from);
        addName(share.captured(1).toUtf8());
        addName(share.captured(2).toUtf8());
        addHost(share.captured(3).toUtf8());
        addText(share.captured(4).toUtf8(), PrivateKind::Label);
        const auto exported = exportedFolder.match(from);
        addName(exported.captured(1).toUtf8());
        addHost(exported.captured(2).toUtf8());
    }

    // What has a shape that is private under any key. The text holds bytes; Latin-1 keeps them.
    void addFoundIn(const QString& text)
    {
        static const QRegularExpression uuid(QStringLiteral(
            "(?<![0-9A-Fa-f])[0-9A-Fa-f]{8}(?:-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12}(?![0-9A-Fa-f])"));
        static const QRegularExpression home(QStringLiteral("/(?:Users|home)/([^/\\x{0}]+)"));
        addAddressesIn(text);
        for (auto found = uuid.globalMatch(text); found.hasNext();) {
            pseudonyms_.addUuid(hexBytesOf(found.next().captured().toLatin1()));
        }
        for (auto found = home.globalMatch(text); found.hasNext();) {
            const QByteArray user = found.next().captured(1).toLatin1();
            if (user != "Shared" && user != "Guest") {
                addName(user);
            }
        }
    }

    void addAddressesIn(const QString& text)
    {
        static const QRegularExpression address(
            QStringLiteral("(?<![0-9A-Fa-f])(?<![0-9A-Fa-f]{2}[:-])(?:[0-9A-Fa-f]{2}(?:-[0-9A-Fa-f]{2}){5}|"
                           "[0-9A-Fa-f]{1,2}(?::[0-9A-Fa-f]{1,2}){5})(?![:-]?[0-9A-Fa-f])"));
        for (auto found = address.globalMatch(text); found.hasNext();) {
            QByteArray bytes;
            const QString pairsOfDigits = found.next().captured().replace(QLatin1Char('-'), QLatin1Char(':'));
            const QStringList pairs = pairsOfDigits.split(QLatin1Char(':'));
            for (const QString& pair : pairs) {
                bytes += static_cast<char>(pair.toInt(nullptr, 16));
            }
            pseudonyms_.addAddress(bytes);
        }
    }

    PseudonymMap& pseudonyms_;
    std::vector<QByteArray> serials_;
};

} // namespace

void collectPrivateValues(RecordedValue& recording, const QString& hostName, PseudonymMap& pseudonyms)
{
    Collector(pseudonyms).collect(recording, hostName);
}

} // namespace norvex::Tool
