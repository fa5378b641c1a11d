// What comes onto paper: the scale to the dot, what is cut, the title and the bar; and the way there by keys.
#include "tests/cam/support/layerbuilding.h"
#include "tests/support/modalresponder.h"
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/logcollector.h"
#include "workbench/mainwindow.h"
#include "workbench/view/graphicview.h"
#include "workbench/view/printdialog.h"
#include "workbench/view/printing.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>
#if QT_CONFIG(printdialog)
#include <QPrintDialog>
#include <QPrinterInfo>
#endif

#include <cmath>

using namespace testing;

namespace {

// Two pads of 2 mm, 20 mm apart.
std::shared_ptr<const drawing::LayerScene> twoPads()
{
    cam::LayerImage image = emptyLayer();
    cam::FeatureSet &features = image.steps[0].features;
    addPad(features, symbol(image, "r2000"), at(0, 0));
    addPad(features, symbol(image, "r2000"), at(20000, 0));
    return std::make_shared<const drawing::LayerScene>(
        std::make_shared<const cam::LayerImage>(std::move(image)), cam::ExportOptions());
}

void showPads(BoardView &view)
{
    view.resize(400, 200);
    view.show();
    view.setScenes({{twoPads(), QColor(255, 0, 0), 1.0}});
    view.setViewport(at(10000, 0), 1e5); // 40 mm across, 20 mm high
}

// A sheet of paper: width and height in millimetres.
QImage sheet(const QSizeF &size, double dotsPerMillimetre)
{
    QImage image((size * dotsPerMillimetre).toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    image.setDotsPerMeterX(int(std::lround(dotsPerMillimetre * 1000.0)));
    image.setDotsPerMeterY(int(std::lround(dotsPerMillimetre * 1000.0)));
    return image;
}

// The first and the last column with a pixel of the layer, and how many there are.
struct Found
{
    int first = -1, last = -1, count = 0;
};
Found layerPixels(const QImage &image, const QRect &part)
{
    Found found;
    for (int x = part.left(); x <= part.right(); ++x) {
        for (int y = part.top(); y <= part.bottom(); ++y) {
            const QColor color = image.pixelColor(x, y);
            if (color.red() < 150 || color.green() > 100 || color.blue() > 100)
                continue;
            found.first = found.first < 0 ? x : found.first;
            found.last = x;
            ++found.count;
        }
    }
    return found;
}

bool hasBlack(const QImage &image, const QRect &part)
{
    for (int x = part.left(); x <= part.right(); ++x) {
        for (int y = part.top(); y <= part.bottom(); ++y) {
            if (image.pixelColor(x, y).lightness() < 40)
                return true;
        }
    }
    return false;
}

} // namespace

class tst_Printing : public QObject
{
    Q_OBJECT

private slots:
    void lengthsOnPaperAreTrue_data()
    {
        QTest::addColumn<double>("factor");
        QTest::addColumn<double>("dots"); // a millimetre
        QTest::newRow("true size") << 1.0 << 10.0;
        QTest::newRow("twice as large") << 2.0 << 10.0;
        QTest::newRow("half as large, finer paper") << 0.5 << 40.0;
    }
    void lengthsOnPaperAreTrue()
    {
        QFETCH(const double, factor);
        QFETCH(const double, dots);
        BoardView view;
        showPads(view);
        PageLayout layout;
        layout.room = QSizeF(100.0, 60.0);
        layout.seen = QSizeF(40.0, 20.0);
        layout.factor = factor;
        QImage paper = sheet(QSizeF(100.0, 72.0), dots);
        QPainter painter(&paper);
        paintPage(view, painter, layout, "title");
        painter.end();
        const Found found = layerPixels(paper, paper.rect());
        // From the left edge of the left pad to the right edge of the right one: 22 mm.
        const double across = (found.last - found.first + 1) / dots / factor;
        QVERIFY2(std::fabs(across - 22.0) < 0.25 / factor, qPrintable(QString::number(across)));
        const double area = found.count / (dots * dots * factor * factor);
        QVERIFY2(std::fabs(area - 2.0 * 3.14159) < 0.3, qPrintable(QString::number(area)));
        // In the middle of the room; the corners stay white.
        QVERIFY(std::abs((found.first + found.last) / 2 - int(50.0 * dots)) <= 2);
        QCOMPARE(paper.pixelColor(1, 1), QColor(Qt::white));
        // Title and bar.
        const int top = int(62.0 * dots);
        QVERIFY(hasBlack(paper, QRect(0, top, int(30 * dots), paper.height() - top)));
        QVERIFY(hasBlack(paper, QRect(int(85 * dots), top, int(15 * dots), paper.height() - top)));
    }

