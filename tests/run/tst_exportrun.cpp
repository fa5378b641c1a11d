// The export run: what OK sends, shows, exports and leaves in the table.

#include "platform/paths.h"
#include "run/exporttime.h"
#include "run/progress.h"
#include "tests/export/opendialog.h"
#include "tests/support/logcapture.h"

#include <QAction>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QProgressDialog>
#include <QRegularExpression>
#include <QScreen>
#include <QSemaphore>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <thread>

using namespace layer_column;
using recording_host::ExportCall;
using recording_host::layer;
using recording_host::state;

namespace {

// A report as its receiver sees it during the delivery.
struct Report
{
    PluginMetaData data;
    QList<std::string> layers;
    size_t exportsBefore = 0;
};

// Keeps the reports of one dialog.
class Reports : public QObject
{
    Q_OBJECT

public:
    explicit Reports(Export *dialog)
    {
        connect(dialog, SIGNAL(on_send_exprot_xml_to_fileprocess(PluginMetaData)), this,
                SLOT(take(PluginMetaData)), Qt::DirectConnection);
    }
    std::vector<Report> all;

private slots:
    void take(PluginMetaData data)
    {
        all.push_back({data, *static_cast<QList<std::string> *>(data.payload), state().exports.size()});
    }
};

void clickOk(const OpenDialog &dialog)
{
    QTest::mouseClick(dialog.button("OKButton"), Qt::LeftButton);
}

// Runs `look` once the run's progress dialog is on the screen. An export that ends with waitUntilLooked()
// lasts until then, however long the dialog takes to appear.
class WhileRunning : public QObject
{
public:
    WhileRunning(const OpenDialog &dialog, std::function<void(QProgressDialog *)> look)
        : m_dialog(dialog), m_look(std::move(look))
    {
        connect(&m_timer, &QTimer::timeout, this, [this] {
            auto *progress = m_dialog->findChild<QProgressDialog *>();
            if (!progress || !progress->isVisible())
                return;
            m_timer.stop();
            hasLooked = true;
            m_look(progress);
            m_looked.release(1000); // for any number of exports
        });
        m_timer.start(5);
    }
    // For the thread of an export; gives up after a minute, without `hasLooked`.
    bool waitUntilLooked() { return m_looked.tryAcquire(1, 60000); }
    bool hasLooked = false;

private:
    const OpenDialog &m_dialog;
    std::function<void(QProgressDialog *)> m_look;
    QSemaphore m_looked;
    QTimer m_timer;
};

bool sleepFor(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    return true;
}

// The whole seconds that the Time cell of `row` shows, or -1 when it shows anything else.
int secondsShown(const OpenDialog &dialog, int row)
{
    const QWidget *cell = dialog.table()->cellWidget(row, Time);
    const auto *label = cell ? cell->findChild<QLabel *>() : nullptr;
    const QRegularExpression seconds("^([0-9]+)s$");
    const QRegularExpressionMatch match = seconds.match(label ? label->text() : QString());
    return match.hasMatch() ? match.captured(1).toInt() : -1;
}

std::vector<std::string> exportedLayers()
{
    std::vector<std::string> names;
    for (const ExportCall &call : state().exports)
        names.push_back(call.layer);
    return names;
}

} // namespace

class tst_ExportRun : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void nothingCheckedExportsNothing();
    void nothingCheckedShowsTheProgressDialogForAMoment();
    void checkedLayersAreExported();
    void namesAreHandedOverInLowerCase();
    void outputFolderJoinsPathSecondDirAndJob();
    void outputFolderIsCreated();
    void emptySecondDirIsNotedAndDoublesTheSlash();
    void unmakeableFolderIsNotReported();
    void parametersComeFromTheRow_data();
    void parametersComeFromTheRow();
    void parametersComeFromTheSettings();
    void orderIsByteOrderOfTheNames();
    void laterOfTwoEqualNamesWins();
    void gdsRunIsReportedBeforeTheExport();
    void gerberRunIsNotReported();
    void emptyRunIsNotReported();
    void formatChoosesTheSuffix_data();
    void formatChoosesTheSuffix();
    void buttonsAreDisabledDuringTheRun();
    void closingIsRefusedDuringTheRun();
    void okOfAClosedDialogIsIgnored();
    void progressDialogHasItsLook();
    void labelNamesTheLayerInLowerCase();
    void layerNamesAreNoRichText();
    void progressIsPolledEvery200Milliseconds();
    void progressOfTheHostIsShown();
    void closingTheProgressDialogSkipsTheNextLayers();
    void escapeSkipsTheNextLayers();
    void cancelledMarkSurvivesTheEndOfTheLayer();
    void timeCellsShowWholeSeconds();
    void timeCellHasBarAndLabel();
    void secondRunReplacesTheTimeCells();
    void failedExportsLookLikeOthers_data();
    void failedExportsLookLikeOthers();
    void okInAnotherDialogWaitsItsTurn();
    void wholeSecondsAreTruncated();
    void timesAreShownWithSixDigits_data();
    void timesAreShownWithSixDigits();
    void oddProgressValuesAreShownAsZero_data();
    void oddProgressValuesAreShownAsZero();
};

