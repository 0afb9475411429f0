#include "tools/record/recorder.h"

#include "tools/record/recordingWriter.h"
#include "tools/record/registryRecorder.h"

#include "machelpers/propertyListValue.h"
#include "systeminfo/mac/driversAndServices.h"
#include "systeminfo/mac/fileQueries.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/processorQueries.h"
#include "systeminfo/mac/sysctlGestalt.h"

#include <cerrno>
#include <cstring>

NORVEX_DEPRECATED_CALLS_BEGIN

namespace norvex::Tool {

namespace {

using namespace norvex::SystemInfo::MacSysInfo;
using Value = RecordedValue;

const char* const textQueries[] = {"kern.osversion", "kern.version", "hw.machine", "hw.model"};

const char gestaltCodes[][5] = {"sys1", "sys2", "sys3", "sysa", "lram", "ram ",
                                "ramm", "lmem", "pgsz", "prty", "mmu "};

Value textValue(const QString& content)
{
    return Value::text(xmlText(content.toUtf8()));
}

std::optional<Value> sysctlTextValue(const char* name)
{
    const auto content = sysctlText(name);
    return content ? std::make_optional(textValue(*content)) : std::nullopt;
}

/// The buffer has the size that the section's has: some queries answer in the width that the caller asks for.
std::optional<Value> sysctlInteger(const char* name, std::size_t width)
{
    unsigned char buffer[8] = {};
    std::size_t length = width;
    if (sysctlbyname(name, buffer, &length, nullptr, 0) != 0) {
        return std::nullopt;
    }
    std::int32_t narrow = 0;
    std::int64_t wide = 0;
    std::memcpy(&narrow, buffer, sizeof narrow);
    std::memcpy(&wide, buffer, sizeof wide);
    return length > sizeof narrow ? Value::integer(64, wide) : Value::integer(32, narrow);
}

std::optional<Value> processorValue(const ProcessorQuery& query)
{
    switch (query.value) {
    case ProcessorValue::Text: return sysctlTextValue(query.name);
    case ProcessorValue::ClockSpeed:
    case ProcessorValue::CacheSize: return sysctlInteger(query.name, sizeof(std::int64_t));
    default: return sysctlInteger(query.name, sizeof(std::int32_t));
    }
}

Value sysctlValues()
{
    Value values = Value::dictionary();
    const auto add = [&values](const char* name, std::optional<Value> value) {
        if (value) {
            values.add(name, std::move(*value));
        }
    };
    for (const char* name : textQueries) {
        add(name, sysctlTextValue(name));
    }
    for (const ProcessorQuery& query : processorQueries) {
        add(query.name, processorValue(query));
    }
    if (const auto seconds = bootTime()) {
        add("kern.boottime", Value::integer(64, *seconds));
    }
    return values;
}

Value gestaltValues()
{
    Value values = Value::dictionary();
    for (const auto& code : gestaltCodes) {
        if (const auto number = gestaltValue(gestaltSelector(code))) {
            values.add(code, Value::integer(32, *number));
        }
    }
    return values;
}

/// Counts are unsigned; the format takes them modulo their size.
Value count(std::uint64_t number)
{
    return Value::integer(64, static_cast<std::int64_t>(number));
}

Value fileSystemRecord(const FileSystemRecord& info)
{
    Value record = Value::dictionary();
    record.add("f_bsize", count(info.f_bsize));
    record.add("f_blocks", count(info.f_blocks));
    record.add("f_bfree", count(info.f_bfree));
    record.add("f_bavail", count(info.f_bavail));
    record.add("f_files", count(info.f_files));
    record.add("f_ffree", count(info.f_ffree));
    record.add("f_fstypename", Value::text(xmlText(info.f_fstypename)));
    record.add("f_mntonname", Value::text(xmlText(info.f_mntonname)));
    record.add("f_mntfromname", Value::text(xmlText(info.f_mntfromname)));
    return record;
}

Value caseSensitivity(const QByteArray& path)
{
    Value answers = Value::dictionary();
    errno = 0;
    const long isSensitive = pathconf(path.constData(), _PC_CASE_SENSITIVE);
    const int error = errno;
    answers.add("caseSensitive", Value::integer(64, isSensitive));
    if (isSensitive == -1) {
        // Without a reason, a recording means EINVAL, which the section takes for an answer.
        answers.add("errno", Value::integer(32, error != 0 ? error : EIO));
    }
    answers.add("casePreserving", Value::integer(64, pathconf(path.constData(), _PC_CASE_PRESERVING)));
    return answers;
}

Value volumes()
{
    Value list = Value::array();
    const QStringList paths = volumeEntries();
    for (const QString& path : paths) {
        Value volume = Value::dictionary();
        volume.add("path", textValue(path));
        FileSystemRecord info = {};
        if (getFileSystemInfo(path, &info)) {
            volume.add("statfs", fileSystemRecord(info));
        }
        volume.add("pathconf", caseSensitivity(path.toUtf8()));
        list.add(std::move(volume));
    }
    return list;
}

/// The whole value, however long. Whether it fits the buffer of a section is up to the section.
PropertyListResult driverValue(const char* key, QByteArray& value)
{
    constexpr int largest = 1 << 24;
    PropertyListResult result = PropertyListResult::BufferTooSmall;
    for (int size = 1 << 10; result == PropertyListResult::BufferTooSmall && size <= largest; size *= 2) {
        QByteArray buffer(size, '\0');
        result = propertyListValue(ftdiDriverPropertyList, key, buffer.data(), size);
        value = buffer.constData();
    }
    return result;
}

Value propertyLists()
{
    Value files = Value::dictionary();
    Value properties = Value::dictionary();
    for (const char* key : {ftdiDriverVersionKey, ftdiDriverNameKey}) {
        QByteArray value;
        const PropertyListResult result = driverValue(key, value);
        if (result == PropertyListResult::NoFile) {
            return files;
        }
        if (result != PropertyListResult::NoString) {
            properties.add(key, Value::text(xmlText(value)));
        }
    }
    files.add(ftdiDriverPropertyList, std::move(properties));
    return files;
}

Value services()
{
    Value answers = Value::dictionary();
    std::uint32_t version = 0;
    if (const DNSServiceErrorType error = dnsServiceDaemonVersion(version)) {
        answers.add("DaemonVersionError", Value::integer(32, error));
    } else {
        answers.add("DaemonVersion", Value::integer(32, static_cast<std::int32_t>(version)));
    }
    CFHolder<CFStringRef> mailApplication;
    if (mailApplicationPath(mailApplication) && mailApplication) {
        Value handlers = Value::dictionary();
        handlers.add(mailScheme, Value::text(recordedText(mailApplication.get())));
        answers.add("urlHandlers", std::move(handlers));
    }
    return answers;
}

} // namespace

RecordedValue recordMachine()
{
    RecordedValue recording = Value::dictionary();
    recording.add("recording", Value::integer(32, 1));
    recording.addUnlessEmpty("sysctl", sysctlValues());
    recording.addUnlessEmpty("gestalt", gestaltValues());
    RegistryRecording registry = recordRegistry();
    recording.addUnlessEmpty("registry", std::move(registry.root));
    recording.addUnlessEmpty("volumes", volumes());
    recording.addUnlessEmpty("files", std::move(registry.deviceFiles));
    recording.addUnlessEmpty("propertyLists", propertyLists());
    recording.addUnlessEmpty("services", services());
    return recording;
}

} // namespace norvex::Tool

NORVEX_DEPRECATED_CALLS_END
