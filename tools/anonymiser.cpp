#include "tools/anonymiser.h"

#include "tools/identifyingValues.h"
#include "tools/identityCollector.h"
#include "tools/recordingVisitor.h"

#include <algorithm>

namespace norvex::Tool {

namespace {

using Kind = RecordedValue::Kind;

// Replaces what the collector found.
class Replacer : public RecordingVisitor
{
public:
    explicit Replacer(const Identities& identities) : identities_(identities) {}

    void visitKey(QByteArray& key) override { key = identities_.inKey(key); }

    void visit(RecordedValue& value, Identity identity) override
    {
        if (identity == Identity::Constant) {
            return;
        }
        if (value.kind == Kind::Text) {
            value.bytes = replaced(value.bytes, identity, identities_.inText(value.bytes));
        } else if (value.kind == Kind::Data) {
            value.bytes = replaced(value.bytes, identity, identities_.inData(value.bytes));
            if (identity == Identity::Display) {
                cleanDisplayData(value.bytes);
            }
        } else if (value.kind == Kind::Integer) {
            replaceInteger(value, identity);
        }
    }

private:
    // Under its own key even a value is replaced that is too short to be looked for elsewhere.
    QByteArray replaced(const QByteArray& bytes, Identity identity, const QByteArray& elsewhere) const
    {
        const bool isOwn = identity != Identity::None && identity != Identity::Display;
        const QByteArray whole = isOwn ? identities_.replacedWhole(bytes) : bytes;
        return whole == bytes ? elsewhere : whole;
    }

    void replaceInteger(RecordedValue& integer, Identity identity) const
    {
        if (identity == Identity::Serial && isSerialNumber(integer)) {
            integer.number =
                static_cast<std::int64_t>(identities_.replacedWhole(decimal(integer)).toULongLong());
        }
        const QByteArray address = identity == Identity::Address ? addressOf(integer) : QByteArray();
        if (!address.isEmpty()) {
            const QByteArray hex = identities_.replacedAddress(address).toHex();
            integer.number = static_cast<std::int64_t>(hex.toULongLong(nullptr, 16));
        }
    }

    const Identities& identities_;
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
    Identities identities;
    collectIdentities(recording, hostName, identities);
    Replacer replacer(identities);
    visitRecording(recording, replacer);
    if (RecordedValue* volumes = recording.find("volumes")) {
        sortVolumes(volumes->items);
    }
}

} // namespace norvex::Tool
