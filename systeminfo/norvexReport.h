#pragma once

/// @file
/// A report as a document: its sections, blocks and entries, JSON, what differs between two reports, and a report
/// without its private values.
///
/// Any text is a document. What this library or its Windows counterpart wrote is recognised; everything else
/// keeps its lines. CReport::text() gives back the text that CReport::fromText() took, whatever it holds.
///
/// All classes but CRedactor are values that share their data until they change, so a copy costs next to nothing. An
/// item keeps the data of its report alive. All functions look at nothing but the text and need no application object.
/// You may call them on any thread, and on one object on several at once, as long as none of them changes it.
/// std::bad_alloc passes through; nothing else is thrown.
///
/// A null object answers with empty texts and lists. Texts that are looked for, such as names, labels and paths, are
/// exact and case-sensitive. No call waits for anything; how long it takes depends on the length of the text alone.
///
/// A path names the same thing in every report:
///
///     cpuInfo/CPU vendor                              an entry of a section
///     listFileSystemVolumesInfo[/Volumes/data]/Free   an entry of a block
///     cpuInfo/CPU family#2                            the second entry of that label
///     qtSystemEnvironment/HOME                        a variable; qtSystemEnvironment[HOME] is the same
///
/// In the names of a path \c \, \c /, \c [ and \c ] have a backslash in front of them, but \c / needs none between the
/// brackets of a block. Of several neighbours with one name, the second has \c #2 behind it, the third \c #3, and so on.

#include "norvexExport.h"

#include <QScopedPointer>
#include <QSharedDataPointer>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

QT_FORWARD_DECLARE_CLASS(QJsonDocument)

namespace norvex {
namespace SystemInfo {

class CRedactorPrivate;
class CReport;
class CReportBlock;
class CReportDifferencePrivate;
class CReportEntry;
class CReportItemPrivate;
class CReportPrivate;
class CReportSection;

/// A piece of a report: one or several whole lines. The classes that are derived from this one add functions for their
/// type of piece; toSection(), toBlock() and toEntry() convert to them.
class NORVEX_SYSTEMINFO_EXPORT CReportItem
{
public:
    /// What a piece can be.
    enum Type {
        Null,      ///< nothing; the result of a search that found nothing
        Banner,    ///< the line that begins a half of the report
        Section,   ///< what a section function writes, see CReportSection
        Separator, ///< the line of 72 hyphens
        Block,     ///< the lines about one device, volume, interface or screen, see CReportBlock
        Entry,     ///< a label and its value, see CReportEntry
        Lines      ///< one or several lines that are none of these
    };

    /// A null item.
    CReportItem();
    /// The same piece of the same report.
    CReportItem(const CReportItem& other);
    /// Becomes the same piece of the same report.
    CReportItem& operator=(const CReportItem& other);
    ~CReportItem();

    /// What the piece is.
    Type type() const;
    /// Whether this is nothing, such as the result of a search that found nothing.
    bool isNull() const { return type() == Null; }

    /// The item's lines with their line ends, as they stand in the report.
    QString text() const;

    /// The path of a section, block or entry; empty for other items.
    QString path() const;

    /// This item as a section; a null item when it is none.
    CReportSection toSection() const;
    /// This item as a block; a null item when it is none.
    CReportBlock toBlock() const;
    /// This item as an entry; a null item when it is none.
    CReportEntry toEntry() const;

protected:
    friend class CReport;
    friend class CReportItemPrivate;

    /// Takes over the data of an item.
    explicit CReportItem(CReportItemPrivate* data);

    /// What a section or block contains.
    QVector<CReportItem> children() const;
    /// The first entry of that label among children(); a null entry when there is none.
    CReportEntry childEntry(const QString& label) const;

    /// The item's data, which copies share.
    QSharedDataPointer<CReportItemPrivate> d;
};

/// A label and its value. An entry that is a list, or a variable whose value has several lines, holds them all.
class NORVEX_SYSTEMINFO_EXPORT CReportEntry : public CReportItem
{
public:
    /// The label as printed, without indentation and colon; the name of a variable.
    QString label() const;

    /// The value without the blanks and apostrophes around it; the value of a variable unchanged; the values of a list
    /// with line feeds between them.
    QString value() const;

    /// Whether this is a list: library paths, addresses, printers.
    bool isList() const;

    /// The values of a list, which is empty for "<None>" and "<no address>"; for any other entry its one value.
    QStringList values() const;

    /// The numbers that the value shows, in their base units and rounded down; several only for the sizes of a screen.
    /// Empty when the value is not a size, a speed or a length, or when a number is negative or above 2^53.
    QVector<qint64> numbers() const;

