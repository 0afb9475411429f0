#pragma once

/// @file
/// The system-information report of this machine, its sections that Qt can answer, and the reader that finds
/// hardware identification values in a report.
///
/// A report is plain text: whole lines, each ended by one line feed, a line of 72 hyphens behind each
/// section. Every section function asks Qt at the moment of the call, keeps nothing, and returns a new string
/// that the caller owns. None of them fails: a value that Qt leaves empty prints as nothing behind its label.
/// Unless its own description says otherwise a section may be called on any thread, without an application
/// object, and by several threads at once.

#include "norvexExport.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace norvex {
namespace SystemInfo {

/// The line terminator of the report's frame and of its Qt sections: one line feed. It is set when the
/// library is loaded; nobody writes it afterwards, and no caller may.
extern NORVEX_SYSTEMINFO_EXPORT QString sNewLine;

/// The whole report of this machine at this moment.
///
/// Its halves are the Macintosh section (MacSysInfo::allInfos()) and, behind the Qt banner, what Qt answers. sections()
/// lists the sections in their order; a separator() follows each group of them.
///
/// @param skipOpenGL true leaves the OpenGL section out, together with its separator, and creates nothing of
///        OpenGL.
/// @return the report. A section that cannot be answered is short, never missing, so the frame is always
///        complete.
///
/// Call it on the application's GUI thread while the QApplication exists: the screen, desktop and OpenGL
/// sections describe nothing otherwise (see there). An exception such as std::bad_alloc passes through.
NORVEX_SYSTEMINFO_EXPORT QString allInfos(bool skipOpenGL);

/// The line between two sections: 72 hyphens and sNewLine.
NORVEX_SYSTEMINFO_EXPORT QString separator();

/// The halves of a report, in its order. Each begins with its banner line.
enum class ReportHalf {
    Macintosh, ///< what macOS's own interfaces answer
    Qt         ///< what Qt answers
};

/// The threads that may call a section's function.
enum class SectionThread {
    Any, ///< any thread, several at once
    Gui  ///< the application's GUI thread
};

/// The application object that a section describes the machine with. Without it the section stands in the report all
/// the same, but says less.
enum class SectionApplication {
    None,   ///< needs none
    Gui,    ///< a QGuiApplication
    Widgets ///< a QApplication
};

/// A section of the report.
struct SectionInfo
{
    const char* name;               ///< of the function that makes it, such as "cpuInfo"; names never change
    ReportHalf half;                ///< where it stands
    int group;                      ///< a separator() stands behind each group; counts from 0 in each half
    const char* description;        ///< one line, English
    QStringList topics;             ///< what it is about, such as "cpu"; the first is the main one
    SectionThread thread;           ///< who may call text()
    SectionApplication application; ///< what text() needs
    QString (*text)();              ///< makes the section: whole lines, without a separator
};

/// All sections of the report, in its order. allInfos() is made from this table.
///
/// The topics are system, cpu, memory, disks, volumes, network, graphics, usb, serial, screens, printers, environment
/// and opengl.
///
/// @return the table, made by the first call; valid until the library is unloaded. Any thread. Only the first call
///        can throw (std::bad_alloc).
NORVEX_SYSTEMINFO_EXPORT const QVector<SectionInfo>& sections();

/// The library's version numbers, the least significant first.
///
/// @param[out] a the patch number, 171
/// @param[out] b the minor number, 2
/// @param[out] c the major number, 1
NORVEX_SYSTEMINFO_EXPORT void libVersion(int& a, int& b, int& c);

/// The library's version as it is written, the most significant number first: "1.2.171".
NORVEX_SYSTEMINFO_EXPORT QString libVersionString();

/// The name of the platform, exactly as MacSysInfo::platformName() gives it.
NORVEX_SYSTEMINFO_EXPORT QString platformName();

/// Reads the hardware identification values out of the text of a report.
///
/// The report may come from this library or from its Windows counterpart, and may have LF or CR LF line ends.
/// A report that holds the banners of both is read as a Windows report. Values are found by exact,
/// case-sensitive search for the texts that the writers produce; the first occurrence counts.
///
/// @param report the text of a report
/// @param skipBracedInterfaceNames true leaves out network interfaces whose name begins with "{" and ends
///        with "}"
/// @param[in,out] macAddresses receives the MAC addresses (every "Hardware address" with exactly five colons)
///        in the report's order, behind what the list already holds. Of a Macintosh report interfaces named
///        "awdl…" and "p2p…" are left out, "p2p0" itself is not.
/// @param[out] numberOfProcessors receives the number of processors, of a Macintosh report the number of
///        physical cores; of a larger number its low 8 bits
/// @param[out] processorRevision receives the low 16 bits of the processor revision, of a Macintosh report
///        those of the CPU signature or, where it has none, the CPU sub type
/// @param[out] errorMessage receives the reason of a failure, translated with the context QObject; untouched
///        on success
/// @return true when all values were read. Where the report holds nothing but blanks behind the label, or in
///        front of a revision's first "=", the number or revision stays as it was and counts as read. false
///        at the first failure: a banner, the network section, a label or a value is missing, no MAC address
///        was found while the list is empty, or a value is no decimal number (then the value is set to 0).
///        What was read until then stays written.
///
/// It looks at nothing but its arguments and may be called on any thread.
NORVEX_SYSTEMINFO_EXPORT bool extractAccessKeyValues(const QString& report, bool skipBracedInterfaceNames,
                                                     QStringList& macAddresses,
                                                     unsigned char& numberOfProcessors,
                                                     unsigned short& processorRevision,
                                                     QString& errorMessage);

/// Date and time: the present moment in local time and in UTC ("dd.MM.yyyy hh:mm:ss"), and the bias in
/// minutes, UTC minus local time with the daylight-saving shift in force, so that it is negative east of
/// Greenwich. Source: QDateTime.
NORVEX_SYSTEMINFO_EXPORT QString qtDateTime();

/// Qt itself: the version compiled against and the version running, the platform and byte order of this
/// build, and its word and pointer sizes. Source: the Qt headers of the build, qVersion().
NORVEX_SYSTEMINFO_EXPORT QString qtGlobal();

/// The application: version, name, folder, file, process id, organisation, and the library paths in a column.
/// Source: QCoreApplication. Without an application object Qt knows neither folder nor file and says so in
/// its warning log.
NORVEX_SYSTEMINFO_EXPORT QString qtCoreApplication();

/// The system's locale: country, language and measurement system; "unknown" stands for every measurement
/// system but the metric and the imperial one of the United States. Source: QLocale::system().
NORVEX_SYSTEMINFO_EXPORT QString qtLocale();

/// The screens, numbered from 1: name, resolutions in dots per inch, pixel ratio, refresh rate in Hz,
/// physical size in millimetres and inches, size in pixels, colour depth in bits, and orientations as the
/// numbers of Qt::ScreenOrientation. A screen without a known physical size prints 0 for it.
///
/// Source: QGuiApplication::screens(). To be called on the GUI thread. Without screens, so also without a
/// QGuiApplication, the section is its heading alone.
NORVEX_SYSTEMINFO_EXPORT QString qtScreens();

/// The desktop: number of screens, primary screen, available and full size of each screen (numbered from 0)
/// and of the default screen (number -1) in pixels, and the size of the virtual desktop where the screens
/// form one.
///
/// Source: QDesktopWidget. To be called on the GUI thread while a QApplication exists; otherwise there is no
/// desktop to ask, so the section is its heading alone and a warning is logged. Where the application has no
/// screen the section counts 0 screens and gives the default screen's sizes as 0.
NORVEX_SYSTEMINFO_EXPORT QString qtDesktop();

/// The user's standard folders, each with its path and its display name; a folder that Qt cannot determine
/// has an empty path. Source: QStandardPaths.
NORVEX_SYSTEMINFO_EXPORT QString qtDesktopServices();

/// The printers by name, the default printer marked; "    <None>" when there is none. Source: QPrinterInfo,
/// which may ask a print server on the network. To be called on the GUI thread.
NORVEX_SYSTEMINFO_EXPORT QString qtPrinterInfo();

/// The names of this host and of its domain; the domain is empty where none is configured. Source: QHostInfo.
NORVEX_SYSTEMINFO_EXPORT QString qtHostInfo();

/// The environment of this process, a variable a line, in Qt's order. Source: QProcess::systemEnvironment().
/// Nobody may change the environment during the call.
NORVEX_SYSTEMINFO_EXPORT QString qtSystemEnvironment();

} // namespace SystemInfo
} // namespace norvex
