#include "tools/anonymise/anonymiser.h"

#include "systeminfo/privacy/displayData.h"
#include "systeminfo/privacy/privateParts.h"
#include "tools/anonymise/privateValueCollector.h"
#include "tools/anonymise/recordingVisitor.h"

#include <algorithm>

namespace norvex::Tool {

namespace {

using namespace Privacy;
using Kind = RecordedValue::Kind;

/// Replaces what the collector found.
class Replacer : public RecordingVisitor
{
public:
    explicit Replacer(const PseudonymMap& pseudonyms) : pseudonyms_(pseudonyms) {}

    void visitKey(QByteArray& key) override { key = withoutParts(pseudonyms_.inKey(key), PrivateKind::None); }

    void visit(RecordedValue& value, PrivateKind privateKind) override
    {
        if (privateKind == PrivateKind::Constant) {
            return;
        }
        if (value.kind == Kind::Text) {
            const bool isModel = privateKind == PrivateKind::Model;
            const QByteArray elsewhere =
                isModel ? pseudonyms_.inModel(value.bytes) : pseudonyms_.inText(value.bytes);
            value.bytes = withoutParts(replaced(value.bytes, privateKind, elsewhere), privateKind);
            const QByteArray display = displayDataOf(value.bytes);
            value.bytes = display.isEmpty() ? value.bytes : cleanDisplay(display, false).toHex();
        } else if (value.kind == Kind::Data) {
            const bool isModel = privateKind == PrivateKind::Model;
            const QByteArray elsewhere =
                isModel ? pseudonyms_.inModel(value.bytes) : pseudonyms_.inData(value.bytes);
            const QByteArray data = replacedData(value.bytes, privateKind, elsewhere);
            value.bytes = cleanDisplay(data, privateKind == PrivateKind::Display);
        } else if (value.kind == Kind::Integer) {
            replaceInteger(value);
        }
    }

private:
    /// Under its own key, even a value that is too short for a search elsewhere has a replacement.
    QByteArray replaced(const QByteArray& bytes, PrivateKind privateKind, const QByteArray& elsewhere) const
    {
        const bool isOwn = privateKind == PrivateKind::Serial || privateKind == PrivateKind::Address ||
                           privateKind == PrivateKind::Uuid || privateKind == PrivateKind::Name ||
                           privateKind == PrivateKind::Person || privateKind == PrivateKind::Host ||
                           privateKind == PrivateKind::Label || privateKind == PrivateKind::Network;
        const QByteArray whole = isOwn ? pseudonyms_.replacedWhole(bytes) : bytes;
        return whole == bytes ? elsewhere : whole;
    }

    /// Data keeps its zeros, and texts in UTF-16 their byte order.
    QByteArray replacedData(const QByteArray& data, PrivateKind privateKind,
                            const QByteArray& elsewhere) const
    {
        QByteArray whole = replaced(data, privateKind, elsewhere);
        if (whole != elsewhere || data.contains('\0') || textsIn(data).isEmpty()) {
            return whole;
        }
        return withoutParts(whole, privateKind);
    }

    /// So has a part of a value, where it stands. What the search has replaced stays.
    QByteArray withoutParts(const QByteArray& utf8, PrivateKind privateKind) const
    {
        const QString text = QString::fromUtf8(utf8);
        const std::vector<PrivatePart> parts = privatePartsOf(text, privateKind);
        QString result;
        int copied = 0;
        for (const PrivatePart& part : parts) {
            result += text.mid(copied, part.start - copied);
            result += withoutPart(text.mid(part.start, part.length));
            copied = part.start + part.length;
        }
        return parts.empty() ? utf8 : (result + text.mid(copied)).toUtf8();
    }

    QString withoutPart(const QString& part) const
    {
        const QByteArray original = part.toUtf8();
        const QByteArray decoded = QByteArray::fromPercentEncoding(original);
        const QByteArray pseudonym = pseudonyms_.replacedWhole(decoded);
        if (pseudonym == decoded) {
            return part;
        }
        return QString::fromUtf8(decoded == original ? pseudonym : pseudonym.toPercentEncoding());
    }

    QByteArray cleanDisplay(const QByteArray& data, bool isDisplay) const
    {
        return withoutDisplaySerials(
            data, isDisplay, [this](const QByteArray& serial) { return pseudonyms_.replacedWhole(serial); });
    }

    /// A number that is known to be private is so under any key.
    void replaceInteger(RecordedValue& integer) const
    {
        const QByteArray address = addressOf(integer.unsignedNumber());
        const QByteArray otherAddress = pseudonyms_.replacedAddress(address);
        if (otherAddress != address) {
            integer.number = static_cast<std::int64_t>(otherAddress.toHex().toULongLong(nullptr, 16));
        } else if (isSerialNumber(integer.unsignedNumber())) {
            const QByteArray serial = QByteArray::number(qulonglong(integer.unsignedNumber()));
            const QByteArray otherSerial = pseudonyms_.replacedWhole(serial);
            integer.number =
                otherSerial == serial ? integer.number : static_cast<std::int64_t>(otherSerial.toULongLong());
        }
    }

    const PseudonymMap& pseudonyms_;
};

/// As a machine lists them: by name, ignoring case.
void sortVolumes(std::vector<RecordedValue::Item>& volumes)
{
    const auto nameOf = [](const RecordedValue::Item& volume) {
        const QString path = QString::fromUtf8(volume.value.find("path")->bytes);
        return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1).toLower();
    };
    std::stable_sort(volumes.begin(), volumes.end(),
                     [nameOf](const auto& a, const auto& b) { return nameOf(a) < nameOf(b); });
}

} // namespace

void anonymise(RecordedValue& recording, const QString& hostName, const QString& userName)
{
    PseudonymMap pseudonyms;
    collectPrivateValues(recording, hostName, userName, pseudonyms);
    Replacer replacer(pseudonyms);
    visitRecording(recording, replacer);
    if (RecordedValue* volumes = recording.find("volumes")) {
        sortVolumes(volumes->items);
    }
}

} // namespace norvex::Tool
