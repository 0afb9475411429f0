#include "systeminfo/norvexSystemInfo.h"

#include "systeminfo/reportTexts.h"

#include <QObject>
#include <QStringMatcher>
#include <algorithm>
#include <cstring>
#include <iterator>

namespace norvex::SystemInfo {
namespace {

using namespace Internal;

/// Interfaces that do not count: those whose name begins with the prefix, with one exception.
struct IgnoredInterfaces
{
    const char* prefix;
    const char* exception;
};

/// What differs between kinds of reports. A null pointer stands for what a kind does not have.
struct ReportKind
{
    const char* banner;
    const char* processorSection;
    const char* numberOfProcessors;
    const char* revision;
    const char* fallbackRevision;
    IgnoredInterfaces ignored[2];
};

/// In order of precedence: a report with both banners is of the first kind.
const ReportKind reportKinds[] = {
    {
        windowsBanner,
        "Processor information:",
        "Number of processors:",
        "Processor revision:",
        nullptr,
        {{nullptr, nullptr}, {nullptr, nullptr}},
    },
    {
        macintoshBanner,
        nullptr,
        "Number of physical cores:",
        "CPU signature:",
        "CPU sub type",
        {{"awdl", nullptr}, {"p2p", "p2p0"}},
    },
};

int length(const char* text)
{
    return static_cast<int>(std::strlen(text));
}

bool isCarriageReturn(QChar character)
{
    return character == QLatin1Char('\r');
}

bool isBlankOrCarriageReturn(QChar character)
{
    return character == QLatin1Char(' ') || isCarriageReturn(character);
}

/// QString::remove() moves the rest of the text for each character it removes in older versions of Qt.
template <typename Predicate>
QString without(const QStringRef& text, Predicate unwanted)
{
    QString kept;
    kept.resize(text.size());
    const QChar* const end = std::remove_copy_if(text.begin(), text.end(), kept.begin(), unwanted);
    kept.resize(static_cast<int>(end - kept.constData()));
    return kept;
}

/// Reads one report. Call the steps in the order of their declaration.
///
/// A search that fails reads the whole rest of the report. That stays linear in its length because each of
/// them ends the step that makes it, and because within the interface blocks every search starts behind the
/// last hit.
class ReportReader
{
public:
    /// Shares the text instead of referring to it: the caller may pass the same string for a result.
    ReportReader(const QString& report, QString& errorMessage) : report_(report), errorMessage_(errorMessage)
    {}

    bool findSections();
    bool collectMacAddresses(bool skipBracedInterfaceNames, QStringList& macAddresses);
    bool findProcessorSection();
    bool readNumberOfProcessors(unsigned char& numberOfProcessors);
    bool readProcessorRevision(unsigned short& processorRevision);

private:
    bool fail(const QString& message);
    int find(const char* text, int from) const { return report_.indexOf(QLatin1String(text), from); }
    QStringRef restOfLine(int from) const;
    bool isIgnored(const QString& interfaceName, bool skipBracedInterfaceNames) const;

