#pragma once

/// @file
/// The system-information report of this machine, the sections that Qt answers, and the reader that finds hardware
/// identification values in a report.
///
/// A report is plain text. It consists of whole lines, each ended by one line feed, and a line of 72 hyphens follows
/// each group of sections. A section function asks Qt at the moment of the call, keeps nothing, and returns a new
/// string that you own. No section function fails: a value that Qt leaves empty prints as nothing behind its label.
/// Unless its description says otherwise, you may call a section function on any thread, on several at once, and
/// without an application object.
///
/// The functions throw nothing of their own. std::bad_alloc, and whatever else Qt throws, passes through. On Linux
/// qtHostInfo() and some Macintosh sections (see norvexSystemInfoMac.h) call libraries that end the process when memory
/// runs out.

#include "norvexExport.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace norvex {
namespace SystemInfo {

/// The line terminator of the report's frame and of its Qt sections: one line feed. Loading the library sets it.
/// Do not change it.
extern NORVEX_SYSTEMINFO_EXPORT QString sNewLine;

/// The whole report of this machine at this moment.
///
/// Its halves are the Macintosh section (MacSysInfo::allInfos()) and, behind the Qt banner, what Qt answers. sections()
/// lists the sections in their order; a separator() follows each group of them.
///
/// @param skipOpenGL true leaves out the OpenGL section with its separator, and creates no OpenGL object
/// @return the report. Its frame is always complete: a section that cannot be answered is short, never missing.
///
/// Call it on the application's GUI thread while the QApplication exists: otherwise the screen, desktop and OpenGL
/// sections describe nothing (see there). It takes milliseconds. What it may wait for, on Linux with these limits, are
/// file systems of servers and programs (2 seconds, see MacSysInfo::listFileSystemVolumesInfo()), the system bus
/// (0.2 s) and the print server (no limit of its own, see qtPrinterInfo()).
NORVEX_SYSTEMINFO_EXPORT QString allInfos(bool skipOpenGL);

/// The line behind a group of sections: 72 hyphens and sNewLine.
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

/// The application object that a section needs. Without it, the section stands in the report but says less.
enum class SectionApplication {
    None,   ///< needs none
    Gui,    ///< a QGuiApplication
    Widgets ///< a QApplication
};

/// A section of the report.
struct SectionInfo
{
    const char* name;               ///< of the section, such as "cpuInfo"; never changes
    ReportHalf half;                ///< the half that the section stands in
    int group;                      ///< a separator() follows each group; counts from 0 in each half
    const char* description;        ///< one line, in English
    QStringList topics;             ///< what the section is about, such as "cpu"; the main topic comes first
    SectionThread thread;           ///< the threads that may call text()
    SectionApplication application; ///< the application object that text() needs
    QString (*text)();              ///< makes the section: whole lines, without a separator
};

/// All sections of the report, in its order. allInfos() reads this table.
///
/// The topics are system, cpu, memory, disks, volumes, network, graphics, usb, serial, screens, printers, environment
/// and opengl.
///
/// @return the table, which the first call makes and which lives until the library is unloaded. Any thread.
NORVEX_SYSTEMINFO_EXPORT const QVector<SectionInfo>& sections();

/// The library's version numbers, the least significant first.
///
/// @param[out] a the patch number: 171 of version 1.2.171
/// @param[out] b the minor number: 2
/// @param[out] c the major number: 1
NORVEX_SYSTEMINFO_EXPORT void libVersion(int& a, int& b, int& c);

/// The library's version as people write it, the most significant number first, such as "1.2.171".
NORVEX_SYSTEMINFO_EXPORT QString libVersionString();

/// The name of the platform, exactly as MacSysInfo::platformName() gives it.
NORVEX_SYSTEMINFO_EXPORT QString platformName();

/// Reads the hardware identification values out of the text of a report.
///
/// The report may come from this library or from its Windows counterpart, with LF or CR LF line ends. A report with
/// the banners of both counts as a Windows report. The reader searches for the labels exactly as the reports have them,
/// letter case included; the first occurrence counts.
///
/// @param report the text of a report
/// @param skipBracedInterfaceNames true skips network interfaces whose name begins with "{" and ends with "}"
/// @param[in,out] macAddresses receives the MAC addresses (every "Hardware address" with exactly five colons) in the
///        report's order, behind what the list already holds. In a Macintosh report, interfaces named "awdl…" and
///        "p2p…" do not count, but "p2p0" itself does.
/// @param[out] numberOfProcessors receives the number of processors, from a Macintosh report the number of physical
///        cores; of a larger number its low 8 bits
/// @param[out] processorRevision receives the low 16 bits of the processor revision, from a Macintosh report those of
///        the CPU signature or, without one, of the CPU sub type
/// @param[out] errorMessage receives the reason of a failure, translated with the context QObject; untouched on success
/// @return true when the reader found all values. A number or revision with nothing but blanks behind its label (or
///        in front of a revision's first "=") stays as it was and counts as found. false at the first failure: a
///        banner, the network section, a label or a value is missing, the list of MAC addresses stays empty, or a
///        value is no decimal number (which sets it to 0). Values read before the failure stay written.
///
/// It reads nothing but its arguments. Any thread. The time is linear in the length of the report. std::bad_alloc
/// passes through.
NORVEX_SYSTEMINFO_EXPORT bool extractAccessKeyValues(const QString& report, bool skipBracedInterfaceNames,
                                                     QStringList& macAddresses,
                                                     unsigned char& numberOfProcessors,
                                                     unsigned short& processorRevision,
                                                     QString& errorMessage);

/// Date and time: the present moment in local time and in UTC ("dd.MM.yyyy hh:mm:ss"), and the bias in minutes. The
/// dates have the digits of the system's locale, such as Arabic or Persian ones; the bias always has 0 to 9. The bias
/// is UTC minus local time with daylight saving, so it is negative east of Greenwich. Source: QDateTime.
NORVEX_SYSTEMINFO_EXPORT QString qtDateTime();

/// Qt itself: the version that the library was compiled against and the version that runs, the platform, byte order,
/// word size and pointer size of this build. Source: the Qt headers of the build, qVersion().
NORVEX_SYSTEMINFO_EXPORT QString qtGlobal();

/// The application: version, name, folder, file, process id, organisation, and the library paths in a column.
/// Source: QCoreApplication. Without an application object Qt knows neither folder nor file, and logs a warning.
NORVEX_SYSTEMINFO_EXPORT QString qtCoreApplication();

/// The system's locale: country, language and measurement system. "unknown" stands for every measurement system but
/// the metric one and the imperial one of the United States. Source: QLocale::system().
NORVEX_SYSTEMINFO_EXPORT QString qtLocale();

/// The screens, numbered from 1: name, resolutions in dots per inch, pixel ratio, refresh rate in Hz, physical size in
/// millimetres and inches, size in pixels, colour depth in bits, and orientations as the numbers of
/// Qt::ScreenOrientation. A screen of unknown physical size prints 0 for it.
///
/// Source: QGuiApplication::screens(). Call it on the GUI thread. Without a screen or a QGuiApplication the section is
/// its heading alone.
NORVEX_SYSTEMINFO_EXPORT QString qtScreens();

/// The desktop: number of screens, primary screen, available and full size of each screen (numbered from 0) and of the
/// default screen (number -1) in pixels, and the size of the virtual desktop if the screens form one.
///
/// Source: QDesktopWidget. Call it on the GUI thread while a QApplication exists. Otherwise there is no desktop to ask:
/// the section is its heading alone, and a warning goes to the log. For an application without a screen the section
/// counts 0 screens and gives the default screen's sizes as 0.
NORVEX_SYSTEMINFO_EXPORT QString qtDesktop();

/// The user's standard folders, each with its path and its display name. The path is empty if Qt cannot determine it.
/// Source: QStandardPaths.
NORVEX_SYSTEMINFO_EXPORT QString qtDesktopServices();

/// The printers by name, the default printer marked; "    <None>" when there is none or no print server answers.
/// Source: QPrinterInfo. Call it on the GUI thread.
///
/// On Linux it asks the print server that CUPS is configured for, which may be another host, and has no limit of its
/// own: a server that accepts the connection and is silent keeps it, and allInfos() with it, waiting for two minutes
/// (122 s with CUPS 2.4). An application that cannot wait asks in another process and ends that.
NORVEX_SYSTEMINFO_EXPORT QString qtPrinterInfo();

/// The names of this host and of its domain; the domain is empty if none is configured. Source: QHostInfo. Without an
/// application object Qt logs a warning ("QObject::connect"). On Linux the C library's resolver, which Qt asks for the
/// domain, ends the process when memory runs out.
NORVEX_SYSTEMINFO_EXPORT QString qtHostInfo();

/// The environment of this process, a variable a line, in Qt's order. Source: QProcess::systemEnvironment(). Do not
/// change the environment on another thread during the call.
NORVEX_SYSTEMINFO_EXPORT QString qtSystemEnvironment();

} // namespace SystemInfo
} // namespace norvex
