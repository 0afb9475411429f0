#include "systeminfo/reportFormat.h"

#include "systeminfo/norvexSystemInfo.h"
#include "systeminfo/reportTexts.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <deque>
#include <iterator>

namespace norvex::SystemInfo::Internal {

const char* const environmentSection = "qtSystemEnvironment";
const char* const openGLSection = "openGL";
const char* const usbSection = "ioKitUsbDevices";

namespace {

using Kind = ValueKind;

constexpr Delimiter colon = Delimiter::Colon;
constexpr bool isVolatile = true;

const struct
{
    Half half;
    const char* name;
    const char* banner;
} halves[] = {
    {Half::Macintosh, "macintosh", macintoshBanner},
    {Half::Windows, "windows", windowsBanner},
    {Half::Qt, "qt", qtBanner},
};

const EntryFormat osVersionEntries[] = {{"MacOS version"}};
const EntryFormat kernelEntries[] = {{"Boottime", Kind::Text, colon, isVolatile}};
const EntryFormat modelEntries[] = {{"Model"}};
const EntryFormat architectureEntries[] = {{"Mac System Architecture"}, {"Architecture of executed binary"}};
const EntryFormat cpuEntries[] = {
    {"Number of physical cores"},
    {"Number of virtual cores"},
    {"CPU type"},
    {"CPU sub type"},
    {"CPU family"},
    {"CPU 64bit capable"},
    {"CPU vendor"},
    {"CPU brand name"},
    {"CPU model"},
    {"CPU extmodel"},
    {"CPU extfamily"},
    {"CPU stepping"},
    {"CPU signature"},
    {"CPU microcode version"},
    {"CPU logical per package"},
    {"CPU cores per package"},
    {"CPU features"},
    {"Processor clock speed", Kind::ClockSpeed},
    {"Bus clock speed", Kind::ClockSpeed},
    {"L1 Data Cache size", Kind::MemorySize},
    {"L1 Instruction Cache size", Kind::MemorySize},
    {"L2 Cache size", Kind::MemorySize},
    {"L3 Cache size", Kind::MemorySize},
    {"Byte order"},
};
const EntryFormat memoryEntries[] = {
    {"Logical RAM size", Kind::MemorySize},
    {"Physical RAM size", Kind::MemorySize},
    {"Low memory area size", Kind::MemorySize},
    {"Logical Page Size", Kind::MemorySize},
    {"Memory Parity"},
    {"MMU type"},
};
const EntryFormat diskEntries[] = {{"Size", Kind::DiskSize}};
const EntryFormat volumeEntries[] = {
    {"Blocks free", Kind::Text, colon, isVolatile},     {"Blocks avail", Kind::Text, colon, isVolatile},
    {"File nodes free", Kind::Text, colon, isVolatile}, {"Size", Kind::DiskSize},
    {"Free", Kind::DiskSize, colon, isVolatile},        {"Avail", Kind::DiskSize, colon, isVolatile},
};
const EntryFormat graphicsEntries[] = {{"VRAM total", Kind::MemorySize}};
const EntryFormat usbEntries[] = {{"Speed", Kind::BitRate}};
const EntryFormat bonjourEntries[] = {{"Bonjour version"}};
const EntryFormat mailEntries[] = {{"Default e-mail app"}};
const EntryFormat dateEntries[] = {
    {"Local Date and Time", Kind::Text, colon, isVolatile},
    {"UTC   Date and Time", Kind::Text, colon, isVolatile},
    {"ActiveBias"},
};
const EntryFormat globalEntries[] = {
    {"Pointer size QSysInfo::Wordsize", Kind::Text, Delimiter::Blanks},
    {"Pointer size QT_POINTER_SIZE", Kind::Text, Delimiter::Blanks},
};
const EntryFormat applicationEntries[] = {
    {"Application PID", Kind::Text, colon, isVolatile},
    {"Library Paths", Kind::IndentedList},
};
const EntryFormat screenEntries[] = {
    {"Physical DPI", Kind::Text, Delimiter::Blanks},
    {"Logical  DPI", Kind::Text, Delimiter::Blanks},
    {"RefreshRate", Kind::Frequency},
    {"PhysicalSize (width x height)", Kind::Lengths},
    {"diagonal", Kind::Lengths},
};
const EntryFormat folderEntries[] = {
    {"Desktop [displayName]", Kind::Text, Delimiter::Blanks},
    {"Documents [displayName]", Kind::Text, Delimiter::Blanks},
    {"Home [displayName]", Kind::Text, Delimiter::Blanks},
    {"Data [displayName]", Kind::Text, Delimiter::Blanks},
    {"Temp [displayName]", Kind::Text, Delimiter::Blanks},
    {"Applications [displayName]", Kind::Text, Delimiter::Blanks},
    {"Fonts [displayName]", Kind::Text, Delimiter::Blanks},
};
const EntryFormat printerEntries[] = {{"Available printers", Kind::List}};
const EntryFormat networkEntries[] = {{"Addresses", Kind::List}};
const EntryFormat openGLEntries[] = {
    {"hasOpenGL", Kind::Text, Delimiter::Blanks},
    {"hasOpenGLOverlays", Kind::Text, Delimiter::Blanks},
    {"openGLVersionFlags", Kind::Text, Delimiter::Blanks},
    {"glGetString(GL_VERSION)", Kind::Text, Delimiter::Equals},
    {"glGetString(GL_VENDOR)", Kind::Text, Delimiter::Equals},
    {"glGetString(GL_RENDERER)", Kind::Text, Delimiter::Equals},
    {"glGetString(GL_EXTENSIONS)", Kind::Text, Delimiter::Equals},
};

const char deviceSeparator[] = "________________________________________";
const char interfaceSeparator[] = "_______________________________________________________";

static_assert(sizeof interfaceSeparator == interfaceSeparatorLength + 1, "as it is written");

const BlockFormat numberedDevices = {"#", true, nullptr, 1, -1};
const BlockFormat numberedCards = {"Card #", true, nullptr, 1, -1};
const BlockFormat closedDevices = {nullptr, false, deviceSeparator, 0, -1};
const BlockFormat volumes = {"/", false, nullptr, 1, 0};
const BlockFormat interfaces = {interfaceSeparator, false, nullptr, 2, 1};

const char* const diskNames[] = {"Serial Number", "BSD Name", "Model"};
const char* const ethernetNames[] = {"BSD Name", "MAC address"};
const char* const graphicsNames[] = {"Model"};
const char* const portNames[] = {"Device Name"};
const char* const screenNames[] = {"Name"};

const SectionFormat rows[] = {
    {"osVersion", nullptr, osVersionEntries},
    {"kernelInfo", "Kernel information:", kernelEntries},
    {"macModel", nullptr, modelEntries},
    {"architecture", nullptr, architectureEntries},
    {"cpuInfo", nullptr, cpuEntries},
    {"memoryInfo", nullptr, memoryEntries},
    {"ioKitSataDiskDevices", "AHCI disk (from IOKit)", diskEntries, &numberedDevices, diskNames},
    {"ioKitSerialAtapiDevices", "AHCI Serial ATAPI (from IOKit)", {}, &numberedDevices, diskNames},
    {"ioKitNVMExpressDevices", "NVMEXpress devices (from IOKit)", diskEntries, &numberedDevices, diskNames},
    {"listFileSystemVolumesInfo", "Volumes", volumeEntries, &volumes},
    {"ioKitEthernetDevices", "Ethernet interfaces (from IOKit)", {}, &numberedDevices, ethernetNames},
    {"ioKitPlatformInfos", "Platform info (from IOKit)", {}, nullptr, {}, true},
    {"ioKitRootInfos", "Root info (from IOKit)", {}, nullptr, {}, true},
    {"ioKitGraphicsCards", "Graphics card info (from IOKit)", graphicsEntries, &numberedCards, graphicsNames},
    {usbSection, "Attached USB devices (from IOKit):", usbEntries, &closedDevices, {}, true},
    {"ioKitGetRs232SerialDevices",
     "RS232 Serial Devices Info (from IOKit)",
     {},
     &closedDevices,
     portNames,
     true},
    {"checkFtdiDriver", "FTDI driver", {}},
    {"bonjourVersion", nullptr, bonjourEntries},
    {"defaultEmailApp", nullptr, mailEntries, nullptr, {}, true},
    {"qtDateTime", nullptr, dateEntries},
    {"qtGlobal", "Qt Global", globalEntries},
    {"qtCoreApplication", "QCoreApplication:", applicationEntries},
    {"qtLocale", "QLocale", {}},
    {"qtScreens", "QScreen", screenEntries, &numberedDevices, screenNames},
    {"qtDesktop", "QDesktopWidget", {}},
    {"qtDesktopServices", "QDesktopServices", folderEntries},
    {"qtPrinterInfo", "QPrinterInfo", printerEntries},
    {"qtHostInfo", "QHostInfo", {}},
    {"network", networkHeading, networkEntries, &interfaces},
    {environmentSection, "System environemnt (QProcess::systemEnvironment()):", {}},
    {openGLSection, "#### QGLFormat ####", openGLEntries},
};

std::vector<SectionFormat> makeFormats()
{
    std::vector<SectionFormat> formats(std::begin(rows), std::end(rows));
    for (SectionFormat& format : formats) {
        for (const SectionInfo& section : sections()) {
            if (std::strcmp(section.name, format.name) == 0) {
                format.half = section.half == ReportHalf::Qt ? Half::Qt : Half::Macintosh;
                format.group = section.group;
            }
        }
    }
    return formats;
}

int length(const char* text)
{
    return static_cast<int>(std::strlen(text));
}

/// Whether the line is this text, blanks at its end not counting: programs that send mail cut them off.
bool isLine(const QString& text, const Line& line, const char* ascii)
{
    return hasAt(text, line.begin, line.end, ascii) && isBlank(text, line.begin + length(ascii), line.end);
}

/// The first lines of sections by four of their characters, so that a line is compared with one or two of them.
class FirstLines
{
public:
    FirstLines();