    const QString report_;
    QString& errorMessage_;
    const ReportKind* kind_ = nullptr;
    int networkSection_ = 0;
    int processorSection_ = 0;
};

bool ReportReader::fail(const QString& message)
{
    errorMessage_ = message;
    return false;
}

/// The text from a position to the next line end; a null reference when no line end follows.
QStringRef ReportReader::restOfLine(int from) const
{
    const int lineEnd = report_.indexOf(QLatin1Char('\n'), from);
    return lineEnd == -1 ? QStringRef() : QStringRef(&report_, from, lineEnd - from);
}

bool ReportReader::findSections()
{
    const int qtSection = find(qtBanner, 0);
    if (qtSection == -1) {
        return fail(QObject::tr("Section with the information retrieved using Qt was not found!"));
    }
    const auto kind = std::find_if(std::begin(reportKinds), std::end(reportKinds),
                                   [this](const ReportKind& each) { return find(each.banner, 0) != -1; });
    if (kind == std::end(reportKinds)) {
        return fail(QObject::tr("No valid operating system specific section found!"));
    }
    kind_ = kind;
    networkSection_ = find(networkHeading, qtSection);
    if (networkSection_ == -1) {
        return fail(QObject::tr("No valid network interface section found!"));
    }
    return true;
}

bool ReportReader::isIgnored(const QString& interfaceName, bool skipBracedInterfaceNames) const
{
    if (skipBracedInterfaceNames && interfaceName.startsWith(QLatin1Char('{')) &&
        interfaceName.endsWith(QLatin1Char('}'))) {
        return true;
    }
    return std::any_of(std::begin(kind_->ignored), std::end(kind_->ignored),
                       [&](const IgnoredInterfaces& ignored) {
                           return ignored.prefix && interfaceName.startsWith(QLatin1String(ignored.prefix)) &&
                                  !(ignored.exception && interfaceName == QLatin1String(ignored.exception));
                       });
}

bool ReportReader::collectMacAddresses(bool skipBracedInterfaceNames, QStringList& macAddresses)
{
    const QStringMatcher separator{QString(interfaceSeparatorLength, QLatin1Char('_'))};
    const QStringMatcher label{QString::fromLatin1(hardwareAddressLabel)};

    int position = networkSection_;
    while ((position = separator.indexIn(report_, position)) != -1) {
        const int separatorEnd = report_.indexOf(QLatin1Char('\n'), position);
        if (separatorEnd == -1) {
            return fail(
                QObject::tr("Failed to extract network interface name - no end of line after separator"));
        }
        const QStringRef nameLine = restOfLine(separatorEnd + 1);
        if (nameLine.isEmpty()) {
            return fail(QObject::tr("Failed to extract network interface name - no end of line for name"));
        }
        const int labelStart = label.indexIn(report_, nameLine.position() + nameLine.size());
        if (labelStart == -1) {
            break;
        }
        // The character after the label is its colon.
        const QStringRef value = restOfLine(labelStart + length(hardwareAddressLabel) + 1);
        if (value.isNull()) {
            break; // The report ends within this line; part of an address is no address.
        }
        if (value.count(QLatin1Char(':')) == 5 &&
            !isIgnored(without(nameLine, isCarriageReturn), skipBracedInterfaceNames)) {
            macAddresses.append(without(value, isBlankOrCarriageReturn));
        }
        position = value.position() + value.size() + 1;
    }
    // Addresses that the list already held count, too.
    return !macAddresses.isEmpty() || fail(QObject::tr("No MAC addresses found!"));
}

bool ReportReader::findProcessorSection()
{
    processorSection_ = kind_->processorSection ? find(kind_->processorSection, 0) : 0;
    return processorSection_ != -1 || fail(QObject::tr("Processor specific section not found!"));
}

bool ReportReader::readNumberOfProcessors(unsigned char& numberOfProcessors)
{
    const int label = find(kind_->numberOfProcessors, processorSection_);
    if (label == -1) {
        return fail(QObject::tr("Could not find number of processors!"));
    }
    const QStringRef value = restOfLine(label + length(kind_->numberOfProcessors));
    if (value.isEmpty()) {
        return fail(QObject::tr("Could not find the value for number of processors."));
    }
    const QString number = without(value, isBlankOrCarriageReturn);
    if (number.isEmpty()) {
        return true;
    }
    bool converted = false;
    numberOfProcessors = static_cast<unsigned char>(number.toUInt(&converted) & 0xffU);
    return converted || fail(QObject::tr("Could not convert number of processors '%1'.").arg(number));
}

bool ReportReader::readProcessorRevision(unsigned short& processorRevision)
{
    int label = find(kind_->revision, processorSection_);
    if (label == -1 && kind_->fallbackRevision) {
        label = find(kind_->fallbackRevision, processorSection_);
    }
    if (label == -1) {
        return fail(QObject::tr("Could not find processor revision!"));
    }
    // "CPU sub type: " and "CPU signature:" have the same length.
    const QStringRef value = restOfLine(label + length(kind_->revision));
    if (value.isEmpty()) {
        return fail(QObject::tr("Could not find the value the processor revision."));
    }
    // The sub-type line continues with "= " and the number's other spellings.
    const int equals = value.indexOf(QLatin1Char('='));
    const QString number = without(equals == -1 ? value : value.left(equals), isBlankOrCarriageReturn);
    if (number.isEmpty()) {
        return true;
    }
    bool converted = false;
    processorRevision = static_cast<unsigned short>(number.toUInt(&converted) & 0xffffU);
    return converted || fail(QObject::tr("Could not convert processor revision '%1'.").arg(number));
}

} // namespace

bool extractAccessKeyValues(const QString& report, bool skipBracedInterfaceNames, QStringList& macAddresses,
                            unsigned char& numberOfProcessors, unsigned short& processorRevision,
                            QString& errorMessage)
{
    ReportReader reader(report, errorMessage);
    return reader.findSections() && reader.collectMacAddresses(skipBracedInterfaceNames, macAddresses) &&
           reader.findProcessorSection() && reader.readNumberOfProcessors(numberOfProcessors) &&
           reader.readProcessorRevision(processorRevision);
}

} // namespace norvex::SystemInfo
