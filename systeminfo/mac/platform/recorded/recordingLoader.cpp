#include "systeminfo/mac/platform/propertyListReader.h"
#include "systeminfo/mac/platform/recorded/recordedMachine.h"
#include "systeminfo/mac/platform/recorded/recordedValues.h"
#include "systeminfo/mac/platform/sysctlValue.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace norvex {

namespace {

constexpr std::size_t deepestNesting = 512; // of entries, and of values inside a property

/// The dictionary or array around an element.
enum class Context {
    Document,
    Top,
    Sysctl,
    Gestalt,
    Entry,
    Classes,
    Children,
    EntryFaults,
    NumberFaults,
    StringPointerFaults,
    StringFaults,
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

using ValueFaults = std::unordered_map<std::string, std::uint8_t>; // property key -> faults of its values

/// Marks the values of the keys at any depth. Only the recording that is being loaded refers to them yet, but for
/// booleans: those are shared by all recordings, and no fault is about them.
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

/// What was read so far.
class Draft
{
public:
    /// What an entry collects until it ends.
    struct OpenEntry
    {
        Registry::ClassChain classes;
        std::optional<EntryFaults> faults;
        ValueFaults valueFaults;
    };

    void beginEntry();
    void endEntry();
    OpenEntry& openEntry() { return openEntries_.back(); }

    /// What a member belongs to: the innermost of its kind.
    Recording& owner(const Recording*) { return recording; }
    MachineFaults& owner(const MachineFaults*) { return recording.faults; }
    RecordedVolume& owner(const RecordedVolume*) { return recording.volumes.back(); }
    MacStatfs& owner(const MacStatfs*) { return *recording.volumes.back().statfs; }
    RegistryEntry& owner(const RegistryEntry*)
    {
        return recording.registry->entry(recording.registry->openEntry());
    }
    EntryFaults& owner(const EntryFaults*)
    {
        std::optional<EntryFaults>& faults = openEntry().faults;
        return faults ? *faults : faults.emplace();
    }

    Recording recording;
    bool hasVersion = false;

private:
    std::vector<OpenEntry> openEntries_;
};

void Draft::beginEntry()
{
    if (openEntries_.size() == deepestNesting) {
        throw PropertyListError("entries are nested deeper than " + std::to_string(deepestNesting));
    }
    if (recording.registry == nullptr) {
        recording.registry = std::make_shared<Registry>();
    }
    recording.registry->beginEntry();
    openEntries_.emplace_back();
}

void Draft::endEntry()
{
    OpenEntry& open = openEntries_.back();
    RegistryEntry& entry = owner(static_cast<RegistryEntry*>(nullptr));
    entry.classes = recording.registry->internClasses(std::move(open.classes));
    if (open.faults) {
        entry.faults = std::make_unique<EntryFaults>(*open.faults);
    }
    if (!open.valueFaults.empty()) {
        addFaults(entry.properties.get(), open.valueFaults);
    }
    openEntries_.pop_back();
    recording.registry->endEntry();
}

const std::string& textOf(const ValueRef& value)
{
    return static_cast<CFStringRef>(value.get())->utf8;
}

std::int64_t integerOf(const ValueRef& value)
{
    return static_cast<CFNumberRef>(value.get())->integer;
}

void assign(std::string& target, const ValueRef& value)
{
    target = textOf(value);
}

void assign(QByteArray& target, const ValueRef& value)
{
    target = QByteArray::fromStdString(textOf(value));
}

/// A text that is too long is cut.
template <std::size_t size>
void assign(char (&target)[size], const ValueRef& value)
{
    const std::string& text = textOf(value);
    const std::size_t length = std::min(text.size(), size - 1);
    std::memcpy(target, text.data(), length);
    target[length] = 0;
}

void assign(bool& target, const ValueRef& value)
{
    target = static_cast<CFBooleanRef>(value.get())->value;
}

/// An unsigned number takes an integer with its top bit set for itself, not for a negative one.
template <typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer>>>
void assign(Integer& target, const ValueRef& value)
{
    target = Integer(integerOf(value));
}

template <typename Member>
void assign(std::optional<Member>& target, const ValueRef& value)
{
    assign(target.emplace(), value);
}

/// Keeps a value under its key, in what is being read.
using Store = void (*)(Draft& draft, const std::string& key, const ValueRef& value);

template <typename Owner, typename Member>
Owner* ownerOf(Member Owner::*)
{
    return nullptr;
}

template <auto member>
auto& memberIn(Draft& draft)
{
    return draft.owner(ownerOf(member)).*member;
}

template <auto member>
void set(Draft& draft, const std::string&, const ValueRef& value)
{
    assign(memberIn<member>(draft), value);
}

template <auto map>
void setItem(Draft& draft, const std::string& key, const ValueRef& value)
{
    assign(memberIn<map>(draft)[key], value);
}

template <auto texts>
void insertText(Draft& draft, const std::string&, const ValueRef& value)
{
    memberIn<texts>(draft).insert(textOf(value));
}

void setVersion(Draft& draft, const std::string&, const ValueRef& value)
{
    if (integerOf(value) != 1) {
        throw PropertyListError("the recording has version " + std::to_string(integerOf(value)) + ", not 1");
    }
    draft.hasVersion = true;
}

void setSysctlText(Draft& draft, const std::string& name, const ValueRef& value)
{
    draft.recording.sysctl[name] = sysctlTextBytes(QByteArray::fromStdString(textOf(value)));
}

void setSysctlInteger(Draft& draft, const std::string& name, const ValueRef& value)
{
    const std::int64_t number = integerOf(value);
    const CFNumberType type = static_cast<CFNumberRef>(value.get())->type;
    if (type != kCFNumberSInt32Type && type != kCFNumberSInt64Type) {
        throw PropertyListError("a sysctl integer has 32 or 64 bits");
    }
    draft.recording.sysctl[name] =
        type == kCFNumberSInt32Type ? sysctlIntegerBytes(std::int32_t(number)) : sysctlIntegerBytes(number);
}

void setSysctlTime(Draft& draft, const std::string& name, const ValueRef& seconds)
{
    draft.recording.sysctl[name] = sysctlTimeBytes(integerOf(seconds));
}

void addClass(Draft& draft, const std::string&, const ValueRef& value)
{
    draft.openEntry().classes.push_back(textOf(value));
}

template <Object::Fault fault>
void addValueFault(Draft& draft, const std::string&, const ValueRef& propertyKey)
{
    draft.openEntry().valueFaults[textOf(propertyKey)] |= fault;
}

/// What may stand where, and what becomes of it. A null key stands for every key, and for the elements of an array.
struct Field
{
    constexpr Field(Context where, const char* name, Kind valueKind, Store function)
        : key(name), store(function), context(where), kind(valueKind)
    {}
    constexpr Field(Context where, const char* name, Kind containerKind, Context content)
        : key(name), context(where), kind(containerKind), inside(content)
    {}

