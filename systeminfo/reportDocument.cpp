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

    /// Gives `act` what stands in a section or block, one after the other, until it returns false.
    template <typename Act>
    static void visit(const CReportItemPrivate& parent, const Act& act);
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

bool SiblingNames::isGivenAsNumber(const QString& escaped) const
{
    const int sign = escaped.lastIndexOf(QLatin1Char('#'));
    const int number = escaped.mid(sign + 1).toInt();
    return sign != -1 && number > 1 && number <= counts_.value(escaped.left(sign)) &&
           escaped.midRef(sign + 1) == QString::number(number);
}

QString SiblingNames::add(const QString& name)
{
    // A name with a number is not kept: neighbours with one name may be millions.
    QString escaped = escape(name);
    int number = counts_.value(escaped);
    if (number == 0 && !isGivenAsNumber(escaped)) {
        counts_.insert(escaped, 1);
        return escaped;
    }
    number = qMax(number, 1);
    QString numbered;
    do {
        numbered = escaped + QLatin1Char('#') + QString::number(++number);
    } while (counts_.contains(numbered)); // the name of another one may look like this one's number
    counts_.insert(escaped, number);
    return numbered;
}

} // namespace Internal

Container CReportItemPrivate::container() const
{
    return type == CReportItem::Section ? contentOf(text, part, end) : contentOf(piece, *format);
}

template <typename Act>
void CReportItemPrivate::visit(const CReportItemPrivate& parent, const Act& act)
{
    if (parent.type != CReportItem::Section && parent.type != CReportItem::Block) {
        return;
    }
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
        if (!act(item(data))) {
            return;
        }
    }
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
    QVector<CReportItem> items;
    CReportItemPrivate::visit(*d, [&items](const CReportItem& item) {
        items.append(item);
        return true;
    });
    return items;
}

CReportEntry CReportItem::childEntry(const QString& label) const
{
    CReportEntry found;
    CReportItemPrivate::visit(*d, [&found, &label](const CReportItem& item) {
        const CReportEntry entry = item.toEntry();
        if (!entry.isNull() && entry.label() == label) {
            found = entry;
        }
        return found.isNull();
    });
    return found;
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
    CReportBlock found;
    CReportItemPrivate::visit(*d, [&found, &name](const CReportItem& item) {
        const CReportBlock block = item.toBlock();
        if (!block.isNull() && block.name() == name) {
            found = block;
        }
        return found.isNull();
    });
    return found;
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

void CReport::visit(const std::function<bool(const CReportItem&)>& act) const
{
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
        if (!act(CReportItemPrivate::item(data))) {
            return;
        }
    }
}

QVector<CReportItem> CReport::content() const
{
    QVector<CReportItem> items;
    visit([&items](const CReportItem& item) {
        items.append(item);
        return true;
    });
    return items;
}

QVector<CReportSection> CReport::sections() const
{
    QVector<CReportSection> sections;
    visit([&sections](const CReportItem& item) {
        if (item.type() == CReportItem::Section) {
            sections.append(item.toSection());
        }
        return true;
    });
    return sections;
}

CReportSection CReport::section(const QString& name) const
{
    CReportSection found;
    visit([&found, &name](const CReportItem& item) {
        const CReportSection section = item.toSection();
        if (!section.isNull() && section.name() == name) {
            found = section;
        }
        return found.isNull();
    });
    return found;
}

CReportItem CReport::item(const QString& path) const
{
    const QString wanted = canonicalPath(path);
    CReportItem found;
    // The first item whose path leads there is the only one that can.
    const auto leads = [&found, &wanted](const CReportItem& item) {
        if (!item.path().isEmpty() && leadsTo(wanted, item.path())) {
            found = item;
        }
        return found.isNull();
    };
    visit(leads);
    while (!found.isNull() && found.path() != wanted) {
        const CReportItem container = found;
        found = CReportItem();
        CReportItemPrivate::visit(*container.d, leads);
    }
    return found;
}

QString CReport::value(const QString& path) const
{
    return item(path).toEntry().value();
}

} // namespace norvex::SystemInfo