void tst_ExportRun::init()
{
    recording_host::reset();
}

void tst_ExportRun::nothingCheckedExportsNothing()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    clickOk(dialog);
    QVERIFY(state().calls.empty());
    for (int row = 0; row < 6; ++row)
        QVERIFY(!dialog.table()->cellWidget(row, Time));
    QVERIFY(dialog.button("OKButton")->isEnabled());
    QVERIFY(dialog.button("CancelButton")->isEnabled());
}

void tst_ExportRun::nothingCheckedShowsTheProgressDialogForAMoment()
{
    struct ShowWatch : QObject
    {
        bool eventFilter(QObject *object, QEvent *event) override
        {
            if (event->type() == QEvent::Show && qobject_cast<QProgressDialog *>(object))
                ++shown;
            return false;
        }
        int shown = 0;
    };
    OpenDialog dialog(OpenDialog::sixLayers());
    ShowWatch watch;
    qApp->installEventFilter(&watch);
    clickOk(dialog);
    QCOMPARE(watch.shown, 1);
    QVERIFY(!dialog->findChild<QProgressDialog *>());
}

void tst_ExportRun::checkedLayersAreExported()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.pressCell(2, Check);
    dialog.pressCell(4, Check);
    clickOk(dialog);
    QCOMPARE(exportedLayers(), std::vector<std::string>({"bot", "top"}));
    for (int row = 0; row < 6; ++row)
        QCOMPARE(dialog.table()->cellWidget(row, Time) != nullptr, row == 2 || row == 4);
}

void tst_ExportRun::namesAreHandedOverInLowerCase()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "Top")});
    dialog.setChecked({0});
    clickOk(dialog);
    QCOMPARE(state().exports.size(), size_t(1));
    QCOMPARE(state().exports[0].job, std::string("job1"));
    QCOMPARE(state().exports[0].step, std::string("pcb"));
    QCOMPARE(state().exports[0].layer, std::string("top"));
}

void tst_ExportRun::outputFolderJoinsPathSecondDirAndJob()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "Top")});
    dialog.setChecked({0});
    dialog.edit("SecondDirLineEdit")->setText("Sub");
    const QString path = dialog.edit("PathLineEdit")->text();
    clickOk(dialog);
    const QString expected = (path + "/Sub/Job1\\Top.gds").toLower();
    QCOMPARE(QString::fromStdString(state().exports[0].fileName), expected);
    QCOMPARE(Progress::m_file_name, state().exports[0].fileName);
}

void tst_ExportRun::outputFolderIsCreated()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    QVERIFY(!QDir(dialog.folder() + "/OX").exists());
    clickOk(dialog); // with nothing checked, too
    QVERIFY(QDir(dialog.folder() + "/OX/Job1").exists());
}

void tst_ExportRun::emptySecondDirIsNotedAndDoublesTheSlash()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "Top")});
    dialog.setChecked({0});
    dialog.edit("PathLineEdit")->setText(dialog.folder());
    dialog.edit("SecondDirLineEdit")->clear();
    QTest::ignoreMessage(QtDebugMsg, "null prefix");
    clickOk(dialog);
    const QString expected = (dialog.folder() + "//job1\\top.gds").toLower();
    QCOMPARE(QString::fromStdString(state().exports[0].fileName), expected);
}