    const char* key;
    Store store = nullptr; // of a value that holds no others
    Context context;
    Kind kind;
    Context inside = Context::Ignored; // of a dictionary or an array
};

constexpr Field fields[] = {
    {Context::Document, nullptr, Kind::Dictionary, Context::Top},

    {Context::Top, "recording", Kind::Integer, setVersion},
    {Context::Top, "sysctl", Kind::Dictionary, Context::Sysctl},
    {Context::Top, "gestalt", Kind::Dictionary, Context::Gestalt},
    {Context::Top, "registry", Kind::Dictionary, Context::Entry},
    {Context::Top, "volumes", Kind::Array, Context::Volumes},
    {Context::Top, "files", Kind::Array, Context::Files},
    {Context::Top, "propertyLists", Kind::Dictionary, Context::PropertyLists},
    {Context::Top, "services", Kind::Dictionary, Context::Services},
    {Context::Top, "faults", Kind::Dictionary, Context::Faults},

    {Context::Sysctl, "kern.boottime", Kind::Integer, setSysctlTime},
    {Context::Sysctl, nullptr, Kind::String, setSysctlText},
    {Context::Sysctl, nullptr, Kind::Integer, setSysctlInteger},
    {Context::Gestalt, nullptr, Kind::Integer, setItem<&Recording::gestalt>},

    {Context::Entry, "name", Kind::String, set<&RegistryEntry::name>},
    {Context::Entry, "classes", Kind::Array, Context::Classes},
    {Context::Entry, "properties", Kind::Dictionary, Context::Value},
    {Context::Entry, "children", Kind::Array, Context::Children},
    {Context::Entry, "faults", Kind::Dictionary, Context::EntryFaults},
    {Context::Classes, nullptr, Kind::String, addClass},
    {Context::Children, nullptr, Kind::Dictionary, Context::Entry},
    {Context::EntryFaults, "IORegistryEntryCreateCFProperties", Kind::Integer,
     set<&EntryFaults::createProperties>},
    {Context::EntryFaults, "IORegistryEntryGetName", Kind::Integer, set<&EntryFaults::getName>},
    {Context::EntryFaults, "IORegistryEntryGetParentEntry", Kind::Integer, set<&EntryFaults::getParent>},
    {Context::EntryFaults, "IOObjectCopyClass", Kind::Boolean, set<&EntryFaults::copyClass>},
    {Context::EntryFaults, "CFNumberGetValue", Kind::Array, Context::NumberFaults},
    {Context::EntryFaults, "CFStringGetCStringPtr", Kind::Array, Context::StringPointerFaults},
    {Context::EntryFaults, "CFStringGetCString", Kind::Array, Context::StringFaults},
    {Context::NumberFaults, nullptr, Kind::String, addValueFault<Object::NumberGetValue>},
    {Context::StringPointerFaults, nullptr, Kind::String, addValueFault<Object::StringGetCStringPtr>},
    {Context::StringFaults, nullptr, Kind::String, addValueFault<Object::StringGetCString>},

    {Context::Volumes, nullptr, Kind::Dictionary, Context::Volume},
    {Context::Volume, "path", Kind::String, set<&RecordedVolume::path>},
    {Context::Volume, "statfs", Kind::Dictionary, Context::Statfs},
    {Context::Volume, "pathconf", Kind::Dictionary, Context::Pathconf},
    {Context::Statfs, "f_bsize", Kind::Integer, set<&MacStatfs::f_bsize>},
    {Context::Statfs, "f_blocks", Kind::Integer, set<&MacStatfs::f_blocks>},
    {Context::Statfs, "f_bfree", Kind::Integer, set<&MacStatfs::f_bfree>},
    {Context::Statfs, "f_bavail", Kind::Integer, set<&MacStatfs::f_bavail>},
    {Context::Statfs, "f_files", Kind::Integer, set<&MacStatfs::f_files>},
    {Context::Statfs, "f_ffree", Kind::Integer, set<&MacStatfs::f_ffree>},
    {Context::Statfs, "f_fstypename", Kind::String, set<&MacStatfs::f_fstypename>},
    {Context::Statfs, "f_mntonname", Kind::String, set<&MacStatfs::f_mntonname>},
    {Context::Statfs, "f_mntfromname", Kind::String, set<&MacStatfs::f_mntfromname>},
    {Context::Pathconf, "caseSensitive", Kind::Integer, set<&RecordedVolume::caseSensitive>},
    {Context::Pathconf, "casePreserving", Kind::Integer, set<&RecordedVolume::casePreserving>},
    {Context::Pathconf, "errno", Kind::Integer, set<&RecordedVolume::error>},

    {Context::Files, nullptr, Kind::String, insertText<&Recording::files>},
    {Context::PropertyLists, nullptr, Kind::Dictionary, Context::Value},
    {Context::Services, "DaemonVersion", Kind::Integer, set<&Recording::daemonVersion>},
    {Context::Services, "DaemonVersionError", Kind::Integer, set<&Recording::daemonError>},
    {Context::Services, "urlHandlers", Kind::Dictionary, Context::UrlHandlers},
    {Context::UrlHandlers, nullptr, Kind::String, setItem<&Recording::urlHandlers>},

    {Context::Faults, "IOMasterPort", Kind::Integer, set<&MachineFaults::masterPort>},
    {Context::Faults, "IOServiceMatching", Kind::Array, Context::MatchingFaults},
    {Context::Faults, "IOServiceGetMatchingServices", Kind::Dictionary, Context::ServicesFaults},
    {Context::MatchingFaults, nullptr, Kind::String, insertText<&MachineFaults::matching>},
    {Context::ServicesFaults, nullptr, Kind::Integer, setItem<&MachineFaults::services>},
};

static_assert(sizeof fields / sizeof *fields <= 64, "a level has a bit for every field");

QString volumeName(const RecordedVolume& volume)
{
    return QString::fromUtf8(volume.path.mid(volume.path.lastIndexOf('/') + 1));
}

/// As a directory listing without hidden entries gives them: by name, ignoring case.
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
    result.reserve(order.size());
    for (const auto& place : order) {
        result.push_back(std::move(volumes[place.second]));
    }
    return result;
}

class RecordingLoader : public PropertyListHandler
{
public:
    Recording take()
    {
        draft_.recording.volumes = listed(std::move(draft_.recording.volumes));
        return std::move(draft_.recording);
    }

