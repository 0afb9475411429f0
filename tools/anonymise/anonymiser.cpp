#include "tools/anonymise/anonymiser.h"

#include "systeminfo/privacy/privateValues.h"
#include "tools/anonymise/privateValueCollector.h"
#include "tools/anonymise/recordingVisitor.h"

#include <algorithm>

namespace norvex::Tool {

namespace {

using namespace Privacy;
using Kind = RecordedValue::Kind;

// Replaces what the collector found.
class Replacer : public RecordingVisitor
{
public:
    explicit Replacer(const PseudonymMap& pseudonyms) : pseudonyms_(pseudonyms) {}

    void visitKey(QByteArray& key) override { key = pseudonyms_.inKey(key); }

    void visit(RecordedValue& value, PrivateKind privateKind) override
    {
        if (privateKind == PrivateKind::Constant) {
            return;
        }
        if (value.kind == Kind::Text) {
            value.bytes = replaced(value.bytes, privateKind, pseudonyms_.inText(value.bytes));
        } else if (value.kind == Kind::Data) {
            value.bytes = replaced(value.bytes, privateKind, pseudonyms_.inData(value.bytes));
            if (privateKind == PrivateKind::Display) {
                cleanDisplayData(value.bytes);
            }
        } else if (value.kind == Kind::Integer) {
            replaceInteger(value, privateKind);
        }
    }

private:
    // Under its own key, even a value that is too short for a search elsewhere has a replacement.
    QByteArray replaced(const QByteArray& bytes, PrivateKind privateKind, const QByteArray& elsewhere) const
    {
        const bool isOwn = privateKind != PrivateKind::None && privateKind != PrivateKind::Display;
        const QByteArray whole = isOwn ? pseudonyms_.replacedWhole(bytes) : bytes;
        return whole == bytes ? elsewhere : whole;
    }

    void replaceInteger(RecordedValue& integer, PrivateKind privateKind) const
    {
        if (privateKind == PrivateKind::Serial && isSerialNumber(integer.unsignedNumber())) {
            integer.number = static_cast<std::int64_t>(
                pseudonyms_.replacedWhole(QByteArray::number(qulonglong(integer.unsignedNumber())))
                    .toULongLong());
        }
        const QByteArray address =
            privateKind == PrivateKind::Address ? addressOf(integer.unsignedNumber()) : QByteArray();
        if (!address.isEmpty()) {
            const QByteArray hex = pseudonyms_.replacedAddress(address).toHex();
            integer.number = static_cast<std::int64_t>(hex.toULongLong(nullptr, 16));
        }
    }

    const PseudonymMap& pseudonyms_;
};

// As a machine lists them: by name, ignoring case.
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

void anonymise(RecordedValue& recording, const QString& hostName)
{
    PseudonymMap pseudonyms;
    collectPrivateValues(recording, hostName, pseudonyms);
    Replacer replacer(pseudonyms);
    visitRecording(recording, replacer);
    if (RecordedValue* volumes = recording.find("volumes")) {
        sortVolumes(volumes->items);
    }
}

} // namespace norvex::Tool