void tst_ExportRun::unmakeableFolderIsNotReported()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    QFile file(dialog.folder() + "/OX");
    QVERIFY(file.open(QIODevice::WriteOnly));
    dialog.setChecked({0});
    clickOk(dialog);
    QCOMPARE(exportedLayers(), std::vector<std::string>{"top"});
    QVERIFY(!QApplication::activeModalWidget() || QApplication::activeModalWidget() == dialog.get());
}

void tst_ExportRun::parametersComeFromTheRow_data()
{
    QTest::addColumn<QString>("rotate");
    QTest::addColumn<QString>("mirror");
    QTest::addColumn<QString>("xScale");
    QTest::addColumn<QString>("yScale");
    QTest::addColumn<QString>("negate");
    QTest::addColumn<bool>("isScale");
    QTest::newRow("defaults") << "0"
                              << "No"
                              << "1"
                              << "1"
                              << "No" << false;
    QTest::newRow("rotate") << "270"
                            << "No"
                            << "1"
                            << "1"
                            << "No" << false;
    QTest::newRow("mirror") << "0"
                            << "Yes"
                            << "1"
                            << "1"
                            << "No" << false;
    QTest::newRow("x scale") << "0"
                             << "No"
                             << "1.25"
                             << "1"
                             << "No" << true;
    QTest::newRow("y scale") << "0"
                             << "No"
                             << "1"
                             << "2"
                             << "No" << true;
    QTest::newRow("written out one") << "0"
                                     << "No"
                                     << "1.0"
                                     << "1.0000"
                                     << "No" << false;
    QTest::newRow("negate") << "0"
                            << "No"
                            << "1"
                            << "1"
                            << "Yes" << false;
    QTest::newRow("empty scale") << "0"
                                 << "No"
                                 << ""
                                 << "1"
                                 << "No" << true;
}

void tst_ExportRun::parametersComeFromTheRow()
{
    QFETCH(QString, rotate);
    QFETCH(QString, mirror);
    QFETCH(QString, xScale);
    QFETCH(QString, yScale);
    QFETCH(QString, negate);
    QFETCH(bool, isScale);
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({1});
    dialog.combo(1, Rotate)->setCurrentText(rotate);
    dialog.combo(1, Mirror)->setCurrentText(mirror);
    dialog.table()->item(1, XScale)->setText(xScale);
    dialog.table()->item(1, YScale)->setText(yScale);
    dialog.combo(1, Negate)->setCurrentText(negate);
    clickOk(dialog);
    QCOMPARE(state().exports.size(), size_t(1));
    const ExportCall &call = state().exports[0];
    QCOMPARE(call.angle, rotate.toDouble());
    QCOMPARE(call.isRotate, rotate != "0");
    QCOMPARE(call.isMirror, mirror == "Yes");
    QCOMPARE(call.xScale, xScale.toDouble());
    QCOMPARE(call.yScale, yScale.toDouble());
    QCOMPARE(call.isScale, isScale);
    QCOMPARE(call.isNegative, negate == "Yes");
}

void tst_ExportRun::parametersComeFromTheSettings()
{
    ExportConfig config;
    config.resizeValue = 500000;
    config.dbu = 0.005;
    config.mirror = true; // the rows decide about mirroring
    for (bool profile : {true, false}) {
        recording_host::reset();
        config.profileDot = profile;
        OpenDialog dialog({layer("BOARD", "SIGNAL", "top")}, config);
        dialog.setChecked({0});
        clickOk(dialog);
        QCOMPARE(state().exports[0].resize, 500000.0);
        QCOMPARE(state().exports[0].dbu, 0.005);
        QCOMPARE(state().exports[0].isProfileTop, profile);
        QVERIFY(!state().exports[0].isMirror);
    }
}

void tst_ExportRun::orderIsByteOrderOfTheNames()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "b"), layer("BOARD", "SIGNAL", "\xC3\xA4"), // a with dots
                       layer("BOARD", "SIGNAL", "a"), layer("BOARD", "SIGNAL", "Z"),
                       layer("BOARD", "SIGNAL", "a1"), layer("BOARD", "SIGNAL", "_x")});
    dialog.setChecked({0, 1, 2, 3, 4, 5});
    Reports reports(dialog.get());
    clickOk(dialog);
    QCOMPARE(reports.all.size(), size_t(1));
    QCOMPARE(reports.all[0].layers, QList<std::string>({"Z", "_x", "a", "a1", "b", "\xC3\xA4"}));
    QCOMPARE(exportedLayers(), std::vector<std::string>({"z", "_x", "a", "a1", "b", "\xC3\xA4"}));
}