    void beginDictionary() override { begin(Kind::Dictionary); }
    void endDictionary() override { end(); }
    void beginArray() override { begin(Kind::Array); }
    void endArray() override { end(); }

    void key(const std::string& text) override
    {
        if (levels_.back().context == Context::Value) {
            valueKeys_.push_back(internKey(text));
        } else {
            levels_.back().key = text;
        }
    }

    void value(const PropertyListValue& element) override
    {
        ValueRef value = recordedValue(element);
        const Level& level = levels_.back();
        if (level.context == Context::Value) {
            addToContainer(std::move(value));
        } else if (const Field* const field = fieldFor(kindOf(value))) {
            field->store(draft_, level.key, value);
        }
    }

private:
    struct Level
    {
        Context context;
        std::string key;              // of the value that is read next
        std::uint64_t fieldsUsed = 0; // bits of the fields with a key that were there already
    };

    /// A dictionary or array of a property under construction.
    struct Container
    {
        bool isArray;
        DictionaryBuilder dictionary;
        std::vector<ValueRef> values;
    };

    /// The field for a value of a kind; null when the key is unknown. A known key with another kind of value is
    /// refused.
    const Field* fieldFor(Kind kind)
    {
        Level& level = levels_.back();
        const Field* known = nullptr;
        for (const Field& field : fields) {
            if (field.context != level.context || (field.key != nullptr && level.key != field.key)) {
                continue;
            }
            if (known != nullptr && known->key != nullptr) {
                break; // the field with just this key goes before the one for every key
            }
            known = &field;
            if (field.kind == kind) {
                refuseSecond(level, field);
                return &field;
            }
        }
        if (known == nullptr) {
            return nullptr;
        }
        const std::string what = level.context == Context::Document ? "the root of a recording"
                                 : level.key.empty()                ? "an element of this array"
                                                                    : "\"" + level.key + "\"";
        throw PropertyListError(what + " is " + nameOf(known->kind) + ", not " + nameOf(kind));
    }

