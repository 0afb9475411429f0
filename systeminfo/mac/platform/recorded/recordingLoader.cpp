#include "systeminfo/mac/platform/propertyListReader.h"
#include "systeminfo/mac/platform/recorded/recordedMachine.h"

#include <sys/time.h>

#include <algorithm>
#include <cstring>

namespace norvex {

namespace {

constexpr std::size_t deepestNesting = 512; // of entries, and of values inside a property

// Where in a recording an element stands: what its container is.
enum class Place {
    Document,
    Top,
    Sysctl,
    Gestalt,
    Entry,
    Classes,
    Children,
    EntryFaults,
    FaultKeys,
    Volumes,
    Volume,
    Statfs,
    Pathconf,
    Files,
    PropertyLists,
    Services,
    UrlHandlers,
    Faults,
    MatchingFaults,
    ServicesFaults,
    Value,  // a dictionary or an array inside a property or a property list
    Ignored // anything below a key that the format does not know
};

enum class Kind { String, Integer, Real, Boolean, Data, Dictionary, Array };

const char* nameOf(Kind kind)
{
    switch (kind) {
    case Kind::String: return "a string";
    case Kind::Integer: return "an integer";
    case Kind::Real: return "a real";
    case Kind::Boolean: return "a boolean";
    case Kind::Data: return "data";
    case Kind::Dictionary: return "a dictionary";
    case Kind::Array: return "an array";
    }
    return "";
}

Kind kindOf(const ValueRef& value)
{
    switch (objectOf(value.get())->kind()) {
    case ObjectKind::String: return Kind::String;
    case ObjectKind::Boolean: return Kind::Boolean;
    case ObjectKind::Data: return Kind::Data;
    case ObjectKind::Dictionary: return Kind::Dictionary;
    case ObjectKind::Array: return Kind::Array;
    default: break;
    }
    const auto* const number = static_cast<CFNumberRef>(value.get());
    return number->type == kCFNumberFloat64Type ? Kind::Real : Kind::Integer;
}

// What may stand where. A null key stands for every key, and for the elements of an array.
struct Rule
{
    Place place;
    const char* key;
    Kind kind;
    Place inside; // the place that a dictionary or an array opens
};

constexpr Rule rules[] = {
    {Place::Document, nullptr, Kind::Dictionary, Place::Top},
    {Place::Top, "recording", Kind::Integer, Place::Ignored},
    {Place::Top, "sysctl", Kind::Dictionary, Place::Sysctl},
    {Place::Top, "gestalt", Kind::Dictionary, Place::Gestalt},
    {Place::Top, "registry", Kind::Dictionary, Place::Entry},
    {Place::Top, "volumes", Kind::Array, Place::Volumes},
    {Place::Top, "files", Kind::Array, Place::Files},
    {Place::Top, "propertyLists", Kind::Dictionary, Place::PropertyLists},
    {Place::Top, "services", Kind::Dictionary, Place::Services},
    {Place::Top, "faults", Kind::Dictionary, Place::Faults},
    {Place::Sysctl, "kern.boottime", Kind::Integer, Place::Ignored},
    {Place::Sysctl, nullptr, Kind::String, Place::Ignored},
    {Place::Sysctl, nullptr, Kind::Integer, Place::Ignored},
    {Place::Gestalt, nullptr, Kind::Integer, Place::Ignored},
    {Place::Entry, "name", Kind::String, Place::Ignored},
    {Place::Entry, "classes", Kind::Array, Place::Classes},
    {Place::Entry, "properties", Kind::Dictionary, Place::Value},
    {Place::Entry, "children", Kind::Array, Place::Children},
    {Place::Entry, "faults", Kind::Dictionary, Place::EntryFaults},
    {Place::Classes, nullptr, Kind::String, Place::Ignored},
    {Place::Children, nullptr, Kind::Dictionary, Place::Entry},
    {Place::EntryFaults, "IORegistryEntryCreateCFProperties", Kind::Integer, Place::Ignored},
    {Place::EntryFaults, "IORegistryEntryGetName", Kind::Integer, Place::Ignored},
    {Place::EntryFaults, "IORegistryEntryGetParentEntry", Kind::Integer, Place::Ignored},
    {Place::EntryFaults, "IOObjectCopyClass", Kind::Boolean, Place::Ignored},
    {Place::EntryFaults, "CFNumberGetValue", Kind::Array, Place::FaultKeys},
    {Place::EntryFaults, "CFStringGetCStringPtr", Kind::Array, Place::FaultKeys},
    {Place::EntryFaults, "CFStringGetCString", Kind::Array, Place::FaultKeys},
    {Place::FaultKeys, nullptr, Kind::String, Place::Ignored},
    {Place::Volumes, nullptr, Kind::Dictionary, Place::Volume},
    {Place::Volume, "path", Kind::String, Place::Ignored},
    {Place::Volume, "statfs", Kind::Dictionary, Place::Statfs},
    {Place::Volume, "pathconf", Kind::Dictionary, Place::Pathconf},
    {Place::Statfs, "f_bsize", Kind::Integer, Place::Ignored},
    {Place::Statfs, "f_blocks", Kind::Integer, Place::Ignored},
    {Place::Statfs, "f_bfree", Kind::Integer, Place::Ignored},
    {Place::Statfs, "f_bavail", Kind::Integer, Place::Ignored},
    {Place::Statfs, "f_files", Kind::Integer, Place::Ignored},
    {Place::Statfs, "f_ffree", Kind::Integer, Place::Ignored},
    {Place::Statfs, "f_fstypename", Kind::String, Place::Ignored},
    {Place::Statfs, "f_mntonname", Kind::String, Place::Ignored},
    {Place::Statfs, "f_mntfromname", Kind::String, Place::Ignored},
    {Place::Pathconf, "caseSensitive", Kind::Integer, Place::Ignored},
    {Place::Pathconf, "casePreserving", Kind::Integer, Place::Ignored},
    {Place::Pathconf, "errno", Kind::Integer, Place::Ignored},
    {Place::Files, nullptr, Kind::String, Place::Ignored},
    {Place::PropertyLists, nullptr, Kind::Dictionary, Place::Value},
    {Place::Services, "DaemonVersion", Kind::Integer, Place::Ignored},
    {Place::Services, "DaemonVersionError", Kind::Integer, Place::Ignored},
    {Place::Services, "urlHandlers", Kind::Dictionary, Place::UrlHandlers},
    {Place::UrlHandlers, nullptr, Kind::String, Place::Ignored},
    {Place::Faults, "IOMasterPort", Kind::Integer, Place::Ignored},
    {Place::Faults, "IOServiceMatching", Kind::Array, Place::MatchingFaults},
    {Place::Faults, "IOServiceGetMatchingServices", Kind::Dictionary, Place::ServicesFaults},
    {Place::MatchingFaults, nullptr, Kind::String, Place::Ignored},
    {Place::ServicesFaults, nullptr, Kind::Integer, Place::Ignored},
};

static_assert(sizeof rules / sizeof *rules <= 64, "a frame has a bit for every rule");

std::string textOf(const ValueRef& value)
{
    return static_cast<CFStringRef>(value.get())->utf8;
}

std::int64_t integerOf(const ValueRef& value)
{
    return static_cast<CFNumberRef>(value.get())->integer;
}

// A count of statfs is unsigned: a 32-bit integer with its top bit set stands for itself, not for a negative
// one.
std::uint64_t countOf(const ValueRef& value)
{
    return std::uint64_t(integerOf(value));
}

template <std::size_t size>
void storeText(const ValueRef& value, char (&target)[size])
{
    const std::string& text = static_cast<CFStringRef>(value.get())->utf8;
    const std::size_t length = std::min(text.size(), size - 1);
    std::memcpy(target, text.data(), length);
    target[length] = 0;
}

QByteArray sysctlBytes(const ValueRef& value)
{
    if (kindOf(value) == Kind::String) {
        return QByteArray::fromStdString(textOf(value)).append('\0');
    }
    const std::int64_t number = integerOf(value);
    const auto narrow = std::int32_t(number);
    const CFNumberType type = static_cast<CFNumberRef>(value.get())->type;
    if (type == kCFNumberSInt32Type) {
        return QByteArray(reinterpret_cast<const char*>(&narrow), sizeof narrow);
    }
    if (type != kCFNumberSInt64Type) {
        throw PlistError("a sysctl integer has 32 or 64 bits");
    }
    return QByteArray(reinterpret_cast<const char*>(&number), sizeof number);
}

QByteArray boottimeBytes(const ValueRef& seconds)
{
    timeval boottime = {};
    boottime.tv_sec = integerOf(seconds);
    return QByteArray(reinterpret_cast<const char*>(&boottime), sizeof boottime);
}

using ValueFaults = std::unordered_map<std::string, std::uint8_t>; // property key -> faults of its values

// Marks the values of the keys at any depth. Booleans are shared by all recordings, and no fault is about them.
void addFaults(CFTypeRef container, const ValueFaults& faults)
{
    if (container == nullptr) {
        return;
    }
    if (objectOf(container)->kind() == ObjectKind::Array) {
        for (const ValueRef& value : static_cast<CFArrayRef>(container)->values) {
            addFaults(value.get(), faults);
        }
    }
    if (objectOf(container)->kind() != ObjectKind::Dictionary) {
        return;
    }
    for (const __CFDictionary::Item& item : static_cast<CFDictionaryRef>(container)->items) {
        const auto fault = faults.find(item.key.get()->utf8);
        if (fault != faults.end() && objectOf(item.value.get())->kind() != ObjectKind::Boolean) {
            const_cast<Object*>(objectOf(item.value.get()))->addFaults(fault->second);
        }
        addFaults(item.value.get(), faults);
    }
}

QString volumeName(const RecordedVolume& volume)
{
    return QString::fromUtf8(volume.path.mid(volume.path.lastIndexOf('/') + 1));
}

// As a directory listing without hidden entries gives them: by name, ignoring case.
std::vector<RecordedVolume> listed(std::vector<RecordedVolume> volumes)
{
    std::vector<std::pair<QString, std::size_t>> order;
    for (std::size_t i = 0; i < volumes.size(); ++i) {
        const QString name = volumeName(volumes[i]);
        if (!name.startsWith(QLatin1Char('.'))) {
            order.emplace_back(name.toLower(), i);
        }
    }
    std::sort(order.begin(), order.end());
    std::vector<RecordedVolume> result;
    for (const auto& place : order) {
        result.push_back(std::move(volumes[place.second]));
    }
    return result;
}

class RecordingLoader : public PlistHandler
{
public:
    Recording take()
    {
        recording_.volumes = listed(std::move(recording_.volumes));
        return std::move(recording_);
    }