    void theBarIsAsLongAsItSays()
    {
        BoardView view;
        showPads(view);
        PageLayout layout;
        layout.room = QSizeF(100.0, 60.0);
        layout.seen = QSizeF(40.0, 20.0);
        layout.factor = 2.0; // a bar of at least 20 mm on paper is one of 10 mm
        QImage paper = sheet(QSizeF(100.0, 72.0), 10.0);
        QPainter painter(&paper);
        paintPage(view, painter, layout, QString());
        painter.end();
        int longest = 0;
        for (int y = 620; y < 720; ++y) {
            int run = 0;
            for (int x = 500; x < 1000; ++x) {
                run = paper.pixelColor(x, y).lightness() < 128 ? run + 1 : 0;
                longest = std::max(longest, run);
            }
        }
        QVERIFY2(std::abs(longest - 200) <= 4, qPrintable(QString::number(longest)));
    }

    void whatHasNoRoomIsCutAroundTheMiddle()
    {
        PageLayout layout;
        layout.room = QSizeF(100.0, 60.0);
        layout.seen = QSizeF(40.0, 20.0);
        layout.factor = 4.0;
        QVERIFY(layout.isCut());
        QCOMPARE(layout.printed(), QSizeF(25.0, 15.0));
        layout.factor = 2.5;
        QVERIFY(!layout.isCut());
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        BoardView view;
        showPads(view);
        const PageLayout fits = pageLayout(view, printer, 0.0);
        QVERIFY(!fits.isCut());
        const double left = fits.room.width() / (fits.seen.width() * fits.factor),
                     above = fits.room.height() / (fits.seen.height() * fits.factor);
        QVERIFY(std::fabs(std::min(left, above) - 1.0) < 1e-9);
    }

    void marksAreWhereTheLayersAre()
    {
        // An outline around the left pad: a square of 4 mm.
        BoardView view;
        showPads(view);
        QPolygonF square(QRectF(-2e6, -2e6, 4e6, 4e6));
        view.setBoard({square}, {});
        PageLayout layout;
        layout.room = QSizeF(100.0, 60.0);
        layout.seen = QSizeF(40.0, 20.0);
        layout.factor = 1.0;
        QImage paper = sheet(QSizeF(100.0, 72.0), 10.0);
        QPainter painter(&paper);
        paintPage(view, painter, layout, QString());
        painter.end();
        // The pad's middle is 10 mm left of the page's, in the middle of 20 mm.
        QVERIFY(hasBlack(paper, QRect(400 - 22, 100 - 5, 5, 10)));
        QVERIFY(hasBlack(paper, QRect(400 + 18, 100 - 5, 5, 10)));
        QVERIFY(!hasBlack(paper, QRect(600 - 22, 100 - 5, 5, 10)));
    }

