#include "systeminfo/mac/platform/coreFoundation.h"

#include "systeminfo/mac/platform/cfObjects.h"
#include "systeminfo/mac/platform/failureInjection.h"

#include <QString>
#include <QTextCodec>

#include <algorithm>
#include <cstring>
#include <limits>
#include <map>
#include <memory>
#include <mutex>

using norvex::callFails;
using norvex::handOut;
using norvex::Object;
using norvex::ObjectKind;
using norvex::objectOf;

namespace {

constexpr std::size_t kindCount = std::size_t(ObjectKind::Url) + 1;
std::atomic<std::int64_t> liveReferences[kindCount];

const __CFBoolean trueObject(true);
const __CFBoolean falseObject(false);

bool isAsciiText(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
}

/// FNV-1a. Dictionaries compare hashes before they compare texts.
std::uint32_t hashOf(std::string_view text)
{
    std::uint32_t hash = 2166136261u;
    for (const char c : text) {
        hash = (hash ^ std::uint8_t(c)) * 16777619u;
    }
    return hash;
}

CFTypeID typeIdOf(ObjectKind kind)
{
    return CFTypeID(kind) + 1;
}

template <typename Integer>
bool storeInteger(const __CFNumber& number, void* target)
{
    const bool isReal = number.type == kCFNumberFloat64Type;
    const double limit = -double(std::numeric_limits<Integer>::min()); // exact, because it is a power of two
    if (isReal && !(number.real >= -limit && number.real < limit)) {
        return false;
    }
    const auto whole = isReal ? std::int64_t(number.real) : number.integer;
    const auto stored = Integer(whole);
    std::memcpy(target, &stored, sizeof stored);
    return std::int64_t(stored) == whole && (!isReal || double(whole) == number.real);
}

template <typename Real>
bool storeReal(const __CFNumber& number, void* target)
{
    const double value = number.type == kCFNumberFloat64Type ? number.real : double(number.integer);
    const auto stored = Real(value);
    std::memcpy(target, &stored, sizeof stored);
    return true;
}

std::int64_t readInteger(CFNumberType type, const void* source)
{
    const auto as = [source](auto value) {
        std::memcpy(&value, source, sizeof value);
        return std::int64_t(value);
    };
    switch (type) {
    case kCFNumberSInt8Type: return as(std::int8_t());
    case kCFNumberSInt16Type: return as(std::int16_t());
    case kCFNumberSInt32Type: return as(std::int32_t());
    default: return as(std::int64_t());
    }
}

} // namespace