    void beginDictionary() override { begin(Kind::Dictionary); }
    void endDictionary() override { end(); }
    void beginArray() override { begin(Kind::Array); }
    void endArray() override { end(); }

    void key(const std::string& text) override
    {
        if (stack_.back().place == Place::Value) {
            valueKeys_.push_back(internKey(text));
        } else {
            stack_.back().key = text;
        }
    }

    void value(ValueRef object) override
    {
        const Frame& frame = current();
        if (frame.place == Place::Value) {
            addToContainer(std::move(object));
            return;
        }
        if (ruleFor(kindOf(object)) != nullptr) {
            store(frame.place, frame.key, object);
        }
    }

private:
    struct Frame
    {
        Place place;
        std::string key;             // of the value that is read next
        std::uint64_t rulesUsed = 0; // bits of the rules for a certain key that applied already
    };

    // A dictionary or array of a property under construction.
    struct Container
    {
        bool isArray;
        DictionaryBuilder dictionary;
        std::vector<ValueRef> values;
    };

    // What an entry collects until it ends.
    struct OpenEntry
    {
        Registry::ClassChain classes;
        EntryFaults faults;
        bool hasFaults = false;
        ValueFaults valueFaults;
    };

    Frame& current()
    {
        if (stack_.empty()) {
            stack_.push_back({Place::Document, {}});
        }
        return stack_.back();
    }

