#include "viewer/reportPrinting.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QLocale>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QSaveFile>

#include <algorithm>

namespace norvex {
namespace Viewer {

namespace {

const double largestFont = 9;
const double smallestFont = 5;
/// A report's widest lines of its own, the separators, and what most others need.
const int wantedColumns = 90;
/// Rows that go on with a line begin with a sign and are indented.
const int continuedIndent = 2;
const QChar continuedSign(0x21b3);
const double pageMarginMm = 15;

struct Words
{
    Q_DECLARE_TR_FUNCTIONS(norvex::Viewer::Words)
};

/// Text of a line as it is printed: a tabulator reaches to its column.
QString printedText(const TextLines& lines, int begin, int end)
{
    QString text = shownText(lines.text(), begin, end);
    if (!text.contains(QLatin1Char('\t'))) {
        return text;
    }
    QString printed;
    for (int i = 0; i < text.size(); ++i) {
        const bool isTab = text.at(i) == QLatin1Char('\t');
        const int column = isTab ? lines.columnAt(begin + i) : 0;
        const int blanks = TextLines::tabColumns - column % TextLines::tabColumns;
        printed += isTab ? QString(blanks, QLatin1Char(' ')) : QString(text.at(i));
    }
    return printed;
}

class Printing
{
public:
    Printing(const TextLines& lines, const QString& title, QPagedPaintDevice& device,
             const JobControl& control)
        : lines_(lines), title_(title), device_(device), control_(control),
          date_(QLocale().toString(QDateTime::currentDateTime(), QLocale::ShortFormat))
    {}

    QString print();

private:
    void measure();
    int rowsOf(int line) const;
    void countPages();
    bool printLine(int line);
    void printRow(int line, int row);
    bool startPage();
    void paintFrame();
    void abort();

