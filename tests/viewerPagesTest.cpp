#include "viewer/comparisonPage.h"
#include "viewer/mainWindow.h"
#include "viewer/overviewItems.h"
#include "viewer/overviewPage.h"
#include "viewer/reportPrinting.h"
#include "viewer/reportTextView.h"

#include "tests/freezeWatch.h"

#include <QtTest>
#include <QtWidgets>

#include <csignal>

#include <sys/resource.h>

using namespace norvex;
using namespace norvex::Viewer;
using SystemInfo::CReport;

namespace {

const char data[] = NORVEX_TEST_DATA "/viewer/";
const int mostMs = 20000;

/// Two reports of a laptop, the later one in front.
void openLaptops(MainWindow& window)
{
    window.show();
    for (const char* name : {"laptop.txt", "laptopLater.txt"}) {
        window.openFile(QLatin1String(data) + QLatin1String(name));
    }
}

QString contentOf(const QString& name)
{
    QFile file(QLatin1String(data) + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

CReport reportIn(const QString& name)
{
    return CReport::fromText(contentOf(name));
}

bool show(OverviewPage& page, const CReport& report)
{
    QSignalSpy shown(&page, &OverviewPage::shown);
    page.setReport(report);
    return shown.wait(mostMs) && QTest::qWaitForWindowExposed(&page);
}

bool show(ComparisonPage& page, const CReport& older, const CReport& newer, bool isRedacted = false)
{
    QSignalSpy shown(&page, &ComparisonPage::shown);
    page.compare(older, QStringLiteral("old"), newer, QStringLiteral("new"), isRedacted);
    return shown.wait(mostMs) && QTest::qWaitForWindowExposed(&page);
}

/// What a page shows, in its order: what a screen reader says of each picture, and the path that it leads to.
QString wordsOf(const OverviewPage& page)
{
    QString words;
    for (const QWidget* const widget : page.widget()->findChildren<QWidget*>()) {
        if (const auto* const item = qobject_cast<const OverviewItem*>(widget)) {
            words += item->accessibleName() + QLatin1String(" -> ") + item->path() + QLatin1Char('\n');
        } else if (const auto* const label = qobject_cast<const QLabel*>(widget)) {
            words += label->text() + QLatin1Char('\n');
        }
    }
    return words;
}

/// The rows of a tree; those of folded branches are left out.
QString rowsOf(const QTreeView& tree)
{
    QString rows;
    for (QModelIndex index = tree.model()->index(0, 0); index.isValid(); index = tree.indexBelow(index)) {
        QStringList cells;
        for (int column = 0; column < ComparisonModel::columns; ++column) {
            cells += index.sibling(index.row(), column).data().toString();
        }
        for (QModelIndex branch = index.parent(); branch.isValid(); branch = branch.parent()) {
            cells[0].prepend(QLatin1String("  "));
        }
        rows += cells.join(QLatin1String(" | ")) + QLatin1Char('\n');
    }
    return rows;
}

/// Keeps the texts that are painted, a list for each page.
class Paper : public QPdfWriter
{
public:
    explicit Paper(int mostPages = 1000) : QPdfWriter(QString()), mostPages_(mostPages), pages(1) {}

    bool newPage() override
    {
        pages.append(QStringList());
        return pages.size() < mostPages_;
    }
    QPaintEngine* paintEngine() const override { return &engine_; }

private:
    const int mostPages_;

public:
    QVector<QStringList> pages;
    bool isAllInside = true;

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth: return 1000;
        case PdmHeight: return 500;
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY: return 144;
        default: return QPdfWriter::metric(metric);
        }
    }

private:
    class Engine : public QPaintEngine
    {
    public:
        explicit Engine(Paper* paper) : QPaintEngine(AllFeatures), paper_(paper) {}
        bool begin(QPaintDevice* /*device*/) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState& /*state*/) override {}
        void drawPixmap(const QRectF& /*to*/, const QPixmap& /*map*/, const QRectF& /*from*/) override {}
        void drawPath(const QPainterPath& /*path*/) override {}
        void drawPolygon(const QPointF* /*points*/, int /*count*/, PolygonDrawMode /*mode*/) override {}
        Type type() const override { return User; }
        void drawTextItem(const QPointF& place, const QTextItem& item) override
        {
            const bool fits = place.x() >= 0 && place.x() + item.width() <= 1001 && place.y() <= 500;
            paper_->isAllInside = paper_->isAllInside && fits;
            QStringList& texts = paper_->pages.last();
            const bool goesOn = place.y() == y_ && !texts.isEmpty();
            y_ = place.y();
            if (goesOn) {
                texts.last() += QLatin1Char('|') + item.text();
            } else {
                texts += item.text();
            }
        }

    private:
        Paper* const paper_;
        qreal y_ = -1;
    };