    // The rule for a value of a kind at this place; null when the key is unknown. A known key with another
    // kind of value is refused.
    const Rule* ruleFor(Kind kind)
    {
        Frame& frame = current();
        const Rule* known = nullptr;
        for (const Rule& rule : rules) {
            if (rule.place != frame.place || (rule.key != nullptr && frame.key != rule.key)) {
                continue;
            }
            if (known != nullptr && known->key != nullptr) {
                break; // the rule for just this key goes before the one for every key
            }
            known = &rule;
            if (rule.kind == kind) {
                refuseSecond(frame, rule);
                return &rule;
            }
        }
        if (known == nullptr) {
            return nullptr;
        }
        const std::string what = frame.place == Place::Document ? "the root of a recording"
                                 : frame.key.empty()            ? "an element of this array"
                                                                : "\"" + frame.key + "\"";
        throw PlistError(what + " is " + nameOf(known->kind) + ", not " + nameOf(kind));
    }

    static void refuseSecond(Frame& frame, const Rule& rule)
    {
        const std::uint64_t bit = std::uint64_t(1) << (&rule - rules);
        if (rule.key != nullptr && (frame.rulesUsed & bit) != 0) {
            throw PlistError("\"" + frame.key + "\" stands here twice");
        }
        frame.rulesUsed |= bit;
    }

