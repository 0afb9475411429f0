#include "systeminfo/reportFormat.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <vector>

namespace norvex::SystemInfo::Internal {

const char* const environmentSection = "qtSystemEnvironment";
const char* const openGLSection = "openGL";
const char* const usbSection = "ioKitUsbDevices";

namespace {

using Kind = ValueKind;

constexpr int separatorLength = 72;

constexpr Delimiter colon = Delimiter::Colon;
constexpr bool isVolatile = true;

const struct
{
    Half half;
    const char* name;
    const char* banner;
} halves[] = {
    {Half::Macintosh, "macintosh", "############ Macintosh specific section ###########"},
    {Half::Windows, "windows", "############ Windows specific section ###########"},
    {Half::Qt, "qt", "###### System informations retrieved using Qt #######"},
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

constexpr Half mac = Half::Macintosh;
constexpr Half qt = Half::Qt;

const SectionFormat formats[] = {
    {"osVersion", mac, 1, nullptr, osVersionEntries},
    {"kernelInfo", mac, 1, "Kernel information:", kernelEntries},
    {"macModel", mac, 2, nullptr, modelEntries},
    {"architecture", mac, 2, nullptr, architectureEntries},
    {"cpuInfo", mac, 2, nullptr, cpuEntries},
    {"memoryInfo", mac, 3, nullptr, memoryEntries},
    {"ioKitSataDiskDevices", mac, 4, "AHCI disk (from IOKit)", diskEntries, &numberedDevices, diskNames},
    {"ioKitSerialAtapiDevices", mac, 5, "AHCI Serial ATAPI (from IOKit)", {}, &numberedDevices, diskNames},
    {"ioKitNVMExpressDevices", mac, 6, "NVMEXpress devices (from IOKit)", diskEntries, &numberedDevices,
     diskNames},
    {"listFileSystemVolumesInfo", mac, 7, "Volumes", volumeEntries, &volumes},
    {"ioKitEthernetDevices", mac, 8, "Ethernet interfaces (from IOKit)", {}, &numberedDevices, ethernetNames},
    {"ioKitPlatformInfos", mac, 9, "Platform info (from IOKit)", {}, nullptr, {}, true},
    {"ioKitRootInfos", mac, 10, "Root info (from IOKit)", {}, nullptr, {}, true},
    {"ioKitGraphicsCards", mac, 11, "Graphics card info (from IOKit)", graphicsEntries, &numberedCards,
     graphicsNames},
    {usbSection, mac, 12, "Attached USB devices (from IOKit):", usbEntries, &closedDevices, {}, true},
    {"ioKitGetRs232SerialDevices",
     mac,
     13,
     "RS232 Serial Devices Info (from IOKit)",
     {},
     &closedDevices,
     portNames,
     true},
    {"checkFtdiDriver", mac, 14, "FTDI driver", {}},
    {"bonjourVersion", mac, 15, nullptr, bonjourEntries},
    {"defaultEmailApp", mac, 16, nullptr, mailEntries, nullptr, {}, true},
    {"qtDateTime", qt, 1, nullptr, dateEntries},
    {"qtGlobal", qt, 2, "Qt Global", globalEntries},
    {"qtCoreApplication", qt, 3, "QCoreApplication:", applicationEntries},
    {"qtLocale", qt, 4, "QLocale", {}},
    {"qtScreens", qt, 5, "QScreen", screenEntries, &numberedDevices, screenNames},
    {"qtDesktop", qt, 6, "QDesktopWidget", {}},
    {"qtDesktopServices", qt, 7, "QDesktopServices", folderEntries},
    {"qtPrinterInfo", qt, 8, "QPrinterInfo", printerEntries},
    {"qtHostInfo", qt, 9, "QHostInfo", {}},
    {"network", qt, 10, "Network Interfaces Info", networkEntries, &interfaces},
    {environmentSection, qt, 11, "System environemnt (QProcess::systemEnvironment()):", {}},
    {openGLSection, qt, 12, "#### QGLFormat ####", openGLEntries},
};

int length(const char* text)
{
    return static_cast<int>(std::strlen(text));
}

/// Whether the line is this text, blanks at its end not counting: programs that send mail cut them off.
bool isLine(const QString& text, const Line& line, const char* ascii)
{
    return hasAt(text, line.begin, line.end, ascii) && isBlank(text, line.begin + length(ascii), line.end);
}

/// The first lines of sections by three of their characters, so that a line is compared with one or two of them.
class FirstLines
{
public:
    FirstLines();

    const SectionFormat* find(const QString& text, const Line& line, Half half) const;

private:
    static constexpr int shortest = 6;
    static constexpr int noRow = -1;

    struct Row
    {
        const char* text;
        bool isLabel; // the text and a colon begin the line, instead of being all of it
        const SectionFormat* format;
        int next; // of those with the same characters
    };

    void add(const char* text, bool isLabel, const SectionFormat& format);
    static unsigned slot(unsigned first, unsigned fifth, unsigned sixth)
    {
        return (first * 7 + fifth * 31 + sixth * 3) % slotCount;
    }
    static bool matches(const QString& text, const Line& line, const Row& row);

    static constexpr unsigned slotCount = 256;

    std::vector<Row> rows_;
    int slots_[slotCount];
};

FirstLines::FirstLines()
{
    std::fill(std::begin(slots_), std::end(slots_), noRow);
    for (const SectionFormat& format : formats) {
        if (format.heading != nullptr) {
            add(format.heading, false, format);
            continue;
        }
        for (const EntryFormat& entry : format.entries) {
            add(entry.label, true, format);
        }
    }
}

void FirstLines::add(const char* text, bool isLabel, const SectionFormat& format)
{
    const auto at = [text](int index) {
        // The colon behind a label of five characters is its sixth.
        return index < length(text) ? static_cast<unsigned char>(text[index]) : static_cast<unsigned>(':');
    };
    int& head = slots_[slot(at(0), at(4), at(5))];
    rows_.push_back({text, isLabel, &format, head});
    head = static_cast<int>(rows_.size()) - 1;
}

bool FirstLines::matches(const QString& text, const Line& line, const Row& row)
{
    if (!row.isLabel) {
        return isLine(text, line, row.text);
    }
    const int colonPosition = line.begin + length(row.text);
    return hasAt(text, line.begin, line.end, row.text) && colonPosition < line.end &&
           text.at(colonPosition) == QLatin1Char(':');
}

const SectionFormat* FirstLines::find(const QString& text, const Line& line, Half half) const
{
    if (line.end - line.begin < shortest) {
        return nullptr;
    }
    const QChar* const start = text.constData() + line.begin;
    for (int row = slots_[slot(start[0].unicode(), start[4].unicode(), start[5].unicode())]; row != noRow;
         row = rows_[std::size_t(row)].next) {
        const Row& candidate = rows_[std::size_t(row)];
        if (matches(text, line, candidate)) {
            const bool isForeign = half == Half::Windows && candidate.format->half == Half::Macintosh;
            return isForeign ? nullptr : candidate.format;
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

Line lineAt(const QString& text, int begin)
{
    const int lineFeed = text.indexOf(QLatin1Char('\n'), begin);
    if (lineFeed == -1) {
        return {begin, text.size(), text.size()};
    }
    const bool hasReturn = lineFeed > begin && text.at(lineFeed - 1) == QLatin1Char('\r');
    return {begin, hasReturn ? lineFeed - 1 : lineFeed, lineFeed + 1};
}

bool isSeparator(const QString& text, const Line& line)
{
    if (line.end - line.begin < separatorLength || text.at(line.begin) != QLatin1Char('-')) {
        return false;
    }
    const QChar* const first = text.constData() + line.begin;
    return std::all_of(first, first + separatorLength, [](QChar each) { return each == QLatin1Char('-'); }) &&
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

// A separator covers a position in 72, wherever it stands, so that no other character has to be looked at.
int lastSeparator(const QString& text, int begin, int end)
{
    const QChar* const characters = text.constData();
    const auto isHyphen = [&](int position) { return characters[position] == QLatin1Char('-'); };
    for (int probe = end - 1; probe >= begin; probe -= separatorLength) {
        if (!isHyphen(probe)) {
            continue;
        }
        while (probe > begin && isHyphen(probe - 1)) {
            --probe;
        }
        const bool beginsLine = probe == begin || characters[probe - 1] == QLatin1Char('\n');
        if (beginsLine && isSeparator(text, lineAt(text, probe)) && end - probe >= separatorLength) {
            return probe;
        }
    }
    return -1;
}

Table<SectionFormat> sectionFormats()
{
    return formats;
}

bool isSection(const SectionFormat* format, const char* name)
{
    return format != nullptr && std::strcmp(format->name, name) == 0;
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