    /// The unit of each of numbers(): "byte", "hertz", "millimetre", "inch" or "bit a second".
    QStringList units() const;

    /// Whether the value differs between two reports of one machine in one state: the date, the boot time, the
    /// process identifier, free space.
    bool isVolatile() const;
};

/// The lines about one device, volume, interface or screen.
class NORVEX_SYSTEMINFO_EXPORT CReportBlock : public CReportItem
{
public:
    /// What names the block: the first of these values that it has, or else number() in decimal. Disks: serial number,
    /// BSD name, model. Ethernet interfaces: BSD name, MAC address. Graphics cards: model. USB devices:
    /// VENDOR:PRODUCT\@LOCATION. Serial ports: device path. Volumes: path. Screens and network interfaces: name.
    QString name() const;

    /// The block's place among those of its section, counted from 1.
    int number() const;

    /// The entries and lines of the block in their order.
    QVector<CReportItem> content() const { return children(); }

    /// The first entry of that label; a null entry when there is none.
    CReportEntry entry(const QString& label) const { return childEntry(label); }
};

/// What one section function writes, or the lines of another program's section.
class NORVEX_SYSTEMINFO_EXPORT CReportSection : public CReportItem
{
public:
    /// The name in the table of sections; of a section that is not in the table its heading without the colon,
    /// or the label of its first line.
    QString name() const;

    /// Whether the section is in the table.
    bool isKnown() const;

    /// "macintosh", "windows" or "qt": where the table has the section, or else the banner above it; empty when
    /// there is none.
    QString half() const;

    /// The heading without its line end; empty when the section has none.
    QString heading() const;

    /// The blocks, entries and lines behind the heading in their order.
    QVector<CReportItem> content() const { return children(); }

    /// The blocks alone.
    QVector<CReportBlock> blocks() const;

    /// The first block of that name; a null block when there is none.
    CReportBlock block(const QString& name) const;

    /// The first entry of that label outside the blocks; a null entry when there is none.
    CReportEntry entry(const QString& label) const { return childEntry(label); }
};

/// One difference between an old report and a new one.
class NORVEX_SYSTEMINFO_EXPORT CReportDifference
{
public:
    /// How two reports differ at a path.
    enum Kind {
        Added,   ///< only the new report has it
        Removed, ///< only the old report has it
        Changed, ///< the value differs; of a section or block itself: its lines that are no entries differ
        Moved    ///< it stands at another place among its neighbours; a USB device: at another location
    };

    /// A difference without paths and values, of the kind Changed.
    CReportDifference();
    /// The same difference.
    CReportDifference(const CReportDifference& other);
    /// Becomes the same difference.
    CReportDifference& operator=(const CReportDifference& other);
    ~CReportDifference();

    /// How the reports differ.
    Kind kind() const;

    /// The path in the new report; for something removed the path in the old one.
    QString path() const;
    /// The path in the old report; empty for something added.
    QString oldPath() const;

    /// The path of the section that the difference is in.
    QString section() const;

    /// What the old report has: the value of an entry; the text of a section or block that was added or removed as a
    /// whole; of a section or block that changed, the lines that are no entries. Empty where the report has nothing, and
    /// for something that only moved.
    QString oldValue() const;
    /// The same for the new report.
    QString newValue() const;

    /// Whether this differs between two reports of one machine in one state: CReportEntry::isVolatile(), and the
    /// order of the environment.
    bool isVolatile() const;

private:
    friend class CReportDifferencePrivate;

    QSharedDataPointer<CReportDifferencePrivate> d;
};

/// The private values of reports and the fixed forms that stand for them, as docs/privacy.md describes them. Reports
/// that share a redactor have one form for one value. It keeps the values, so it is as private as the reports. One
/// redactor must not be used by two threads at once.
class NORVEX_SYSTEMINFO_EXPORT CRedactor
{
public:
    /// A redactor that knows no values yet.
    CRedactor();
    ~CRedactor();

    /// Learns the private values of a report. CReport::redacted() does so itself; call this first for each of several
    /// reports, so that a value that only one of them gives away is replaced in all of them, and so that no form
    /// that stands in one of them already gets a second meaning. After a std::bad_alloc the redactor still replaces
    /// what it knew before.
    void collect(const CReport& report);
    /// The same of a long report, with progress.
    /// @param goesOn is called with the percent that are done, in ascending order. When it returns false, the redactor
    ///        knows what stands up to there.
    void collect(const CReport& report, const std::function<bool(int percent)>& goesOn);

private:
    Q_DISABLE_COPY(CRedactor)
    friend class CReport;