    void printsByKeysIntoAFile()
    {
#if QT_CONFIG(printdialog)
        TemporaryWorkingFolder folder;
        LogCollector log;
        MainWindow window(log);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        showPads(window.findChild<GraphicView *>()->board());
        const QString path = folder.filePath("board.pdf");
        ModalResponder responder;
        responder.expect([&](QWidget *dialog) {
            auto *fits = dialog->findChild<QRadioButton *>("PrintFits");
            QVERIFY(fits && fits->isChecked());
            auto *said = dialog->findChild<QLabel *>("PrintLayout");
            const QString before = said->text();
            auto *factor = dialog->findChild<QDoubleSpinBox *>("PrintFactor");
            factor->setFocus();
            factor->selectAll();
            QTest::keyClicks(factor, "2");
            QTest::keyClick(factor, Qt::Key_Tab);
            QVERIFY(!fits->isChecked());
            QVERIFY(said->text() != before && said->text().contains("scale 2 : 1"));
            auto *title = dialog->findChild<QLineEdit *>("PrintTitle");
            title->setFocus();
            title->selectAll();
            QTest::keyClicks(title, "two pads");
            responder.expect([&](QWidget *system) {
                auto *printDialog = qobject_cast<QPrintDialog *>(system);
                QVERIFY(printDialog);
                printDialog->printer()->setOutputFormat(QPrinter::PdfFormat);
                printDialog->printer()->setOutputFileName(path);
                printDialog->done(QDialog::Accepted);
            });
            // Behind this answer: the press opens the system's window, which the next one answers.
            auto *print = dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
            QTimer::singleShot(0, print, [print] { QTest::mouseClick(print, Qt::LeftButton); });
        });
        QTest::keyClick(&window, Qt::Key_P, Qt::ControlModifier);
        QTRY_COMPARE(responder.pending(), 0);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray pdf = file.readAll();
        QVERIFY(pdf.startsWith("%PDF-"));
        // The title, in UTF-16.
        QVERIFY(pdf.contains(QByteArray("\0t\0w\0o\0 \0p\0a\0d\0s", 16)));
        QVERIFY(pdf.contains("/Subtype /Image"));
#else
        QSKIP("the system's own window for printing, in which the file is chosen, is not part of this Qt");
#endif
    }

    // Where the system has no printer Qt prints PDF files, whose page it has no window for: it warns and
    // shows nothing.
    void withoutAPrinterThereIsNoPageToSetUp_data()
    {
        QTest::addColumn<bool>("isPdf");
        QTest::newRow("a PDF file") << true;
        QTest::newRow("what the system has") << false;
    }
    void withoutAPrinterThereIsNoPageToSetUp()
    {
#if QT_CONFIG(printdialog)
        QFETCH(const bool, isPdf);
        BoardView view;
        showPads(view);
        QPrinter printer(QPrinter::HighResolution);
        if (isPdf)
            printer.setOutputFormat(QPrinter::PdfFormat);
        PrintDialog dialog(view, printer, "two pads", nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        auto *page = dialog.findChild<QPushButton *>("PrintPage");
        QVERIFY(page);
        const bool hasPrinter = !QPrinterInfo::availablePrinterNames().isEmpty();
        QCOMPARE(page->isEnabled(), hasPrinter && !isPdf);
        if (page->isEnabled())
            return;
        LogCollector log; // takes what Qt says
        QSignalSpy said(&log, &LogCollector::logged);
        QTest::mouseClick(page, Qt::LeftButton);
        QTest::keyClick(&dialog, Qt::Key_A, Qt::AltModifier);
        QCOMPARE(said.size(), 0);
        QCOMPARE(QApplication::activeModalWidget(), nullptr);
#else
        QSKIP("the system's own windows for printing are not part of this Qt");
#endif
    }

    void cancellingPrintsNothing()
    {
        LogCollector log;
        MainWindow window(log);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        ModalResponder responder;
        responder.expect([](QWidget *dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
        QTest::keyClick(&window, Qt::Key_P, Qt::ControlModifier);
        QTRY_COMPARE(responder.pending(), 0);
    }

    void aFileThatCannotBeWrittenIsSaid()
    {
        BoardView view;
        showPads(view);
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName("/no such folder/board.pdf");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(".*"));
        QVERIFY(printView(view, printer, pageLayout(view, printer, 0.0), "x").contains("no such folder"));
    }
};

QTEST_MAIN(tst_Printing)
#include "tst_printing.moc"