    const SectionFormat* find(const QString& text, const Line& line, Half half) const;

private:
    static constexpr int shortest = 6;
    static constexpr int longest = 56;

    /// All that a comparison needs stands side by side: it costs as much as the rest of a line.
    struct Row
    {
        const Row* next; // of those with the same characters
        const SectionFormat* format;
        int size;
        bool isLabel; // the text begins the line, instead of being all of it
        bool isOfMacintosh;
        std::array<QChar, longest> text;
    };

    void add(const QString& text, bool isLabel, const SectionFormat& format);
    static unsigned slot(const QChar* line)
    {
        const auto at = [line](int index) { return static_cast<unsigned>(line[index].unicode()); };
        return (at(0) * 7 + at(1) * 11 + at(4) * 31 + at(5) * 3) % slotCount;
    }

    static constexpr unsigned slotCount = 256;

    std::deque<Row> rows_;
    std::array<const Row*, slotCount> slots_ = {};
};

FirstLines::FirstLines()
{
    for (const SectionFormat& format : sectionFormats()) {
        if (format.heading != nullptr) {
            // Whatever a mail program puts behind the environment's: what follows is private.
            add(QString::fromLatin1(format.heading), isSection(&format, environmentSection), format);
            continue;
        }
        for (const EntryFormat& entry : format.entries) {
            add(QString::fromLatin1(entry.label) + QLatin1Char(':'), true, format);
        }
    }
}

void FirstLines::add(const QString& text, bool isLabel, const SectionFormat& format)
{
    const Row*& first = slots_.at(slot(text.constData()));
    Row row = {first, &format, text.size(), isLabel, format.half == Half::Macintosh, {}};
    std::copy(text.begin(), text.end(), row.text.begin());
    rows_.push_back(row);
    first = &rows_.back();
}

const SectionFormat* FirstLines::find(const QString& text, const Line& line, Half half) const
{
    const int length = line.end - line.begin;
    if (length < shortest) {
        return nullptr;
    }
    const QChar* const start = text.constData() + line.begin;
    for (const Row* row = slots_[slot(start)]; row != nullptr; row = row->next) {
        if (row->size <= length &&
            std::memcmp(start, row->text.data(), static_cast<std::size_t>(row->size) * sizeof(QChar)) == 0 &&
            (row->isLabel || row->size == length || isBlank(text, line.begin + row->size, line.end))) {
            return half == Half::Windows && row->isOfMacintosh ? nullptr : row->format;
        }
    }
    return nullptr;
}

bool isNameCharacter(QChar character)
{
    static const char others[] = "_.-%()";
    return character.isLetterOrNumber() ||
           (character.unicode() != 0 && character.unicode() < 128 &&
            std::strchr(others, static_cast<char>(character.unicode())) != nullptr);
}

} // namespace

const char* halfName(Half half)
{
    const auto found = std::find_if(std::begin(halves), std::end(halves),
                                    [half](const auto& each) { return each.half == half; });
    return found == std::end(halves) ? "" : found->name;
}

bool isSeparator(const QString& text, const Line& line)
{
    if (line.end - line.begin < separatorLength || text.at(line.begin) != QLatin1Char('-')) {
        return false;
    }
    static const QString hyphens(separatorLength, QLatin1Char('-'));
    return std::memcmp(text.constData() + line.begin, hyphens.constData(), separatorLength * sizeof(QChar)) ==
               0 &&
           isBlank(text, line.begin + separatorLength, line.end);
}

Half bannerHalf(const QString& text, const Line& line)
{
    if (line.isEmpty() || text.at(line.begin) != QLatin1Char('#')) {
        return Half::None;
    }
    const auto found = std::find_if(std::begin(halves), std::end(halves),
                                    [&](const auto& each) { return isLine(text, line, each.banner); });
    return found == std::end(halves) ? Half::None : found->half;
}

/// A separator covers a position in 72, wherever it stands, so that no other character has to be looked at.
Line lastSeparator(const QString& text, int begin, int end)
{
    constexpr int step = 8;
    static const char16_t hyphens[step] = {u'-', u'-', u'-', u'-', u'-', u'-', u'-', u'-'};
    const QChar* const characters = text.constData();
    const auto isHyphen = [&](int position) { return characters[position] == QLatin1Char('-'); };
    for (int probe = end - 1; probe >= begin; probe -= separatorLength) {
        if (!isHyphen(probe)) {
            continue;
        }
        while (probe - begin >= step &&
               std::memcmp(characters + probe - step, hyphens, sizeof hyphens) == 0) {
            probe -= step;
        }
        while (probe > begin && isHyphen(probe - 1)) {
            --probe;
        }
        const bool beginsLine = probe == begin || characters[probe - 1] == QLatin1Char('\n');
        if (beginsLine && end - probe >= separatorLength) {
            // Usually nothing stands behind the hyphens: then they need not be searched for the line's end.
            const int behind = probe + separatorLength;
            const bool endsHere = behind < text.size() && characters[behind] == QLatin1Char('\n');
            const Line line = endsHere ? Line{probe, behind, behind + 1} : lineAt(text, probe);
            if (isSeparator(text, line)) {
                return line;
            }
        }
    }
    return {-1, -1, -1};
}

const std::vector<SectionFormat>& sectionFormats()
{
    static const std::vector<SectionFormat> formats = makeFormats();
    return formats;
}

bool isSection(const SectionFormat* format, const char* name)
{
    return format != nullptr && std::strcmp(format->name, name) == 0;
}

const SectionFormat* environmentFormat()
{
    const std::vector<SectionFormat>& formats = sectionFormats();
    static const SectionFormat* const format =
        &*std::find_if(formats.begin(), formats.end(),
                       [](const auto& each) { return isSection(&each, environmentSection); });
    return format;
}

const SectionFormat* sectionOf(const QString& text, const Line& line, Half half)
{
    static const FirstLines firstLines;
    return firstLines.find(text, line, half);
}

bool opensBlock(const QString& text, const Line& line, const BlockFormat& blocks)
{
    if (blocks.opening == nullptr) {
        return !line.isEmpty();
    }
    if (!hasAt(text, line.begin, line.end, blocks.opening)) {
        return false;
    }
    if (!blocks.isNumbered) {
        return blocks.nameLine == 0 || isLine(text, line, blocks.opening);
    }
    const QChar* const digits = text.constData() + line.begin + length(blocks.opening);
    const QChar* const end = text.constData() + line.end;
    return digits != end && std::all_of(digits, end, [](QChar each) {
               return each >= QLatin1Char('0') && each <= QLatin1Char('9');
           });
}

bool closesBlock(const QString& text, const Line& line, const BlockFormat& blocks)
{
    return blocks.closing != nullptr && isLine(text, line, blocks.closing);
}

int variableDelimiter(const QString& text, const Line& line)
{
    constexpr int indentation = 2;
    const int nameBegin = line.begin + indentation;
    if (nameBegin >= line.end || !isBlank(text, line.begin, nameBegin)) {
        return -1;
    }
    const QChar* const name = text.constData() + nameBegin;
    const QChar* const end = text.constData() + line.end;
    const QChar* const delimiter = std::find_if_not(name, end, isNameCharacter);
    const bool isVariable = delimiter != name && delimiter != end && *delimiter == QLatin1Char('=') &&
                            (name->isLetter() || *name == QLatin1Char('_'));
    return isVariable ? static_cast<int>(delimiter - text.constData()) : -1;
}

bool hasAt(const QString& text, int position, int end, const char* ascii)
{
    const QChar* character = text.constData() + position;
    const QChar* const last = text.constData() + end;
    for (; *ascii != '\0'; ++ascii, ++character) {
        if (character == last || *character != QLatin1Char(*ascii)) {
            return false;
        }
    }
    return true;
}

bool isBlank(const QString& text, int begin, int end)
{
    const QChar* const characters = text.constData();
    return std::all_of(characters + begin, characters + end,
                       [](QChar each) { return each == QLatin1Char(' '); });
}

} // namespace norvex::SystemInfo::Internal
