#include "tools/record/recordedValue.h"

#include <algorithm>

namespace norvex::Tool {

namespace {

using Kind = RecordedValue::Kind;

RecordedValue ofKind(Kind kind)
{
    RecordedValue value;
    value.kind = kind;
    return value;
}

} // namespace

RecordedValue RecordedValue::text(QByteArray utf8)
{
    RecordedValue value = ofKind(Kind::Text);
    value.bytes = std::move(utf8);
    return value;
}

RecordedValue RecordedValue::data(QByteArray bytes)
{
    RecordedValue value = ofKind(Kind::Data);
    value.bytes = std::move(bytes);
    return value;
}

RecordedValue RecordedValue::boolean(bool on)
{
    RecordedValue value = ofKind(Kind::Boolean);
    value.number = on ? 1 : 0;
    return value;
}

RecordedValue RecordedValue::integer(int size, std::int64_t number)
{
    RecordedValue value = ofKind(Kind::Integer);
    value.size = size;
    value.number = number;
    return value;
}

RecordedValue RecordedValue::real(double number)
{
    RecordedValue value = ofKind(Kind::Real);
    value.realNumber = number;
    return value;
}

RecordedValue RecordedValue::dictionary()
{
    return ofKind(Kind::Dictionary);
}

RecordedValue RecordedValue::array()
{
    return ofKind(Kind::Array);
}

void RecordedValue::add(const QByteArray& key, RecordedValue value)
{
    items.push_back({key, std::move(value)});
}

void RecordedValue::addUnlessEmpty(const QByteArray& key, RecordedValue container)
{
    if (!container.items.empty()) {
        add(key, std::move(container));
    }
}

const RecordedValue* RecordedValue::find(const char* key) const
{
    const auto found =
        std::find_if(items.begin(), items.end(), [key](const Item& item) { return item.key == key; });
    return found == items.end() ? nullptr : &found->value;
}

RecordedValue* RecordedValue::find(const char* key)
{
    return const_cast<RecordedValue*>(std::as_const(*this).find(key));
}

void RecordedValue::sortKeys()
{
    std::sort(items.begin(), items.end(), [](const Item& a, const Item& b) { return a.key < b.key; });
}

std::uint64_t RecordedValue::unsignedNumber() const
{
    const int unused = 64 - size;
    return static_cast<std::uint64_t>(number) << unused >> unused;
}

} // namespace norvex::Tool