namespace norvex {

bool isUtf8(std::string_view text)
{
    if (isAsciiText(text)) {
        return true;
    }
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    QTextCodec::codecForName("UTF-8")->toUnicode(text.data(), int(text.size()), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

void countReference(const Object* object, int change)
{
    liveReferences[std::size_t(object->kind())].fetch_add(change, std::memory_order_relaxed);
}

void addLiveObjects(LiveCounts& counts)
{
    const auto count = [](ObjectKind kind) { return liveReferences[std::size_t(kind)].load(); };
    counts.strings += count(ObjectKind::String);
    counts.numbers += count(ObjectKind::Number);
    counts.booleans += count(ObjectKind::Boolean);
    counts.data += count(ObjectKind::Data);
    counts.dictionaries += count(ObjectKind::Dictionary);
    counts.arrays += count(ObjectKind::Array);
    counts.urls += count(ObjectKind::Url);
}

void releaseReference(CFTypeRef reference)
{
    if (reference == nullptr || !objectOf(reference)->release()) {
        return;
    }
    switch (objectOf(reference)->kind()) {
    case ObjectKind::String: delete static_cast<CFStringRef>(reference); break;
    case ObjectKind::Number: delete static_cast<CFNumberRef>(reference); break;
    case ObjectKind::Boolean: break; // both live as long as the process
    case ObjectKind::Data: delete static_cast<CFDataRef>(reference); break;
    case ObjectKind::Dictionary: delete static_cast<CFDictionaryRef>(reference); break;
    case ObjectKind::Array: delete static_cast<CFArrayRef>(reference); break;
    case ObjectKind::Url: delete static_cast<CFURLRef>(reference); break;
    }
}

ObjectRef<CFStringRef> makeString(std::string_view utf8)
{
    return ObjectRef<CFStringRef>(new __CFString(utf8));
}

ObjectRef<CFNumberRef> makeInteger(CFNumberType type, std::int64_t value)
{
    const std::int64_t stored = type == kCFNumberSInt8Type    ? std::int8_t(value)
                                : type == kCFNumberSInt16Type ? std::int16_t(value)
                                : type == kCFNumberSInt32Type ? std::int32_t(value)
                                                              : value;
    return ObjectRef<CFNumberRef>(new __CFNumber(type, stored));
}

ObjectRef<CFNumberRef> makeReal(double value)
{
    return ObjectRef<CFNumberRef>(new __CFNumber(value));
}

ObjectRef<CFBooleanRef> makeBoolean(bool value)
{
    const __CFBoolean& shared = value ? trueObject : falseObject;
    shared.retain();
    return ObjectRef<CFBooleanRef>(&shared);
}

ObjectRef<CFDataRef> makeData(std::string_view bytes)
{
    return ObjectRef<CFDataRef>(new __CFData(bytes));
}

ObjectRef<CFArrayRef> makeArray(std::vector<ValueRef> values)
{
    auto array = std::make_unique<__CFArray>();
    array->values = std::move(values);
    return ObjectRef<CFArrayRef>(array.release());
}

DictionaryBuilder::DictionaryBuilder() : dictionary_(new __CFDictionary) {}

DictionaryBuilder& DictionaryBuilder::set(ObjectRef<CFStringRef> key, ValueRef value)
{
    std::vector<__CFDictionary::Item>& items = dictionary_.get()->items;
    const std::size_t index = indexOf(key.get());
    if (index < items.size()) {
        items[index].value = std::move(value);
    } else {
        items.push_back({std::move(key), std::move(value)});
    }
    return *this;
}

std::size_t DictionaryBuilder::indexOf(CFStringRef key)
{
    constexpr std::size_t small = 64; // below this size, comparing hashes is faster than looking up an index
    const std::vector<__CFDictionary::Item>& items = dictionary_.get()->items;
    if (items.size() >= small) {
        for (std::size_t i = indices_.size(); i < items.size(); ++i) {
            indices_.emplace(items[i].key.get()->utf8, i);
        }
        const auto found = indices_.find(key->utf8);
        return found == indices_.end() ? items.size() : found->second;
    }
    const auto isKey = [key](const __CFDictionary::Item& item) {
        return item.key.get()->hash == key->hash && item.key.get()->utf8 == key->utf8;
    };
    return std::size_t(std::find_if(items.begin(), items.end(), isKey) - items.begin());
}

ObjectRef<CFDictionaryRef> DictionaryBuilder::finish()
{
    return ObjectRef<CFDictionaryRef>(dictionary_.take());
}

} // namespace norvex

__CFString::__CFString(std::string_view text)
    : Object(ObjectKind::String), utf8(text), hash(hashOf(text)), isAscii(isAsciiText(text))
{}

CFTypeRef __CFDictionary::value(CFStringRef key) const
{
    for (const Item& item : items) {
        const CFStringRef candidate = item.key.get();
        if (candidate == key || (candidate->hash == key->hash && candidate->utf8 == key->utf8)) {
            return item.value.get();
        }
    }
    return nullptr;
}

extern "C" {

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFBooleanRef kCFBooleanTrue = &trueObject;
const CFBooleanRef kCFBooleanFalse = &falseObject;

CFTypeID CFGetTypeID(CFTypeRef cf)
{
    return typeIdOf(objectOf(cf)->kind());
}

CFTypeRef CFRetain(CFTypeRef cf)
{
    return norvex::handOutShared(cf);
}

void CFRelease(CFTypeRef cf)
{
    norvex::countReference(objectOf(cf), -1);
    norvex::releaseReference(cf);
}

CFTypeID CFStringGetTypeID(void)
{
    return typeIdOf(ObjectKind::String);
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef alloc, const char* cStr, CFStringEncoding encoding)
{
    const auto length = CFIndex(std::strlen(cStr));
    return CFStringCreateWithBytes(alloc, reinterpret_cast<const UInt8*>(cStr), length, encoding, false);
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex numBytes,
                                    CFStringEncoding encoding, Boolean)
{
    const std::string_view text(reinterpret_cast<const char*>(bytes), std::size_t(numBytes));
    if (callFails() || !(encoding == kCFStringEncodingUTF8 ? norvex::isUtf8(text) : isAsciiText(text))) {
        return nullptr;
    }
    return handOut(norvex::makeString(text).take());
}

CFIndex CFStringGetLength(CFStringRef theString)
{
    if (theString->isAscii) {
        return CFIndex(theString->utf8.size());
    }
    CFIndex units = 0;
    for (const char c : theString->utf8) {
        const auto byte = std::uint8_t(c);
        units += (byte & 0xc0) == 0x80 ? 0 : (byte >= 0xf0 ? 2 : 1);
    }
    return units;
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding)
{
    return encoding == kCFStringEncodingUTF8 ? length * 3 : length;
}

const char* CFStringGetCStringPtr(CFStringRef theString, CFStringEncoding)
{
    if (callFails() || theString->hasFault(Object::StringGetCStringPtr) || !theString->isAscii) {
        return nullptr;
    }
    return theString->utf8.c_str();
}

Boolean CFStringGetCString(CFStringRef theString, char* buffer, CFIndex bufferSize, CFStringEncoding encoding)
{
    const std::string& text = theString->utf8;
    if (callFails() || theString->hasFault(Object::StringGetCString)) {
        return false;
    }
    if ((encoding != kCFStringEncodingUTF8 && !theString->isAscii) || CFIndex(text.size()) >= bufferSize) {
        return false;
    }
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return true;
}

CFComparisonResult CFStringCompare(CFStringRef theString1, CFStringRef theString2,
                                   CFStringCompareFlags compareOptions)
{
    const auto sensitivity =
        compareOptions == kCFCompareCaseInsensitive ? Qt::CaseInsensitive : Qt::CaseSensitive;
    const auto text = [](CFStringRef string) {
        return QString::fromUtf8(string->utf8.data(), int(string->utf8.size()));
    };
    const int order = QString::compare(text(theString1), text(theString2), sensitivity);
    return order < 0 ? kCFCompareLessThan : (order > 0 ? kCFCompareGreaterThan : kCFCompareEqualTo);
}

CFStringRef __CFStringMakeConstantString(const char* cStr)
{
    static std::mutex mutex;
    static std::map<std::string, std::unique_ptr<__CFString>, std::less<>> strings;
    const std::lock_guard<std::mutex> lock(mutex);
    const auto found = strings.find(std::string_view(cStr));
    if (found != strings.end()) {
        return found->second.get();
    }
    return strings.emplace(cStr, std::make_unique<__CFString>(cStr)).first->second.get();
}

CFTypeID CFNumberGetTypeID(void)
{
    return typeIdOf(ObjectKind::Number);
}

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType theType, const void* valuePtr)
{
    if (theType != kCFNumberFloat64Type) {
        return handOut(norvex::makeInteger(theType, readInteger(theType, valuePtr)).take());
    }
    double value = 0;
    std::memcpy(&value, valuePtr, sizeof value);
    return handOut(norvex::makeReal(value).take());
}

CFNumberType CFNumberGetType(CFNumberRef number)
{
    return number->type;
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType theType, void* valuePtr)
{
    if (callFails() || number->hasFault(Object::NumberGetValue)) {
        return false;
    }
    switch (theType) {
    case kCFNumberSInt8Type: return storeInteger<std::int8_t>(*number, valuePtr);
    case kCFNumberSInt16Type: return storeInteger<std::int16_t>(*number, valuePtr);
    case kCFNumberSInt32Type: return storeInteger<std::int32_t>(*number, valuePtr);
    case kCFNumberSInt64Type: return storeInteger<std::int64_t>(*number, valuePtr);
    case kCFNumberFloat32Type: return storeReal<float>(*number, valuePtr);
    case kCFNumberFloat64Type: return storeReal<double>(*number, valuePtr);
    }
    return false;
}

CFTypeID CFBooleanGetTypeID(void)
{
    return typeIdOf(ObjectKind::Boolean);
}

Boolean CFBooleanGetValue(CFBooleanRef boolean)
{
    return boolean->value;
}

CFTypeID CFDataGetTypeID(void)
{
    return typeIdOf(ObjectKind::Data);
}

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8* bytes, CFIndex length)
{
    const std::string_view content(reinterpret_cast<const char*>(bytes), std::size_t(length));
    return handOut(norvex::makeData(content).take());
}

CFIndex CFDataGetLength(CFDataRef theData)
{
    return CFIndex(theData->bytes.size());
}

const UInt8* CFDataGetBytePtr(CFDataRef theData)
{
    return reinterpret_cast<const UInt8*>(theData->bytes.data());
}

CFTypeID CFArrayGetTypeID(void)
{
    return typeIdOf(ObjectKind::Array);
}

CFIndex CFArrayGetCount(CFArrayRef theArray)
{
    return CFIndex(theArray->values.size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef theArray, CFIndex idx)
{
    return theArray->values[std::size_t(idx)].get();
}

CFTypeID CFDictionaryGetTypeID(void)
{
    return typeIdOf(ObjectKind::Dictionary);
}

CFIndex CFDictionaryGetCount(CFDictionaryRef theDict)
{
    return CFIndex(theDict->items.size());
}

const void* CFDictionaryGetValue(CFDictionaryRef theDict, const void* key)
{
    return callFails() ? nullptr : theDict->value(static_cast<CFStringRef>(key));
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef theDict, const void** keys, const void** values)
{
    for (const __CFDictionary::Item& item : theDict->items) {
        if (keys != nullptr) {
            *keys++ = item.key.get();
        }
        if (values != nullptr) {
            *values++ = item.value.get();
        }
    }
}

CFURLRef CFURLCreateWithString(CFAllocatorRef, CFStringRef URLString, CFURLRef)
{
    if (callFails() || URLString->utf8.empty()) {
        return nullptr;
    }
    return handOut(CFURLRef(new __CFURL(URLString->utf8)));
}

CFStringRef CFURLCopyFileSystemPath(CFURLRef anURL, CFURLPathStyle)
{
    const std::string_view prefix = "file://";
    const std::string& text = anURL->text;
    if (callFails() || text.compare(0, prefix.size(), prefix) != 0) {
        return nullptr;
    }
    return handOut(norvex::makeString(std::string_view(text).substr(prefix.size())).take());
}

} // extern "C"