    static void refuseSecond(Level& level, const Field& field)
    {
        const std::uint64_t bit = std::uint64_t(1) << (&field - fields);
        if (field.key != nullptr && (level.fieldsUsed & bit) != 0) {
            throw PropertyListError("\"" + level.key + "\" stands here twice");
        }
        level.fieldsUsed |= bit;
    }

    void begin(Kind kind)
    {
        Context inside = levels_.back().context;
        if (inside != Context::Value && inside != Context::Ignored) {
            const Field* const field = fieldFor(kind);
            inside = field == nullptr ? Context::Ignored : field->inside;
        }
        if (inside == Context::Value) {
            beginContainer(kind);
        } else if (inside == Context::Entry) {
            draft_.beginEntry();
        } else if (inside == Context::Volume) {
            draft_.recording.volumes.emplace_back();
        } else if (inside == Context::Statfs) {
            draft_.recording.volumes.back().statfs = std::make_unique<MacStatfs>();
        }
        levels_.push_back({inside, {}});
    }

    void end()
    {
        const Context ended = levels_.back().context;
        levels_.pop_back();
        if (ended == Context::Value) {
            endContainer();
        } else if (ended == Context::Entry) {
            draft_.endEntry();
        } else if (ended == Context::Volume && draft_.recording.volumes.back().path.isEmpty()) {
            throw PropertyListError("a volume without a path");
        } else if (ended == Context::Top && !draft_.hasVersion) {
            throw PropertyListError("not a recording: the key \"recording\" is missing");
        }
    }

    void beginContainer(Kind kind)
    {
        if (containers_.size() == deepestNesting) {
            throw PropertyListError("values are nested deeper than " + std::to_string(deepestNesting));
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
        const Level& level = levels_.back();
        if (level.context == Context::Entry) {
            memberIn<&RegistryEntry::properties>(draft_) = std::move(dictionary);
        } else {
            draft_.recording.propertyLists[level.key] = std::move(dictionary);
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

    /// The keys of properties are few and recur in every entry.
    ObjectRef<CFStringRef> internKey(const std::string& text)
    {
        ObjectRef<CFStringRef>& key = keys_[text];
        if (!key) {
            key = makeString(text);
        }
        return key;
    }

    Draft draft_;
    std::vector<Level> levels_ = {{Context::Document, {}}};
    std::vector<Container> containers_;
    std::vector<ObjectRef<CFStringRef>>
        valueKeys_; // one for every dictionary of containers_ that awaits a value
    std::unordered_map<std::string, ObjectRef<CFStringRef>> keys_;
};

} // namespace

std::shared_ptr<const Machine> readRecording(QIODevice& device, PropertyListFailure& failure)
{
    RecordingLoader loader;
    failure = readPropertyList(device, PropertyListDialect::Recording, loader);
    if (!failure.reason.isEmpty()) {
        return nullptr;
    }
    return std::make_shared<RecordedMachine>(loader.take());
}

} // namespace norvex
