#include "tools/anonymise/privateValueCollector.h"

#include "systeminfo/privacy/commonNames.h"
#include "systeminfo/privacy/displayData.h"
#include "systeminfo/privacy/privateParts.h"
#include "tools/anonymise/recordingVisitor.h"

#include <algorithm>

namespace norvex::Tool {

namespace {

using namespace Privacy;
using Kind = RecordedValue::Kind;
using TextKind = PseudonymMap::TextKind;

class Collector : public RecordingVisitor
{
public:
    void addNames(const QStringList& names)
    {
        for (const QString& name : names) {
            addName(name);
        }
    }

    void addName(const QString& name)
    {
        if (!isCommonName(name)) {
            names_.push_back(name.toUtf8());
        }
    }

    /// A value that is private in several ways has the kind that is searched for most: addresses before names, names
    /// before serial numbers, and labels last.
    void giveTo(PseudonymMap& pseudonyms)
    {
        for (const auto* values :
             {&addresses_, &uuids_, &names_, &serials_, &serialBytes_, &labels_, &folders_}) {
            for (const QByteArray& value : *values) {
                pseudonyms.reserve(value);
            }
        }
        for (const QByteArray& address : addresses_) {
            pseudonyms.addAddress(address);
        }
        for (const QByteArray& uuid : uuids_) {
            pseudonyms.addUuid(uuid);
        }
        for (const QByteArray& name : names_) {
            pseudonyms.addText(name, TextKind::Name);
        }
        const auto isLonger = [](const QByteArray& a, const QByteArray& b) { return a.size() > b.size(); };
        std::stable_sort(serials_.begin(), serials_.end(), isLonger);
        for (const QByteArray& serial : serials_) {
            pseudonyms.addText(serial, TextKind::Serial);
        }
        for (const QByteArray& serial : serialBytes_) {
            pseudonyms.addSerialBytes(serial);
        }
        for (const QByteArray& label : labels_) {
            pseudonyms.addText(label, TextKind::Label);
        }
        for (const QByteArray& folder : folders_) {
            pseudonyms.addFolder(folder);
        }
    }

    void visitKey(QByteArray& key) override { addParts(QString::fromUtf8(key), PrivateKind::None); }

    void visit(RecordedValue& value, PrivateKind privateKind) override
    {
        if (privateKind == PrivateKind::Constant) {
            return;
        }
        switch (value.kind) {
        case Kind::Text:
            addText(value.bytes, privateKind);
            addParts(QString::fromUtf8(value.bytes), privateKind);
            addDisplay(displayDataOf(value.bytes), false);
            break;
        case Kind::Data:
            addData(value.bytes, privateKind);
            addDisplay(value.bytes, privateKind == PrivateKind::Display);
            addParts(QString::fromLatin1(value.bytes), privateKind);
            addWideParts(value.bytes, privateKind);
            break;
        case Kind::Integer: addInteger(value, privateKind); break;
        default: break;
        }
    }

private:
    static bool isName(PrivateKind privateKind)
    {
        return privateKind == PrivateKind::Name || privateKind == PrivateKind::Network;
    }

    void addText(const QByteArray& text, PrivateKind privateKind)
    {
        const QByteArray bytes = hexBytesOf(text);
        const bool mayBeNumber = privateKind == PrivateKind::Address || privateKind == PrivateKind::Uuid;
        if (mayBeNumber && bytes.size() == uuidSize) {
            uuids_.push_back(bytes);
        } else if (privateKind == PrivateKind::Address &&
                   (bytes.size() == addressSize || bytes.size() == extendedAddressSize)) {
            addresses_.push_back(bytes);
        } else if (mayBeNumber || privateKind == PrivateKind::Serial) {
            serials_.push_back(text);
        } else if (isName(privateKind) && !isModelName(QString::fromUtf8(text))) {
            addName(QString::fromUtf8(text));
        } else if (privateKind == PrivateKind::Person) {
            addNames(namesOfPerson(QString::fromUtf8(text)));
        } else if (privateKind == PrivateKind::Host) {
            addNames(namesOfHost(QString::fromUtf8(text)));
        } else if (privateKind == PrivateKind::Label && !isCommonLabel(QString::fromUtf8(text))) {
            labels_.push_back(text);
        }
    }