    QScopedPointer<CRedactorPrivate> d;
};

/// A report.
class NORVEX_SYSTEMINFO_EXPORT CReport
{
public:
    /// A null report, which has no text.
    CReport();
    /// The same report.
    CReport(const CReport& other);
    /// Becomes the same report.
    CReport& operator=(const CReport& other);
    ~CReport();

    /// Reads any text as a report. It takes time in proportion to the text, a few milliseconds for a million
    /// characters, and shares the text; entries are looked for when they are asked for.
    static CReport fromText(const QString& text);

    /// The text that the report was read from, to the character.
    QString text() const;

    /// Whether the report was made by the default constructor or by a fromJson() that failed.
    bool isNull() const;

    /// Everything in the report's order: banners, sections, separators, and lines outside them. The lists of this
    /// class and of its parts hold an object for each item; they are made anew at each call.
    QVector<CReportItem> content() const;

    /// Gives `act` what content() lists, one after the other, until it returns false. This takes little memory, also
    /// for a report of millions of items.
    void visit(const std::function<bool(const CReportItem&)>& act) const;

    /// The sections alone.
    QVector<CReportSection> sections() const;

    /// The first section of that name; a null section when there is none.
    CReportSection section(const QString& name) const;

    /// The section, block or entry of that path; a null item when there is none.
    CReportItem item(const QString& path) const;

    /// The value of the entry of that path; empty when there is none.
    QString value(const QString& path) const;

    /// The report as JSON, as docs/json.md and docs/report.schema.json describe it. QJsonDocument::toJson() writes
    /// it down.
    /// @param[out] errorMessage receives the reason of a failure, and is cleared on success; may be null
    /// @return the document; a null one when the report has more than 64 Mi characters or a million lines, or more
    ///         than the QJsonDocument of a Qt before 5.15 can hold
    QJsonDocument toJson(QString* errorMessage = nullptr) const;

    /// Whether a text looks like JSON, so that QJsonDocument and fromJson() should read it, not fromText(). Such a text
    /// begins with "{" and a quotation mark; white space around "{" does not matter. No report begins like that.
    static bool isJson(const QString& text);

    /// The report that a JSON document holds, to the character: its texts one behind the other. Names, labels,
    /// values and numbers are made from the texts again, not read.
    /// @param json a document that toJson() has made, or another program by the rules of docs/json.md
    /// @param[out] errorMessage receives the reason of a failure with the place in the document, and is cleared on
    ///             success; may be null
    /// @return the report; a null one when the document is not what toJson() makes, or is beyond its limits
    static CReport fromJson(const QJsonDocument& json, QString* errorMessage = nullptr);

    /// What differs between this report, the old one, and another: sections in the order of the other report, those
    /// removed in front. Banners, separators, headings, line ends, and the numbers of blocks that have another name
    /// do not count. Of what was added or removed as a whole the parts are not listed.
    QVector<CReportDifference> compare(const CReport& newer) const;
    /// The same for long reports, which take seconds.
    /// @param goesOn is asked again and again whether to go on. When it returns false, the result is incomplete.
    QVector<CReportDifference> compare(const CReport& newer, const std::function<bool()>& goesOn) const;

    /// The report without its private values: each is replaced by a visible, fixed form, such as "SERIAL-1". Everything
    /// else stays to the character, and so does the number of lines, so that two reports can be shown line by line. A
    /// report that is redacted already stays as it is. In sections that are not in the table
    /// (CReportSection::isKnown()), known values and what its shape gives away is replaced; a person should read them.
    /// It takes time in proportion to the text.
    /// @param redactor learns the values of this report, and knows those of others that it has seen; stays yours. Null
    ///        stands for one that knows this report alone.
    /// @return the report; a null one for a null report
    CReport redacted(CRedactor* redactor = nullptr) const;
    /// The same for a long report, with progress.
    /// @param goesOn is called with the percent that are done, in ascending order. When it returns false, the result
    ///        is a null report, and the redactor keeps what it has learnt.
    CReport redacted(CRedactor* redactor, const std::function<bool(int percent)>& goesOn) const;

private:
    friend class CRedactor;

    QSharedDataPointer<CReportPrivate> d;
};

} // namespace SystemInfo
} // namespace norvex

Q_DECLARE_TYPEINFO(norvex::SystemInfo::CReport, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(norvex::SystemInfo::CReportItem, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(norvex::SystemInfo::CReportSection, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(norvex::SystemInfo::CReportBlock, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(norvex::SystemInfo::CReportEntry, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(norvex::SystemInfo::CReportDifference, Q_MOVABLE_TYPE);