    mutable Engine engine_{this};
};

/// Runs a job's work to its end.
template <typename Work>
QString run(const Work& work)
{
    QString result;
    QEventLoop loop;
    const auto shared = std::make_shared<QString>();
    new Job(
        &loop, [shared, work](const JobControl& control) { *shared = work(control); },
        [&loop](bool) { loop.quit(); });
    loop.exec();
    return *shared;
}

} // namespace

class ViewerPagesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<ComparisonPage::Side>("Side"); }
    /// What runs on must not meet static objects that are gone.
    void cleanupTestCase() { QVERIFY(waitForJobs(mostMs)); }

    void overview_data()
    {
        QTest::addColumn<QString>("report");
        for (const char* name : {"laptop", "odd", "registryOnly", "windows", "nothing"}) {
            QTest::newRow(name) << QString::fromLatin1(name);
        }
    }

    void overview()
    {
        QFETCH(QString, report);
        OverviewPage page;
        page.show();
        const CReport read = reportIn(report + QLatin1String(".txt"));
        QVERIFY(show(page, read));
        QCOMPARE(wordsOf(page), contentOf(report + QLatin1String(".overview")));
        for (const OverviewItem* const item : page.findChildren<OverviewItem*>()) {
            QVERIFY2(!item->isEnabled() || !read.item(item->path()).isNull(),
                     qPrintable(item->accessibleName()));
            QCOMPARE(QAccessible::queryAccessibleInterface(const_cast<OverviewItem*>(item))->role(),
                     QAccessible::Button);
        }
    }

    /// The part of a bar that is filled is the part of the volume that is used.
    void volumeBars()
    {
        OverviewPage page;
        page.resize(1000, 800);
        page.show();
        QVERIFY(show(page, reportIn(QStringLiteral("laptop.txt"))));
        const double used[] = {1 - 31250000 / 488241370.0, 1 - 42117893 / 121783264.0, 1 - 976100 / 976562.0};
        const auto volumes = page.findChildren<VolumeItem*>();
        QCOMPARE(volumes.size(), 4);
        const QRgb accent = page.palette().color(QPalette::Highlight).rgb();
        int widest = 0; // of the bars, which are equal
        QVector<int> filled;
        for (VolumeItem* const volume : volumes) {
            const QImage image = volume->grab().toImage();
            const int y = image.height() / 2;
            int pixels = 0;
            for (int x = 0; x < image.width(); ++x) {
                pixels += image.pixel(x, y) == accent ? 1 : 0;
            }
            filled.append(pixels);
            widest = std::max(widest, pixels);
        }
        const double width = widest / used[0];
        for (int i = 0; i < 3; ++i) {
            QVERIFY2(qAbs(filled.at(i) - used[i] * width) <= 2, qPrintable(QString::number(filled.at(i))));
        }
        QCOMPARE(filled.at(3), 0);
    }

    void screensAreToScale_data()
    {
        QTest::addColumn<QVector<QSize>>("screens");
        QTest::addColumn<QVector<QSize>>("pictures");
        using Sizes = QVector<QSize>;
        QTest::newRow("none") << Sizes() << Sizes();
        QTest::newRow("wide and high") << Sizes{{2000, 1000}, {500, 1000}} << Sizes{{200, 100}, {50, 100}};
        QTest::newRow("high alone") << Sizes{{1000, 2000}} << Sizes{{50, 100}};
        QTest::newRow("a speck") << Sizes{{2000, 1000}, {10, 20}} << Sizes{{200, 100}, {15, 15}};
        QTest::newRow("unknown") << Sizes{QSize(), {2000, 1000}} << Sizes{{100, 50}, {200, 100}};
    }

    void screensAreToScale()
    {
        QFETCH(QVector<QSize>, screens);
        QFETCH(QVector<QSize>, pictures);
        QVector<Overview::Screen> described;
        for (const QSize& size : screens) {
            Overview::Screen screen;
            screen.size = size;
            described.append(screen);
        }
        QCOMPARE(screenPictureSizes(described, QSize(200, 100), 15), pictures);
    }

    void overviewByKeysAndMouse()
    {
        OverviewPage page;
        page.resize(500, 300);
        page.show();
        page.activateWindow();
        QVERIFY(show(page, reportIn(QStringLiteral("laptop.txt"))));
        QVERIFY(QTest::qWaitForWindowActive(&page));
        QSignalSpy activated(&page, &OverviewPage::activated);
        const auto press = [&page](Qt::Key key) { QTest::keyClick(page.focusWidget(), key); };
        const auto focused = [] {
            return QApplication::focusWidget()->accessibleName().section(QLatin1Char(','), 0, 0);
        };

        QTRY_VERIFY(page.verticalScrollBar()->maximum() > 0);
        page.setFocus();
        QTRY_VERIFY(page.findChild<TitleItem*>()->hasFocus());
        press(Qt::Key_Tab); // the facts
        press(Qt::Key_Tab);
        QCOMPARE(focused(), QStringLiteral("/Volumes/Archive"));
        press(Qt::Key_Up); // there is none above
        press(Qt::Key_Down);
        QCOMPARE(focused(), QStringLiteral("/Volumes/Macintosh HD"));
        press(Qt::Key_Return);
        press(Qt::Key_Tab);
        press(Qt::Key_Right);
        QCOMPARE(focused(), QStringLiteral("Meridian 27Q"));
        const QRect seen(QPoint(), page.viewport()->size());
        QWidget* const screen = QApplication::focusWidget();
        QVERIFY(seen.contains(screen->mapTo(page.viewport(), screen->rect().center())));
        press(Qt::Key_Backtab); // the volume that it came from
        QCOMPARE(focused(), QStringLiteral("/Volumes/Macintosh HD"));
        QTest::mouseClick(page.findChildren<InterfaceItem*>().at(1), Qt::LeftButton);
        QCOMPARE(activated.size(), 2);
        QCOMPARE(activated.at(0).at(0).toString(),
                 QStringLiteral("listFileSystemVolumesInfo[/Volumes/Macintosh HD]"));
        QCOMPARE(activated.at(1).at(0).toString(), QStringLiteral("network[en0]"));
    }

    /// Texts of megabytes and thousands of things take no time in the window.
    void hostileOverview()
    {
        QString text = contentOf(QStringLiteral("laptop.txt"));
        text.replace(QLatin1String("MacBookPro11,3"), QString(3 << 20, QLatin1Char('M')));
        QString volumes;
        for (int i = 0; i < 20000; ++i) {
            volumes += QStringLiteral("/Volumes/%1\n  Size:             1.0 GB\n").arg(i);
        }
        text.insert(text.indexOf(QLatin1String("/Volumes/Archive")),
                    volumes + QString(2 << 20, QLatin1Char('/')));
        const CReport report = CReport::fromText(text);
        OverviewPage page;
        page.show();
        FreezeWatch watch;
        QVERIFY(show(page, report));
        QVERIFY2(watch.longest() < longestFreezeMs, qPrintable(QString::number(watch.longest())));
        QCOMPARE(page.findChildren<VolumeItem*>().size(), 200);
        QVERIFY(
            wordsOf(page).contains(QLatin1String("19804 more in the report -> listFileSystemVolumesInfo\n")));
        QVERIFY(wordsOf(page).size() < 100000);
    }

    void comparison()
    {
        ComparisonPage page;
        page.show();
        QVERIFY(
            show(page, reportIn(QStringLiteral("laptop.txt")), reportIn(QStringLiteral("laptopLater.txt"))));
        QCOMPARE(rowsOf(*page.tree()), contentOf(QStringLiteral("laptop.differences")));
        QCOMPARE(page.findChild<QLabel*>(QStringLiteral("summary"))->text(),
                 QStringLiteral("7 changed, 2 added, 4 removed, 8 expected to differ"));
    }

    void comparisonByKeys()
    {
        ComparisonPage page;
        page.show();
        page.activateWindow();
        QVERIFY(
            show(page, reportIn(QStringLiteral("laptop.txt")), reportIn(QStringLiteral("laptopLater.txt"))));
        QVERIFY(QTest::qWaitForWindowActive(&page));
        QTreeView* const tree = page.tree();
        tree->setFocus();
        const auto current = [tree] {
            return tree->currentIndex().sibling(tree->currentIndex().row(), 0).data().toString();
        };
        QCOMPARE(current(), QStringLiteral("MacOS version"));
        QStringList seen(current());
        while (page.nextAction()->isEnabled() && seen.size() < 100) {
            QTest::keyClick(tree, Qt::Key_F7);
            seen += current();
        }
        QCOMPARE(seen.size(), 13); // what is expected to differ is folded away
        QCOMPARE(current(), QStringLiteral("ORCHARD_TRACE"));
        QCOMPARE(page.findChild<QPlainTextEdit*>(QStringLiteral("oldValue"))->toPlainText(), QString());
        QCOMPARE(page.findChild<QPlainTextEdit*>(QStringLiteral("newValue"))->toPlainText(),
                 QStringLiteral("1"));
        QTest::keyClick(tree, Qt::Key_F7, Qt::ShiftModifier);
        QCOMPARE(current(), QStringLiteral("Addresses"));
        QSignalSpy activated(&page, &ComparisonPage::activated);
        QTest::keyClick(tree, Qt::Key_Return);
        QCOMPARE(activated.size(), 1);
        QCOMPARE(activated.at(0).at(1).toString(), QStringLiteral("network[en0]/Addresses"));

        QTest::keyClick(tree, Qt::Key_End);
        QTest::keyClick(tree, Qt::Key_Right);
        QVERIFY(page.nextAction()->isEnabled());
        QTest::keyClick(tree, Qt::Key_F7);
        QCOMPARE(current(), QStringLiteral("Kernel information › Boottime"));

        // In a small page the summary has a row of its own, both sides are seen, and the first value of a section comes with its heading.
        page.resize(page.minimumSizeHint().width(), 300);
        QVERIFY(page.findChild<QLabel*>(QStringLiteral("summary"))->width() > page.width() * 3 / 4);
        page.resize(500, 300);
        QCOMPARE(tree->horizontalScrollBar()->maximum(), 0);
        while (page.previousAction()->isEnabled()) {
            page.previousAction()->trigger();
        }
        QVERIFY(tree->visualRect(tree->currentIndex().parent()).top() >= 0);
    }

    void noDifference()
    {
        ComparisonPage page;
        page.show();
        const CReport report = reportIn(QStringLiteral("laptop.txt"));
        const auto text = [&page](const char* name) {
            return page.findChild<QLabel*>(QLatin1String(name))->text();
        };
        auto* const showThem = page.findChild<QPushButton*>(QStringLiteral("showExpected"));
        QVERIFY(show(page, report, report));
        QCOMPARE(text("messageText"), QStringLiteral("Both reports say the same."));
        QVERIFY(!showThem->isVisible());

        const QString later = report.text().replace(QLatin1String("10:42:08"), QLatin1String("10:42:09"));
        QVERIFY(show(page, report, CReport::fromText(later)));
        QVERIFY(text("messageText").endsWith(QLatin1String(": 1.")));
        QTest::mouseClick(showThem, Qt::LeftButton);
        QVERIFY(page.tree()->isVisible());
        QVERIFY(page.tree()->currentIndex().data().toString().endsWith(QLatin1String("Local Date and Time")));
    }

    void comparisonWithoutPrivateData()
    {
        const CReport report = reportIn(QStringLiteral("laptop.txt"));
        const QString other =
            report.text().replace(QLatin1String("3882DF5A9C05"), QLatin1String("3882DF5A9C06"));
        ComparisonPage page;
        page.show();
        QVERIFY(show(page, report, CReport::fromText(other), true));
        const QString rows = rowsOf(*page.tree());
        QVERIFY2(rows.contains(QLatin1String("changed")) && !rows.contains(QLatin1String("3882DF5A9C")),
                 qPrintable(rows));
    }

    /// A comparison of many differences keeps the window alive, and shows as many as anybody reads.
    void largeComparison()
    {
        QString older;
        QString newer;
        for (int i = 0; i < 100000; ++i) {
            older += QStringLiteral("  label %1: old\n").arg(i);
            newer += QStringLiteral("  label %1: new\n").arg(i);
        }
        const QString banner =
            QStringLiteral("###### System informations retrieved using Qt #######\nheading:\n");
        ComparisonPage page;
        page.show();
        FreezeWatch watch;
        QVERIFY(show(page, CReport::fromText(banner + older), CReport::fromText(banner + newer)));
        QVERIFY2(watch.longest() < longestFreezeMs, qPrintable(QString::number(watch.longest())));
        QCOMPARE(page.tree()->model()->index(1, 0).data().toString(),
                 QStringLiteral("80000 more differences are not shown"));
        // All of the text as one difference.
        QVERIFY(show(page, CReport::fromText(older), CReport::fromText(QString(5 << 20, QLatin1Char('x')))));
        QVERIFY2(watch.longest() < longestFreezeMs, qPrintable(QString::number(watch.longest())));
        QVERIFY(page.findChild<QPlainTextEdit*>(QStringLiteral("oldValue"))->toPlainText().size() < 21000);
    }

    void cancelledComparison()
    {
        const CReport report = CReport::fromText(QStringLiteral("a: b\n").repeated(2000000));
        ComparisonPage page;
        page.show();
        QSignalSpy shown(&page, &ComparisonPage::shown);
        page.compare(report, QString(), CReport::fromText(report.text() + QLatin1Char('c')), QString(), true);
        auto* const cancel = page.findChild<QPushButton*>(QStringLiteral("cancelComparison"));
        QTRY_VERIFY(cancel->isVisible());
        QTest::mouseClick(cancel, Qt::LeftButton);
        QVERIFY(page.findChild<QLabel*>(QStringLiteral("messageText"))->isVisible());
        QVERIFY(!shown.wait(100));
    }

    /// Every character is printed once, in order, and long lines go on below with a sign.
    void printed()
    {
        const QString wide = QString::fromUtf8("\u6f22\u5b57").repeated(200);
        QString text = QStringLiteral("first\n\ttab\n") + QString(250, QLatin1Char('x')) + QLatin1Char('\n') +
                       wide + QLatin1Char('\n');
        for (int i = 0; i < 100; ++i) {
            text += QStringLiteral("line %1\n").arg(i);
        }
        const TextLines lines(text);
        Paper paper;
        QCOMPARE(run([&](const JobControl& control) {
                     return printText(lines, QStringLiteral("a title"), paper, control);
                 }),
                 QString());
        QString all;
        for (int i = 0; i < paper.pages.size(); ++i) {
            QStringList page = paper.pages.at(i);
            QVERIFY2(page.takeFirst().startsWith(QLatin1String("a title|")), qPrintable(QString::number(i)));
            const QString number = QStringLiteral("Page %1 of %2").arg(i + 1).arg(paper.pages.size());
            QVERIFY2(page.removeOne(number), qPrintable(number));
            all += page.join(QLatin1Char('\n')) + QLatin1Char('\n');
        }
        QVERIFY(paper.pages.size() > 3);
        QVERIFY(paper.isAllInside);
        const QString continuation = QLatin1Char('\n') + QString(QChar(0x21b3)) + QLatin1Char('|');
        QCOMPARE(all.count(continuation), qMax(2, (250 - 90) / 90) + 800 / 90);
        QCOMPARE(all.remove(continuation).remove(QLatin1Char('|')),
                 text.replace(QLatin1Char('\t'), QString(8, QLatin1Char(' '))));

        Paper little(2);
        QCOMPARE(run([&](const JobControl& control) { return printText(lines, QString(), little, control); }),
                 QStringLiteral("The printer did not begin page 2."));
    }

    void pdf()
    {
        QTemporaryDir folder;
        const TextLines lines(contentOf(QStringLiteral("laptop.txt")));
        const auto exportTo = [&](const QString& name) {
            return run([&](const JobControl& control) {
                return exportPdf(lines, QStringLiteral("laptop"), name, control);
            });
        };
        const QString name = folder.filePath(QStringLiteral("a.pdf"));
        QCOMPARE(exportTo(name), QString());
        QFile file(name);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QVERIFY(bytes.startsWith("%PDF-") && bytes.trimmed().endsWith("%%EOF"));
        QVERIFY(bytes.count("/Type /Page\n") >= 3);
        QVERIFY(!exportTo(folder.filePath(QStringLiteral("missing/a.pdf"))).isEmpty());

        // As on a full disk.
        signal(SIGXFSZ, SIG_IGN);
        rlimit limit = {};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &limit), 0);
        const rlim_t most = limit.rlim_cur;
        limit.rlim_cur = 10000;
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &limit), 0);
        const QString reason = exportTo(name);
        limit.rlim_cur = most;
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &limit), 0);
        QVERIFY(!reason.isEmpty());
        QCOMPARE(QFileInfo(name).size(), qint64(bytes.size()));
    }

    /// The window's own keys and menus lead to the pages, and from there to the lines.
    void pagesInTheWindow()
    {
        QSettings().clear();
        MainWindow window;
        openLaptops(window);
        ReportTab* const older = qobject_cast<ReportTab*>(window.tabs()->widget(0));
        ReportTab* const newer = window.currentTab();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QTRY_VERIFY(newer->shown().outline != nullptr);

        QTest::keyClick(newer->view(), Qt::Key_2, Qt::ControlModifier);
        QCOMPARE(newer->page(), ReportTab::OverviewPageNumber);
        QTRY_VERIFY(newer->findChild<InterfaceItem*>() != nullptr);
        newer->findChildren<InterfaceItem*>().at(1)->click();
        QCOMPARE(newer->page(), ReportTab::TextPage);
        const auto selected = [](ReportTab* tab) { return tab->selectedText(false); };
        QCOMPARE(selected(newer), QString(55, QLatin1Char('_')));
        QCOMPARE(newer->view()->lines().text().mid(newer->view()->selectionEnd() + 1, 4),
                 QStringLiteral("en0\n"));

        auto* const menu = window.findChild<QMenu*>(QStringLiteral("compareWith"));
        emit menu->aboutToShow();
        menu->actions().first()->trigger();
        QTRY_COMPARE(newer->comparison()->tree()->currentIndex().data().toString(),
                     QStringLiteral("MacOS version"));
        QTest::keyClick(newer->tree(), Qt::Key_F7);
        QTest::keyClick(newer->comparison()->tree(), Qt::Key_F7);
        QTest::keyClick(newer->comparison()->tree(), Qt::Key_Return);
        QCOMPARE(window.currentTab(), older);
        QCOMPARE(selected(older), QStringLiteral("/Volumes/Transfer"));

        QTemporaryDir folder;
        const QString name = folder.filePath(QStringLiteral("a.pdf"));
        window.exportPdf(name);
        QTRY_VERIFY(QFileInfo(name).size() > 1000);
    }

    /// Differences are copied without private data unless the user wants it, and the sides are swapped.
    void comparisonInTheWindow()
    {
        QSettings().clear();
        MainWindow window;
        openLaptops(window);
        ReportTab* const older = qobject_cast<ReportTab*>(window.tabs()->widget(0));
        ReportTab* const newer = window.currentTab();
        window.compareWith(older);
        QTRY_VERIFY(newer->comparison()->nextAction()->isEnabled());

        const auto trigger = [&window](const char* name) {
            window.findChild<QAction*>(QLatin1String(name))->trigger();
        };
        QClipboard& clipboard = *QApplication::clipboard();
        trigger("copyDifferences");
        QTRY_VERIFY(clipboard.text().contains(QStringLiteral(
            "\n  MacOS version (changed)\n    - 10.10.3 (Yosemite)\n    + 10.10.5 (Yosemite)\n\nKernel")));
        QVERIFY(clipboard.text().contains(QStringLiteral("    - /Volumes/Volume 2\n")));
        QVERIFY(!clipboard.text().contains(QStringLiteral("Transfer")) &&
                !clipboard.text().contains(QStringLiteral("laptop")));
        trigger("shareWithoutPrivateData");
        trigger("swapCompared");
        QTRY_COMPARE(newer->comparison()->tree()->model()->headerData(2, Qt::Horizontal).toString(),
                     QStringLiteral("laptopLater.txt"));
        trigger("copyDifferences");
        QTRY_VERIFY(clipboard.text().contains(QStringLiteral("    + /Volumes/Transfer\n")));
        newer->comparison()->tree()->setFocus();
        QTest::keyClick(newer->comparison()->tree(), Qt::Key_Return); // of the new report
        QCOMPARE(window.currentTab(), older);
        QVERIFY(older->selectedText(false).contains(QStringLiteral("10.10.3")));

        QTemporaryDir folder;
        QFile headings(folder.filePath(QStringLiteral("headings.txt")));
        QVERIFY(headings.open(QIODevice::WriteOnly) &&
                headings.write(QByteArray("QLocale\n").repeated(200002)) > 0);
        headings.close();
        window.openFile(headings.fileName());
        window.compareWith(older);
        QTRY_COMPARE_WITH_TIMEOUT(
            window.currentTab()->findChild<QLabel*>(QStringLiteral("messageText"))->text(),
            QStringLiteral("One of the reports has too many sections."), mostMs);
    }
};

QTEST_MAIN(ViewerPagesTest)
#include "viewerPagesTest.moc"