    void addData(const QByteArray& data, PrivateKind privateKind)
    {
        const bool mayBeNumber = privateKind == PrivateKind::Address || privateKind == PrivateKind::Uuid;
        const bool isBytes = mayBeNumber || privateKind == PrivateKind::Serial || isName(privateKind) ||
                             privateKind == PrivateKind::Person || privateKind == PrivateKind::Host;
        const QList<QByteArray> texts = textsIn(data);
        if (mayBeNumber && data.size() == uuidSize) {
            uuids_.push_back(data);
        } else if (privateKind == PrivateKind::Address && data.size() >= addressSize) {
            for (const QByteArray& address : addressesIn(data)) {
                addresses_.push_back(address);
            }
        } else if (texts.isEmpty() && isBytes) {
            serialBytes_.push_back(data);
        } else {
            for (const QByteArray& text : texts) {
                addText(text, privateKind);
            }
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
            addresses_.push_back(address);
        }
    }

    void addDisplay(const QByteArray& data, bool isDisplay)
    {
        for (const QByteArray& serial : displaySerials(data, isDisplay)) {
            serials_.push_back(serial);
        }
    }

    void addParts(const QString& text, PrivateKind privateKind)
    {
        for (const PrivatePart& part : privatePartsOf(text, privateKind)) {
            addPart(part.kind, text.mid(part.start, part.length));
        }
    }

    /// Letters of UTF-16 can begin at even places of data and at odd ones.
    void addWideParts(const QByteArray& data, PrivateKind privateKind)
    {
        for (int start = 0; start < 4 && data.contains('\0'); ++start) {
            QString text;
            for (int i = start / 2; i + 1 < data.size(); i += 2) {
                const auto low = static_cast<uchar>(data.at(i + start % 2));
                text += QChar(low, static_cast<uchar>(data.at(i + 1 - start % 2)));
            }
            addParts(text, privateKind);
        }
    }

    void addPart(PrivateKind kind, const QString& value)
    {
        const QByteArray decoded = QByteArray::fromPercentEncoding(value.toUtf8());
        const QByteArray text = decoded.contains('\0') ? value.toUtf8() : decoded;
        switch (kind) {
        case PrivateKind::Address: addresses_.push_back(addressOfText(value)); break;
        case PrivateKind::Uuid: uuids_.push_back(hexBytesOf(value.toUtf8())); break;
        case PrivateKind::Name: addName(QString::fromUtf8(text)); break;
        case PrivateKind::Person: addNames(namesOfPerson(QString::fromUtf8(text))); break;
        case PrivateKind::Host: addNames(namesOfHost(QString::fromUtf8(text))); break;
        case PrivateKind::Serial: serials_.push_back(text); break;
        case PrivateKind::Folder: folders_.push_back(text); break;
        case PrivateKind::IpAddress:
            break; // in a recording most are versions; those of mount sources are hosts
        default: labels_.push_back(text); break;
        }
    }

    /// "0:1c:b3:a:ff:7"
    static QByteArray addressOfText(QString text)
    {
        QByteArray bytes = hexBytesOf(text.toLatin1());
        if (bytes.size() == addressSize) {
            return bytes;
        }
        bytes.clear();
        const QStringList pairs = text.replace(QLatin1Char('-'), QLatin1Char(':')).split(QLatin1Char(':'));
        for (const QString& pair : pairs) {
            bytes += static_cast<char>(pair.toInt(nullptr, 16));
        }
        return bytes;
    }

    std::vector<QByteArray> addresses_;
    std::vector<QByteArray> uuids_;
    std::vector<QByteArray> names_;
    std::vector<QByteArray> serials_;
    std::vector<QByteArray> serialBytes_;
    std::vector<QByteArray> labels_;
    std::vector<QByteArray> folders_;
};

} // namespace

void collectPrivateValues(RecordedValue& recording, const QString& hostName, const QString& userName,
                          PseudonymMap& pseudonyms)
{
    Collector collector;
    collector.addNames(namesOfHost(hostName));
    collector.addNames(namesOfPerson(userName));
    visitRecording(recording, collector);
    collector.giveTo(pseudonyms);
}

} // namespace norvex::Tool