void tst_ExportRun::laterOfTwoEqualNamesWins()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "top"), layer("BOARD", "SIGNAL", "top")});
    dialog.combo(0, Rotate)->setCurrentText("90");
    dialog.combo(1, Rotate)->setCurrentText("180");
    dialog.setChecked({0, 1});
    clickOk(dialog);
    QCOMPARE(state().exports.size(), size_t(1));
    QCOMPARE(state().exports[0].angle, 180.0);
    QVERIFY(dialog.table()->cellWidget(0, Time));
    QVERIFY(dialog.table()->cellWidget(1, Time));
}

void tst_ExportRun::gdsRunIsReportedBeforeTheExport()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2, 4});
    Reports reports(dialog.get());
    const QString path = dialog.edit("PathLineEdit")->text();
    clickOk(dialog);
    QCOMPARE(reports.all.size(), size_t(1));
    const Report &report = reports.all[0];
    QCOMPARE(report.data.fromPlugin, QString("File_Process"));
    QCOMPARE(report.data.toPlugin, QString("ListBar_PNList"));
    QCOMPARE(report.data.msgType, 10000403);
    QCOMPARE(report.data.params.size(), 1);
    QCOMPARE(report.data.params["path"], QVariant(path + "/OX/Job1"));
    QCOMPARE(report.layers, QList<std::string>({"bot", "top"}));
    QCOMPARE(report.exportsBefore, size_t(0));
    QCOMPARE(state().exports.size(), size_t(2));
}

void tst_ExportRun::gerberRunIsNotReported()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2});
    dialog.format()->setCurrentText(".gerber");
    Reports reports(dialog.get());
    clickOk(dialog);
    QVERIFY(reports.all.empty());
    QCOMPARE(state().exports.size(), size_t(1));
}

void tst_ExportRun::emptyRunIsNotReported()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    Reports reports(dialog.get());
    clickOk(dialog);
    QVERIFY(reports.all.empty());
}

void tst_ExportRun::formatChoosesTheSuffix_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("type");
    QTest::newRow("gds") << ".gds" << 1;
    QTest::newRow("gerber") << ".gerber" << 0;
}

void tst_ExportRun::formatChoosesTheSuffix()
{
    QFETCH(QString, format);
    QFETCH(int, type);
    OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    dialog.setChecked({0});
    dialog.format()->setCurrentText(format);
    clickOk(dialog);
    QCOMPARE(int(state().exports[0].type), type);
    QVERIFY(QString::fromStdString(state().exports[0].fileName).endsWith("\\top" + format));
}

void tst_ExportRun::buttonsAreDisabledDuringTheRun()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    dialog.setChecked({0});
    WhileRunning watch(dialog, [&dialog](QProgressDialog *) {
        QVERIFY(!dialog.button("OKButton")->isEnabled());
        QVERIFY(!dialog.button("CancelButton")->isEnabled());
        QVERIFY(dialog.button("PathButton")->isEnabled());
    });
    state().onExport = [&watch](const ExportCall &) { return watch.waitUntilLooked(); };
    clickOk(dialog);
    QVERIFY(watch.hasLooked);
    QVERIFY(dialog.button("OKButton")->isEnabled());
    QVERIFY(dialog.button("CancelButton")->isEnabled());
}

void tst_ExportRun::closingIsRefusedDuringTheRun()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    dialog.setChecked({0});
    WhileRunning watch(dialog, [&dialog](QProgressDialog *) {
        QVERIFY(!dialog->close());
        QApplication::closeAllWindows();
    });
    state().onExport = [&watch](const ExportCall &) { return watch.waitUntilLooked(); };
    clickOk(dialog);
    QVERIFY(watch.hasLooked);
    QVERIFY(dialog.get());
    QVERIFY(dialog->isVisible());
    const QPointer<Export> alive(dialog.get());
    QVERIFY(dialog->close());
    QTRY_VERIFY(!alive);
}

