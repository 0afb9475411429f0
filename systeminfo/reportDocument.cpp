#include "systeminfo/reportPrivate.h"
#include "systeminfo/reportQuantities.h"

namespace norvex::SystemInfo {

using namespace Internal;

/// An item with all that its functions need. It shares the report's text, so that it may outlive the report.
class CReportItemPrivate : public QSharedData
{
public:
    QString text;
    CReportItem::Type type = CReportItem::Null;
    QString path;
    int begin = 0;
    int end = 0;
    Part part = {0, Part::unknownFormat, Part::Lines,
                 Half::None};              // of what stands in no section, and of sections
    Piece piece = {};                      // of what stands in a section
    const SectionFormat* format = nullptr; // of the section, null for one in no table

    Container container() const;

    static CReportItem item(const CReportItemPrivate& data)
    {
        return CReportItem(new CReportItemPrivate(data));
    }
    static QVector<CReportItem> items(const CReportItemPrivate& parent);
};

namespace {

CReportItem::Type itemType(Part::Type type)
{
    switch (type) {
    case Part::Banner: return CReportItem::Banner;
    case Part::Section: return CReportItem::Section;
    case Part::Separator: return CReportItem::Separator;
    case Part::Lines: break;
    }
    return CReportItem::Lines;
}

CReportItem::Type itemType(Piece::Type type)
{
    switch (type) {
    case Piece::Block: return CReportItem::Block;
    case Piece::Entry: return CReportItem::Entry;
    case Piece::Lines: break;
    }
    return CReportItem::Lines;
}

/// Whether the path is that of the container or of something in it.
bool leadsTo(const QString& path, const QString& container)
{
    if (!path.startsWith(container)) {
        return false;
    }
    const QChar next = path.size() == container.size() ? QChar() : path.at(container.size());
    return next.isNull() || next == QLatin1Char('/') || next == QLatin1Char('[');
}

/// The path as path() writes it. A slash between brackets may have a backslash, and a variable may be written as a
/// block.
QString canonicalPath(const QString& path)
{
    QString canonical;
    bool isInBrackets = false;
    for (int i = 0; i < path.size(); ++i) {
        const QChar character = path.at(i);
        if (character == QLatin1Char('\\') && i + 1 < path.size()) {
            const QChar next = path.at(++i);
            if (!isInBrackets || next != QLatin1Char('/')) {
                canonical += character;
            }
            canonical += next;
            continue;
        }
        if (character == QLatin1Char('[') || character == QLatin1Char(']')) {
            isInBrackets = character == QLatin1Char('[');
        }
        canonical += character;
    }
    const QString begin = QLatin1String(environmentSection) + QLatin1Char('[');
    if (canonical.startsWith(begin) && canonical.endsWith(QLatin1Char(']'))) {
        canonical.chop(1);
        canonical[begin.size() - 1] = QLatin1Char('/');
    }
    return canonical;
}

} // namespace

namespace Internal {

QString SiblingNames::escape(const QString& name) const
{
    QString escaped;
    escaped.reserve(name.size());
    for (const QChar character : name) {
        if (character == QLatin1Char('\\') || character == QLatin1Char('[') ||
            character == QLatin1Char(']') || (character == QLatin1Char('/') && escaped_ == Elsewhere)) {
            escaped += QLatin1Char('\\');
        }
        escaped += character;
    }
    return escaped;
}

QString SiblingNames::add(const QString& name)
{
    QString escaped = escape(name);
    int number = ++counts_[escaped];
    if (number == 1) {
        return escaped;
    }
    // The name of another one may look like this one's number.
    QString numbered = escaped + QLatin1Char('#') + QString::number(number);
    while (counts_.contains(numbered)) {
        numbered = escaped + QLatin1Char('#') + QString::number(++number);
    }
    counts_[escaped] = number;
    counts_[numbered] = 1;
    return numbered;
}

} // namespace Internal

Container CReportItemPrivate::container() const
{
    return type == CReportItem::Section ? contentOf(text, part, end) : contentOf(piece, *format);
}

QVector<CReportItem> CReportItemPrivate::items(const CReportItemPrivate& parent)
{
    QVector<CReportItem> items;
    SiblingNames blocks(SiblingNames::InBrackets);
    SiblingNames entries(SiblingNames::Elsewhere);
    CReportItemPrivate data;
    data.text = parent.text;
    data.format = parent.format;
    PieceReader reader(data.text, parent.container());
    while (reader.next(data.piece)) {
        data.type = itemType(data.piece.type);
        data.begin = data.piece.begin;
        data.end = data.piece.end;
        data.path.clear();
        if (data.type == CReportItem::Block) {
            data.path = blockPath(parent.path, blocks.add(blockName(data.text, data.piece, *data.format)));
        } else if (data.type == CReportItem::Entry) {
            data.path = entryPath(parent.path, entries.add(labelOf(data.text, data.piece.entry)));
        }
        items.append(item(data));
    }
    return items;
}

CReportItem::CReportItem() : d(new CReportItemPrivate) {}

CReportItem::CReportItem(CReportItemPrivate* data) : d(data) {}

CReportItem::CReportItem(const CReportItem& other) = default;

CReportItem& CReportItem::operator=(const CReportItem& other) = default;

CReportItem::~CReportItem() = default;

CReportItem::Type CReportItem::type() const
{
    return d->type;
}

QString CReportItem::text() const
{
    return d->text.mid(d->begin, d->end - d->begin);
}

QString CReportItem::path() const
{
    return d->path;
}

CReportSection CReportItem::toSection() const
{
    CReportSection section;
    if (type() == Section) {
        section.d = d;
    }
    return section;
}

CReportBlock CReportItem::toBlock() const
{
    CReportBlock block;
    if (type() == Block) {
        block.d = d;
    }
    return block;
}

CReportEntry CReportItem::toEntry() const
{
    CReportEntry entry;
    if (type() == Entry) {
        entry.d = d;
    }
    return entry;
}

QVector<CReportItem> CReportItem::children() const
{
    const bool hasChildren = type() == Section || type() == Block;
    return hasChildren ? CReportItemPrivate::items(*d) : QVector<CReportItem>();
}

CReportEntry CReportItem::childEntry(const QString& label) const
{
    const QVector<CReportItem> items = children();
    for (const CReportItem& item : items) {
        CReportEntry entry = item.toEntry();
        if (!entry.isNull() && entry.label() == label) {
            return entry;
        }
    }
    return CReportEntry();
}

QString CReportEntry::label() const
{
    return labelOf(d->text, d->piece.entry);
}

QString CReportEntry::value() const
{
    return isNull() ? QString() : valueOf(d->text, d->piece, d->format);
}

bool CReportEntry::isList() const
{
    return Internal::isList(d->piece.entry);
}

QStringList CReportEntry::values() const
{
    return isNull() ? QStringList() : valuesOf(d->text, d->piece, d->format);
}

QVector<qint64> CReportEntry::numbers() const
{
    QVector<qint64> numbers;
    if (const EntryFormat* format = d->piece.entry.format) {
        const QVector<Quantity> quantities = quantitiesIn(value(), format->kind);
        for (const Quantity& quantity : quantities) {
            numbers.append(quantity.number);
        }
    }
    return numbers;
}

QStringList CReportEntry::units() const
{
    QStringList units;
    if (const EntryFormat* format = d->piece.entry.format) {
        const QVector<Quantity> quantities = quantitiesIn(value(), format->kind);
        for (const Quantity& quantity : quantities) {
            units.append(QLatin1String(quantity.unit));
        }
    }
    return units;
}

bool CReportEntry::isVolatile() const
{
    return d->piece.entry.format != nullptr && d->piece.entry.format->isVolatile;
}

QString CReportBlock::name() const
{
    return isNull() ? QString() : blockName(d->text, d->piece, *d->format);
}

int CReportBlock::number() const
{
    return d->piece.number;
}

QString CReportSection::name() const
{
    return isNull() ? QString() : sectionName(d->text, d->part, d->end);
}

bool CReportSection::isKnown() const
{
    return d->format != nullptr;
}

QString CReportSection::half() const
{
    return QLatin1String(halfName(halfOf(d->part)));
}

QString CReportSection::heading() const
{
    if (isNull()) {
        return QString();
    }
    const Line heading = headingOf(d->text, d->part, d->end);
    return d->text.mid(heading.begin, heading.end - heading.begin);
}

QVector<CReportBlock> CReportSection::blocks() const
{
    QVector<CReportBlock> blocks;
    const QVector<CReportItem> items = content();
    for (const CReportItem& item : items) {
        if (item.type() == Block) {
            blocks.append(item.toBlock());
        }
    }
    return blocks;
}

CReportBlock CReportSection::block(const QString& name) const
{
    const QVector<CReportBlock> all = blocks();
    for (const CReportBlock& block : all) {
        if (block.name() == name) {
            return block;
        }
    }
    return CReportBlock();
}

CReport::CReport() = default;

CReport::CReport(const CReport& other) = default;

CReport& CReport::operator=(const CReport& other) = default;

CReport::~CReport() = default;

CReport CReport::fromText(const QString& text)
{
    CReport report;
    report.d = new CReportPrivate(text);
    return report;
}

QString CReport::text() const
{
    return isNull() ? QString() : d->text;
}

bool CReport::isNull() const
{
    return !d.constData();
}

QVector<CReportItem> CReport::content() const
{
    QVector<CReportItem> items;
    SiblingNames names(SiblingNames::Elsewhere);
    for (int part = 0; !isNull() && part < d->parts.size(); ++part) {
        CReportItemPrivate data;
        data.text = d->text;
        data.part = d->parts.at(part);
        data.type = itemType(data.part.type);
        data.begin = data.part.begin;
        data.end = d->endOf(part);
        if (data.type == CReportItem::Section) {
            data.format = data.part.format();
            data.path = names.add(sectionName(data.text, data.part, data.end));
        }
        items.append(CReportItemPrivate::item(data));
    }
    return items;
}

QVector<CReportSection> CReport::sections() const
{
    QVector<CReportSection> sections;
    const QVector<CReportItem> items = content();
    for (const CReportItem& item : items) {
        if (item.type() == CReportItem::Section) {
            sections.append(item.toSection());
        }
    }
    return sections;
}

CReportSection CReport::section(const QString& name) const
{
    const QVector<CReportSection> all = sections();
    for (const CReportSection& section : all) {
        if (section.name() == name) {
            return section;
        }
    }
    return CReportSection();
}

CReportItem CReport::item(const QString& path) const
{
    const QString wanted = canonicalPath(path);
    QVector<CReportItem> items = content();
    for (int i = 0; i < items.size();) {
        const CReportItem item = items.at(i++);
        if (item.path().isEmpty() || !leadsTo(wanted, item.path())) {
            continue;
        }
        if (item.path() == wanted) {
            return item;
        }
        items = item.children();
        i = 0;
    }
    return CReportItem();
}

QString CReport::value(const QString& path) const
{
    return item(path).toEntry().value();
}

} // namespace norvex::SystemInfo