    void begin(Kind kind)
    {
        const Place outer = current().place;
        Place inner = outer;
        if (outer != Place::Value && outer != Place::Ignored) {
            const Rule* const rule = ruleFor(kind);
            inner = rule == nullptr ? Place::Ignored : rule->inside;
        }
        if (inner == Place::Value) {
            beginContainer(kind);
        } else if (inner == Place::Entry) {
            beginEntry();
        } else if (inner == Place::Volume) {
            recording_.volumes.emplace_back();
        } else if (inner == Place::Statfs) {
            recording_.volumes.back().statfs = std::make_unique<MacStatfs>();
        }
        stack_.push_back({inner, {}});
    }

    void end()
    {
        const Place ended = stack_.back().place;
        stack_.pop_back();
        if (ended == Place::Value) {
            endContainer();
        } else if (ended == Place::Entry) {
            endEntry();
        } else if (ended == Place::Volume && recording_.volumes.back().path.isEmpty()) {
            throw PlistError("a volume without a path");
        } else if (ended == Place::Top && !hasVersion_) {
            throw PlistError("not a recording: the key \"recording\" is missing");
        }
    }

    void beginEntry()
    {
        if (openEntries_.size() == deepestNesting) {
            throw PlistError("entries are nested deeper than " + std::to_string(deepestNesting));
        }
        if (recording_.registry == nullptr) {
            recording_.registry = std::make_shared<Registry>();
        }
        recording_.registry->beginEntry();
        openEntries_.emplace_back();
    }

    void endEntry()
    {
        OpenEntry& open = openEntries_.back();
        Registry& registry = *recording_.registry;
        RegistryEntry& entry = registry.entry(registry.openEntry());
        entry.classes = registry.internClasses(std::move(open.classes));
        if (open.hasFaults) {
            entry.faults = std::make_unique<EntryFaults>(open.faults);
        }
        if (!open.valueFaults.empty()) {
            addFaults(entry.properties.get(), open.valueFaults);
        }
        openEntries_.pop_back();
        registry.endEntry();
    }

    void beginContainer(Kind kind)
    {
        if (containers_.size() == deepestNesting) {
            throw PlistError("values are nested deeper than " + std::to_string(deepestNesting));
        }
        containers_.push_back({kind == Kind::Array, {}, {}});
    }

    void endContainer()
    {
        Container ended = std::move(containers_.back());
        containers_.pop_back();
        ValueRef value = ended.isArray ? ValueRef(makeArray(std::move(ended.values)))
                                       : ValueRef(ended.dictionary.finish());
        if (!containers_.empty()) {
            addToContainer(std::move(value));
            return;
        }
        ObjectRef<CFDictionaryRef> dictionary(static_cast<CFDictionaryRef>(value.take()));
        if (current().place == Place::Entry) {
            openEntry().properties = std::move(dictionary);
        } else {
            recording_.propertyLists[current().key] = std::move(dictionary);
        }
    }

    void addToContainer(ValueRef value)
    {
        Container& container = containers_.back();
        if (container.isArray) {
            container.values.push_back(std::move(value));
            return;
        }
        container.dictionary.set(std::move(valueKeys_.back()), std::move(value));
        valueKeys_.pop_back();
    }

    // The keys of properties are few and recur in every entry.
    ObjectRef<CFStringRef> internKey(const std::string& text)
    {
        ObjectRef<CFStringRef>& key = keys_[text];
        if (!key) {
            key = makeString(text);
        }
        return key;
    }

    RegistryEntry& openEntry() { return recording_.registry->entry(recording_.registry->openEntry()); }