void tst_ExportRun::okOfAClosedDialogIsIgnored()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    dialog.setChecked({0});
    const QPointer<Export> alive(dialog.get());
    dialog->close();
    QVERIFY(alive); // until events are processed
    dialog->on_OKButton_clicked();
    QVERIFY(state().calls.empty());
    QTRY_VERIFY(!alive);
}

void tst_ExportRun::progressDialogHasItsLook()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    dialog.setChecked({0});
    WhileRunning watch(dialog, [&dialog](QProgressDialog *progress) {
        QCOMPARE(progress->parentWidget(), static_cast<QWidget *>(dialog.get()));
        QCOMPARE(progress->windowTitle(), QString("Please wait"));
        QCOMPARE(progress->size(), QSize(250, 60));
        QCOMPARE(progress->minimumSize(), QSize(250, 60));
        QCOMPARE(progress->maximumSize(), QSize(250, 60));
        QCOMPARE(progress->minimum(), 0);
        QCOMPARE(progress->maximum(), 100);
        QCOMPARE(progress->minimumDuration(), 1);
        QCOMPARE(progress->windowModality(), Qt::ApplicationModal);
        QVERIFY(progress->findChildren<QPushButton *>().isEmpty());
        const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
        QCOMPARE(progress->pos(), QPoint(available.right() - 250, 0));
        // Qt adds the system menu to a title bar by itself.
        QCOMPARE(int(progress->windowFlags() & ~Qt::WindowSystemMenuHint), 4099);
    });
    state().onExport = [&watch](const ExportCall &) { return watch.waitUntilLooked(); };
    clickOk(dialog);
    QVERIFY(watch.hasLooked);
}

void tst_ExportRun::labelNamesTheLayerInLowerCase()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "Top")});
    dialog.setChecked({0});
    WhileRunning watch(
        dialog, [](QProgressDialog *progress) { QCOMPARE(progress->labelText(), QString("layer :top")); });
    state().onExport = [&watch](const ExportCall &) { return watch.waitUntilLooked(); };
    clickOk(dialog);
    QVERIFY(watch.hasLooked);
}

void tst_ExportRun::layerNamesAreNoRichText()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "<img src='x'><b>top</b>")});
    dialog.setChecked({0});
    WhileRunning watch(dialog, [](QProgressDialog *progress) {
        QCOMPARE(progress->findChild<QLabel *>()->textFormat(), Qt::PlainText);
    });
    state().onExport = [&watch](const ExportCall &) { return watch.waitUntilLooked(); };
    clickOk(dialog);
    QVERIFY(watch.hasLooked);
}

void tst_ExportRun::progressIsPolledEvery200Milliseconds()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    dialog.setChecked({0});
    // Each value is reported when the one before it has been shown, so that every one waits for the next
    // poll.
    QElapsedTimer clock;
    std::vector<qint64> shown;
    QSemaphore isShown;
    WhileRunning watch(dialog, [&](QProgressDialog *progress) {
        QObject::connect(progress->findChild<QProgressBar *>(), &QProgressBar::valueChanged, [&] {
            shown.push_back(clock.elapsed());
            isShown.release();
        });
    });
    state().onExport = [&](const ExportCall &call) {
        bool goesOn = watch.waitUntilLooked();
        for (int value = 1; value <= 5 && goesOn; ++value) {
            call.progress->set_value(value);
            goesOn = isShown.tryAcquire(1, 60000);
        }
        return goesOn;
    };
    clock.start();
    clickOk(dialog);
    QVERIFY(shown.size() >= 5);
    // No poll comes sooner, but for the odd millisecond of the system's timer; on a busy machine some come
    // later.
    qint64 shortest = shown[1] - shown[0];
    for (size_t i = 2; i < 5; ++i)
        shortest = std::min(shortest, shown[i] - shown[i - 1]);
    QVERIFY2(shortest >= 180 && shortest < 2000, qPrintable(QString::number(shortest)));
}

void tst_ExportRun::progressOfTheHostIsShown()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    dialog.setChecked({0});
    QSemaphore isShown;
    state().onExport = [&isShown](const ExportCall &call) {
        call.progress->set_value(42.9);
        return isShown.tryAcquire(1, 60000);
    };
    QTimer look;
    bool hasSeen = false;
    QObject::connect(&look, &QTimer::timeout, [&] {
        const auto *progress = dialog->findChild<QProgressDialog *>();
        if (hasSeen || !progress || progress->value() != 42) // truncated
            return;
        hasSeen = true;
        isShown.release();
    });
    look.start(20);
    clickOk(dialog);
    QVERIFY(hasSeen);
}

