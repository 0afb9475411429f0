#include "systeminfo/mac/platform/live/entries.h"

#include <QString>

#include <string_view>
#include <utility>

namespace norvex {

namespace {

std::string_view viewOf(const QByteArray& bytes)
{
    return {bytes.constData(), std::size_t(bytes.size())};
}

QByteArray printable(const QByteArray& text)
{
    QByteArray result = QString::fromUtf8(text.constData(), text.size()).toUtf8();
    for (char& c : result) {
        if (std::uint8_t(c) < 0x20 || c == 0x7f) {
            c = ' ';
        }
    }
    return result;
}

} // namespace

Properties& Properties::set(const char* key, ValueRef value)
{
    builder_.set(key, std::move(value));
    isEmpty_ = false;
    return *this;
}

Properties& Properties::text(const char* key, const DeviceText& value)
{
    return value ? set(key, makeString(viewOf(printable(*value)))) : *this;
}

Properties& Properties::boolean(const char* key, std::optional<bool> value)
{
    return value ? set(key, makeBoolean(*value)) : *this;
}

Properties& Properties::int32(const char* key, DeviceNumber value)
{
    return value ? set(key, makeInteger(kCFNumberSInt32Type, *value)) : *this;
}

Properties& Properties::int64(const char* key, DeviceNumber value)
{
    return value ? set(key, makeInteger(kCFNumberSInt64Type, *value)) : *this;
}

Properties& Properties::data(const char* key, const DeviceText& bytes)
{
    return bytes ? set(key, makeData(viewOf(*bytes))) : *this;
}

Properties& Properties::dictionary(const char* key, Properties value)
{
    return value.isEmpty_ ? *this : set(key, value.finish());
}

EntryWriter::EntryWriter(Registry& registry, const QByteArray& className, const QByteArray& name)
    : registry_(registry), entry_(registry.beginEntry())
{
    entry_.name = printable(name).toStdString();
    entry_.classes = registry.internClasses(hostClassChain(className));
}

EntryWriter::~EntryWriter()
{
    entry_.properties = properties.finish();
    registry_.endEntry();
}

} // namespace norvex