    const TextLines& lines_;
    const QString title_;
    QPagedPaintDevice& device_;
    const JobControl& control_;
    const QString date_;
    QPainter painter_;
    QFont font_;
    qreal columnWidth_ = 1;
    qreal rowHeight_ = 1;
    qreal ascent_ = 0;
    int columns_ = 1;
    int rowsOnPage_ = 1;
    int pages_ = 1;
    int page_ = 0;
    int row_ = 0; // on the page
};

/// The largest font that leaves room for the columns.
void Printing::measure()
{
    font_ = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    for (double size = largestFont;; size -= 0.5) {
        font_.setPointSizeF(size);
        const QFontMetricsF metrics(font_, &device_);
        columnWidth_ = std::max(metrics.width(QLatin1Char('0')), qreal(1));
        rowHeight_ = std::max(metrics.lineSpacing(), qreal(1));
        ascent_ = metrics.ascent();
        columns_ = std::max(static_cast<int>(device_.width() / columnWidth_), continuedIndent + 1);
        if (columns_ >= wantedColumns || size <= smallestFont) {
            break;
        }
    }
    // Two rows above the text and two below it.
    rowsOnPage_ = std::max(static_cast<int>(device_.height() / rowHeight_) - 4, 1);
}

int Printing::rowsOf(int line) const
{
    const int width = lines_.columnAt(lines_.end(line));
    const int others = columns_ - continuedIndent;
    return width <= columns_ ? 1 : 1 + (width - columns_ + others - 1) / others;
}

void Printing::countPages()
{
    qint64 rows = 0;
    for (int line = 0; line < lines_.count() && !control_.isCancelled(); ++line) {
        rows += rowsOf(line);
    }
    pages_ = static_cast<int>(std::max<qint64>((rows + rowsOnPage_ - 1) / rowsOnPage_, 1));
}

QString Printing::print()
{
    if (!painter_.begin(&device_)) {
        return Words::tr("The printer cannot be used.");
    }
    measure();
    countPages();
    painter_.setFont(font_);
    paintFrame();
    for (int line = 0; line < lines_.count(); ++line) {
        const bool isPrinted = printLine(line);
        if (control_.isCancelled()) {
            abort();
            return QString();
        }
        if (!isPrinted) {
            return Words::tr("The printer did not begin page %1.").arg(page_ + 2);
        }
    }
    return painter_.end() ? QString() : Words::tr("The printer did not finish.");
}

/// A printer gets nothing of a document that is given up while it is painted.
void Printing::abort()
{
    if (auto* const printer = dynamic_cast<QPrinter*>(&device_)) {
        printer->abort();
    }
}

bool Printing::printLine(int line)
{
    const int rows = rowsOf(line);
    for (int row = 0; row < rows && !control_.isCancelled(); ++row) {
        if (row_ == rowsOnPage_ && !startPage()) {
            return false;
        }
        printRow(line, row);
    }
    return true;
}

void Printing::printRow(int line, int row)
{
    const int others = columns_ - continuedIndent;
    const int first = row == 0 ? 0 : columns_ + (row - 1) * others;
    const int begin = row == 0 ? lines_.begin(line) : lines_.offsetAt(line, first);
    const int end = lines_.offsetAt(line, first + (row == 0 ? columns_ : others));
    const qreal y = (2 + row_) * rowHeight_ + ascent_;
    if (row > 0) {
        painter_.drawText(QPointF(0, y), continuedSign);
    }
    painter_.drawText(QPointF(row == 0 ? 0 : continuedIndent * columnWidth_, y),
                      printedText(lines_, begin, end));
    ++row_;
}

bool Printing::startPage()
{
    control_.setProgress(static_cast<int>(100LL * (page_ + 1) / pages_));
    if (!device_.newPage()) {
        return false;
    }
    ++page_;
    row_ = 0;
    paintFrame();
    return true;
}

void Printing::paintFrame()
{
    const qreal width = device_.width();
    const QFontMetricsF metrics(font_, &device_);
    const qreal dateWidth = metrics.width(date_);
    const QString title = metrics.elidedText(title_, Qt::ElideMiddle, width - dateWidth - 4 * columnWidth_);
    painter_.drawText(QPointF(0, ascent_), title);
    painter_.drawText(QPointF(width - dateWidth, ascent_), date_);
    const QString number = Words::tr("Page %1 of %2").arg(page_ + 1).arg(pages_);
    const qreal bottom = (2 + rowsOnPage_ + 1) * rowHeight_ + ascent_;
    painter_.drawText(QPointF(width - metrics.width(number), bottom), number);
    painter_.setPen(QPen(Qt::black, std::max(rowHeight_ / 20, qreal(1))));
    painter_.drawLine(QPointF(0, rowHeight_ * 1.3), QPointF(width, rowHeight_ * 1.3));
}

} // namespace

QString printText(const TextLines& lines, const QString& title, QPagedPaintDevice& device,
                  const JobControl& control)
{
    return Printing(lines, title, device, control).print();
}

QString exportPdf(const TextLines& lines, const QString& title, const QString& fileName,
                  const JobControl& control)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        return file.errorString();
    }
    QString reason;
    {
        QPdfWriter writer(&file);
        const bool hasLetters = QLocale().measurementSystem() == QLocale::ImperialUSSystem;
        writer.setPageSize(QPageSize(hasLetters ? QPageSize::Letter : QPageSize::A4));
        writer.setPageMargins(QMarginsF(pageMarginMm, pageMarginMm, pageMarginMm, pageMarginMm),
                              QPageLayout::Millimeter);
        writer.setTitle(title);
        writer.setCreator(QCoreApplication::applicationName());
        reason = printText(lines, title, writer, control);
    }
    if (!reason.isEmpty() || control.isCancelled()) {
        file.cancelWriting();
        return reason;
    }
    const bool isWritten = file.flush() && file.error() == QFileDevice::NoError && file.commit();
    return isWritten ? QString() : file.errorString();
}

} // namespace Viewer
} // namespace norvex