void tst_ExportRun::closingTheProgressDialogSkipsTheNextLayers()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2, 3, 4}); // bot, gnd, top in the order of their export
    std::atomic<bool> hasEnded{false};
    WhileRunning watch(dialog, [](QProgressDialog *progress) { progress->close(); });
    state().onExport = [&hasEnded, &watch](const ExportCall &) {
        watch.waitUntilLooked();
        sleepFor(1100);
        return hasEnded = true;
    };
    clickOk(dialog);
    QVERIFY(watch.hasLooked);
    QVERIFY(hasEnded); // the running layer was finished
    QCOMPARE(exportedLayers(), std::vector<std::string>{"bot"});
    QVERIFY(secondsShown(dialog, 4) >= 1);
    QCOMPARE(secondsShown(dialog, 3), 0);
    QCOMPARE(secondsShown(dialog, 2), 0);
    QVERIFY(dialog.button("OKButton")->isEnabled());
}

void tst_ExportRun::escapeSkipsTheNextLayers()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2, 4});
    WhileRunning watch(dialog, [](QProgressDialog *progress) { QTest::keyClick(progress, Qt::Key_Escape); });
    state().onExport = [&watch](const ExportCall &) { return watch.waitUntilLooked(); };
    clickOk(dialog);
    QVERIFY(watch.hasLooked);
    QCOMPARE(exportedLayers(), std::vector<std::string>{"bot"});
}

void tst_ExportRun::cancelledMarkSurvivesTheEndOfTheLayer()
{
    // The host reports 100 after the user closed the dialog: the mark must not be lost with it.
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2, 4});
    std::atomic<bool> isClosed{false};
    state().onExport = [&isClosed](const ExportCall &call) {
        while (!isClosed)
            sleepFor(1);
        call.progress->set_value(100.0);
        return sleepFor(500);
    };
    WhileRunning watch(dialog, [&isClosed](QProgressDialog *progress) {
        progress->close();
        isClosed = true;
    });
    clickOk(dialog);
    QVERIFY(watch.hasLooked);
    QCOMPARE(exportedLayers(), std::vector<std::string>{"bot"});
}

void tst_ExportRun::timeCellsShowWholeSeconds()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2, 4});
    state().onExport = [](const ExportCall &call) { return call.layer == "top" ? sleepFor(1100) : true; };
    QElapsedTimer timer;
    timer.start();
    clickOk(dialog);
    const int all = int(timer.elapsed() / 1000);
    QVERIFY(secondsShown(dialog, 2) >= 1);
    QVERIFY(secondsShown(dialog, 2) + secondsShown(dialog, 4) <= all);
    QVERIFY(secondsShown(dialog, 4) < secondsShown(dialog, 2) || all > 2); // on a very busy machine
}

void tst_ExportRun::timeCellHasBarAndLabel()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2});
    clickOk(dialog);
    QWidget *cell = dialog.table()->cellWidget(2, Time);
    const auto *layout = qobject_cast<QHBoxLayout *>(cell->layout());
    QVERIFY(layout);
    QCOMPARE(layout->spacing(), 1);
    QCOMPARE(layout->count(), 2);
    const auto *bar = qobject_cast<QProgressBar *>(layout->itemAt(0)->widget());
    const auto *label = qobject_cast<QLabel *>(layout->itemAt(1)->widget());
    QVERIFY(bar && label);
    QCOMPARE(bar->orientation(), Qt::Horizontal);
    QCOMPARE(bar->minimum(), 0);
    QCOMPARE(bar->maximum(), 100);
    QCOMPARE(bar->value(), 100);
    QCOMPARE(int(bar->alignment()), 130);
    QVERIFY(bar->isVisible() && label->isVisible());
    QVERIFY(!dialog.table()->layout());
    // Nothing of it is cut.
    QTest::qWait(20);
    QVERIFY(label->width() >= label->sizeHint().width());
    QVERIFY(label->height() >= label->fontMetrics().height());
}