    void store(Place place, const std::string& key, const ValueRef& value)
    {
        switch (place) {
        case Place::Top: storeVersion(value); break;
        case Place::Sysctl:
            recording_.sysctl[key] = key == "kern.boottime" ? boottimeBytes(value) : sysctlBytes(value);
            break;
        case Place::Gestalt: recording_.gestalt[key] = std::int32_t(integerOf(value)); break;
        case Place::Entry: openEntry().name = textOf(value); break;
        case Place::Classes: openEntries_.back().classes.push_back(textOf(value)); break;
        case Place::EntryFaults: storeEntryFault(key, value); break;
        case Place::FaultKeys: storeValueFault(textOf(value)); break;
        case Place::Volume: recording_.volumes.back().path = QByteArray::fromStdString(textOf(value)); break;
        case Place::Statfs: storeStatfs(*recording_.volumes.back().statfs, key, value); break;
        case Place::Pathconf: storePathconf(recording_.volumes.back(), key, value); break;
        case Place::Files: recording_.files.insert(textOf(value)); break;
        case Place::Services: storeService(key, value); break;
        case Place::UrlHandlers:
            recording_.urlHandlers[key] = QByteArray::fromStdString(textOf(value));
            break;
        case Place::Faults: recording_.faults.masterPort = std::int32_t(integerOf(value)); break;
        case Place::MatchingFaults: recording_.faults.matching.insert(textOf(value)); break;
        case Place::ServicesFaults: recording_.faults.services[key] = std::int32_t(integerOf(value)); break;
        default: break;
        }
    }

    void storeVersion(const ValueRef& value)
    {
        if (integerOf(value) != 1) {
            throw PlistError("the recording has version " + std::to_string(integerOf(value)) + ", not 1");
        }
        hasVersion_ = true;
    }

    void storeEntryFault(const std::string& key, const ValueRef& value)
    {
        OpenEntry& open = openEntries_.back();
        open.hasFaults = true;
        if (key == "IOObjectCopyClass") {
            open.faults.copyClass = static_cast<CFBooleanRef>(value.get())->value;
        } else if (key == "IORegistryEntryGetName") {
            open.faults.getName = std::int32_t(integerOf(value));
        } else if (key == "IORegistryEntryGetParentEntry") {
            open.faults.getParent = std::int32_t(integerOf(value));
        } else {
            open.faults.createProperties = std::int32_t(integerOf(value));
        }
    }

    void storeValueFault(const std::string& propertyKey)
    {
        const std::string& call = stack_[stack_.size() - 2].key; // of the dictionary around the array of keys
        const Object::Fault fault = call == "CFNumberGetValue"        ? Object::NumberGetValue
                                    : call == "CFStringGetCStringPtr" ? Object::StringGetCStringPtr
                                                                      : Object::StringGetCString;
        openEntries_.back().valueFaults[propertyKey] |= fault;
    }

    static void storeStatfs(MacStatfs& record, const std::string& key, const ValueRef& value)
    {
        static const struct
        {
            const char* key;
            std::uint64_t MacStatfs::*member;
        } counts[] = {{"f_blocks", &MacStatfs::f_blocks},
                      {"f_bfree", &MacStatfs::f_bfree},
                      {"f_bavail", &MacStatfs::f_bavail},
                      {"f_files", &MacStatfs::f_files},
                      {"f_ffree", &MacStatfs::f_ffree}};
        for (const auto& count : counts) {
            if (key == count.key) {
                record.*count.member = countOf(value);
            }
        }
        if (key == "f_bsize") {
            record.f_bsize = std::uint32_t(integerOf(value));
        } else if (key == "f_fstypename") {
            storeText(value, record.f_fstypename);
        } else if (key == "f_mntonname") {
            storeText(value, record.f_mntonname);
        } else if (key == "f_mntfromname") {
            storeText(value, record.f_mntfromname);
        }
    }

    static void storePathconf(RecordedVolume& volume, const std::string& key, const ValueRef& value)
    {
        if (key == "caseSensitive") {
            volume.caseSensitive = integerOf(value);
        } else if (key == "casePreserving") {
            volume.casePreserving = integerOf(value);
        } else {
            volume.error = int(integerOf(value));
        }
    }

    void storeService(const std::string& key, const ValueRef& value)
    {
        if (key == "DaemonVersion") {
            recording_.daemonVersion = std::uint32_t(integerOf(value));
        } else {
            recording_.daemonError = std::int32_t(integerOf(value));
        }
    }

    Recording recording_;
    std::vector<Frame> stack_;
    std::vector<Container> containers_;
    std::vector<ObjectRef<CFStringRef>>
        valueKeys_; // one for every dictionary of containers_ that awaits a value
    std::vector<OpenEntry> openEntries_;
    std::unordered_map<std::string, ObjectRef<CFStringRef>> keys_;
    bool hasVersion_ = false;
};

} // namespace

std::shared_ptr<const Machine> readRecording(QIODevice& device, PlistFailure& failure)
{
    RecordingLoader loader;
    failure = parsePlist(device, loader);
    if (!failure.reason.isEmpty()) {
        return nullptr;
    }
    return std::make_shared<RecordedMachine>(loader.take());
}

} // namespace norvex