void tst_ExportRun::secondRunReplacesTheTimeCells()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2});
    clickOk(dialog);
    dialog.pressCell(2, Check);
    dialog.pressCell(3, Check);
    clickOk(dialog);
    QVERIFY(!dialog.table()->cellWidget(2, Time));
    QVERIFY(dialog.table()->cellWidget(3, Time));
    QCOMPARE(state().exports.size(), size_t(2));
}

void tst_ExportRun::failedExportsLookLikeOthers_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("false") << 0;
    QTest::newRow("text") << 1;
    QTest::newRow("exception") << 2;
    QTest::newRow("number") << 3;
    QTest::newRow("minus one") << 4;
}

void tst_ExportRun::failedExportsLookLikeOthers()
{
    QFETCH(int, kind);
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2, 4});
    state().onExport = [kind](const ExportCall &call) -> bool {
        if (kind == 1)
            throw "progress_cancle";
        if (kind == 2)
            throw std::runtime_error("disk full");
        if (kind == 3)
            throw 5;
        if (kind == 4) {
            call.progress->set_value(-1.0);
            sleepFor(250);
        }
        return false;
    };
    clickOk(dialog);
    QCOMPARE(state().exports.size(), size_t(2));
    for (int row : {2, 4}) {
        QCOMPARE(dialog.table()->cellWidget(row, Time)->findChild<QProgressBar *>()->value(), 100);
        QVERIFY(secondsShown(dialog, row) >= 0);
    }
    QVERIFY(dialog.button("OKButton")->isEnabled());
}

void tst_ExportRun::okInAnotherDialogWaitsItsTurn()
{
    OpenDialog first({layer("BOARD", "SIGNAL", "first")});
    OpenDialog second({layer("BOARD", "SIGNAL", "second")});
    first.setChecked({0});
    second.setChecked({0});
    LogCapture log;
    WhileRunning watch(first, [&second](QProgressDialog *) { second.button("OKButton")->click(); });
    state().onExport = [&watch](const ExportCall &) { return watch.waitUntilLooked(); };
    first.button("OKButton")->click();
    QVERIFY(watch.hasLooked);
    QCOMPARE(exportedLayers(), std::vector<std::string>{"first"});
    QVERIFY(second.button("OKButton")->isEnabled());
    QVERIFY(!log.lines().empty());
    QCOMPARE(log.lines().back().message, std::string("An export is running; OK was ignored"));
    second.button("OKButton")->click();
    QCOMPARE(exportedLayers(), std::vector<std::string>({"first", "second"}));
}

void tst_ExportRun::wholeSecondsAreTruncated()
{
    QCOMPARE(export_time::wholeSeconds(0), qint64(0));
    QCOMPARE(export_time::wholeSeconds(999), qint64(0));
    QCOMPARE(export_time::wholeSeconds(1000), qint64(1));
    QCOMPARE(export_time::wholeSeconds(12999), qint64(12));
}

void tst_ExportRun::timesAreShownWithSixDigits_data()
{
    QTest::addColumn<double>("seconds");
    QTest::newRow("0s") << 0.0;
    QTest::newRow("12s") << 12.0;
    QTest::newRow("123456s") << 123456.0;
    QTest::newRow("1.23457e+06s") << 1234567.0;
}

void tst_ExportRun::timesAreShownWithSixDigits()
{
    QFETCH(double, seconds);
    QCOMPARE(export_time::timeText(seconds), QString(QTest::currentDataTag()));
}

void tst_ExportRun::oddProgressValuesAreShownAsZero_data()
{
    QTest::addColumn<double>("progress");
    QTest::addColumn<int>("shown");
    QTest::newRow("half") << 50.9 << 50;
    QTest::newRow("failure") << -1.0 << -1;
    QTest::newRow("above") << 250.0 << 250;
    QTest::newRow("no number") << std::nan("") << 0;
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << 0;
    QTest::newRow("huge") << 1e300 << 0;
    QTest::newRow("minus huge") << -1e300 << 0;
}

void tst_ExportRun::oddProgressValuesAreShownAsZero()
{
    QFETCH(double, progress);
    QFETCH(int, shown);
    QCOMPARE(export_time::shownProgress(progress), shown);
}

QTEST_MAIN(tst_ExportRun)
#include "tst_exportrun.moc"
