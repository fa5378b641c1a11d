// The workbench's window with the built module in it.
#include "plugin/interface/messages.h"
#include "pluginmanger/pluginhost.h"
#include "tests/support/modalresponder.h"
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/exportdialog.h"
#include "workbench/hostsettings.h"
#include "workbench/logcollector.h"
#include "workbench/mainwindow.h"
#include "workbench/messagebar.h"
#include "workbench/parentwidget.h"
#include "workbench/resultspane.h"
#include "workbench/view/boardview.h"
#include "workbench/view/differences.h"
#include "workbench/windowmemory.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDirIterator>
#include <QDockWidget>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QProgressBar>
#include <QProgressDialog>
#include <QRegularExpression>
#include <QStatusBar>
#include <QTableWidget>
#include <QToolButton>
#include <QTreeWidget>
#include <QtTest>

#include <cmath>
#include <memory>

namespace {

QVector<QWidget *> exportDialogs()
{
    QVector<QWidget *> dialogs;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->inherits("Export"))
            dialogs << window;
    }
    return dialogs;
}

void closeExportDialogs()
{
    for (QWidget *dialog : exportDialogs())
        dialog->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void sendToPlugin(qint32 type)
{
    PluginMetaData data;
    data.toPlugin = "File_Process.dll";
    data.msgType = type;
    QVERIFY(PluginHost::instance().deliver(data));
}

// Whose comparison takes little time.
const QStringList fewLayers{"SILK_BOT", "BOTTOM", "DRILL"};

} // namespace

class tst_Workbench : public QObject
{
    Q_OBJECT

private:
    TemporaryWorkingFolder folder;
    LogCollector log;
    std::unique_ptr<MainWindow> window;

    // The open Export dialog, with all layers chosen.
    ExportDialog openDialog(const QString &format)
    {
        window->openJob("beacon");
        window->pressButton(window->exportAction());
        if (!QTest::qWaitFor([] { return ExportDialog::find().window() != nullptr; }))
            qFatal("no Export dialog opened");
        ExportDialog dialog = ExportDialog::find();
        QTimer::singleShot(0, [] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            for (QAction *action : menu ? menu->actions() : QList<QAction *>()) {
                if (action->text() == "Select all layer")
                    menu->setActiveAction(action);
            }
            QTest::keyClick(menu, Qt::Key_Return);
        });
        dialog.openTableMenu();
        QDir().mkpath("out"); // what is not there is asked about
        dialog.enterPath(folder.filePath("out"));
        dialog.chooseFormat(format);
        return dialog;
    }
    // Leaves only `layers` chosen.
    static void chooseOnly(const ExportDialog &dialog, const QStringList &layers)
    {
        auto *table = dialog.window()->findChild<QTableWidget *>();
        for (int row = 0; row < dialog.rowCount(); ++row) {
            if (!layers.contains(dialog.layer(row)))
                QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                                  table->visualItemRect(table->item(row, 0)).center());
            QCOMPARE(dialog.isChecked(row), layers.contains(dialog.layer(row)));
        }
    }
    const ExportResults &results() const { return window->exports().results(); }
    MessageBar *messageBar() const { return window->findChild<MessageBar *>(); }
    int redRows() const
    {
        auto *list = window->findChild<QTreeWidget *>("ExportResults");
        int red = 0;
        for (int row = 0; row < list->topLevelItemCount(); ++row)
            red += list->topLevelItem(row)->background(0).color().red() > 0x80 ? 1 : 0;
        return red;
    }

    // Moves the first flash of a Gerber file by a tenth of a millimetre; returns where it was, in nanometres.
    static cam::Point movePad(const QString &path)
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadWrite))
            qFatal("%s cannot be changed", qPrintable(path));
        QString text = QString::fromLatin1(file.readAll());
        const QRegularExpressionMatch flash =
            QRegularExpression("\\nX(-?\\d+)Y(-?\\d+)D03\\*\\n(?!Y)").match(text);
        if (!flash.hasMatch())
            qFatal("%s has no flash", qPrintable(path));
        text.replace(flash.capturedStart(1), flash.capturedLength(1),
                     QString::number(flash.captured(1).toLongLong() + 100000));
        file.resize(0);
        file.write(text.toLatin1());
        return {flash.captured(1).toDouble(), flash.captured(2).toDouble()};
    }
    bool isShown(cam::Point place, double near) const
    {
        const cam::Point shown = window->findChild<BoardView *>()->viewport().center;
        return std::fabs(shown.x - place.x) < near && std::fabs(shown.y - place.y) < near;
    }
    // Pixels of the view in the colors of differences.
    int differencePixels() const
    {
        const QImage image =
            window->findChild<BoardView *>()->grab().toImage().convertToFormat(QImage::Format_RGB32);
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QRgb pixel = image.pixel(x, y);
                count += pixel == Differences::color(true).rgb() || pixel == Differences::color(false).rgb();
            }
        }
        return count;
    }

    // Closes the settings dialog that the menu opens, with `path` for the exports.
    void changeOutputFolder(const QString &path)
    {
        ModalResponder responder;
        responder.expect([&path](QWidget *dialog) {
            auto *edit = dialog->findChild<QLineEdit *>("OutputFolder");
            edit->selectAll();
            QTest::keyClicks(edit, path);
            QTest::keyClick(edit, Qt::Key_Return);
        });
        window->findChild<QAction *>("Settings")->trigger();
        QCOMPARE(responder.pending(), 0);
    }

private slots:
    void initTestCase()
    {
        QDirIterator files(SAMPLE_JOBS "/beacon", QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString target =
                folder.filePath("job/beacon/" + QDir(SAMPLE_JOBS "/beacon").relativeFilePath(files.next()));
            QVERIFY(QDir().mkpath(QFileInfo(target).path()) && QFile::copy(files.filePath(), target));
        }
    }

    void init()
    {
        window.reset(new MainWindow(log));
        window->show();
        QCOMPARE(PluginHost::instance().loadFolder(QCoreApplication::applicationDirPath() + "/plugins"), 1);
        window->addPlugins();
    }

    void cleanup()
    {
        closeExportDialogs();
        window.reset();
        QDir("out").removeRecursively();
        PluginHost::instance().destroyPlugins();
    }

    void newSettingsHoldAtOnce()
    {
        HostSettings values;
        values.jobFolder = folder.filePath("job");
        QVERIFY(hostsettings::write(values));
        window->openJob("beacon");
        changeOutputFolder(folder.filePath("elsewhere"));
        QVERIFY(QFileInfo(folder.filePath("elsewhere")).isDir()); // the plug-in has read the file again
        QCOMPARE(window->openJobName(), QString("beacon"));
        window->pressButton(window->exportAction());
        QTRY_COMPARE(exportDialogs().size(), 1);
        QCOMPARE(ExportDialog::find().path().replace('\\', '/'), folder.filePath("elsewhere"));
        closeExportDialogs();
        // One click, one dialog, also of the plug-in that has been started again.
        window->exportAction()->trigger();
        QTest::qWait(100);
        QCOMPARE(exportDialogs().size(), 1);
        closeExportDialogs();
        QVERIFY(QFile::remove("oxconfig.ini"));
    }

    void importStartsInTheFolderOfTheLastImport()
    {
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        WindowMemory memory(folder.filePath("memory.ini"));
        window->remember(memory);
        QVERIFY(QDir().mkpath("archives"));
        PluginMetaData data;
        QString path = folder.filePath("archives/mask.gerber");
        data.toPlugin = messages::layerList;
        data.msgType = messages::FileReady;
        data.payload = &path;
        PluginHost::instance().deliver(data);
        ModalResponder responder;
        QString directory;
        responder.expect([&](QWidget *dialog) {
            directory = qobject_cast<QFileDialog *>(dialog)->directory().canonicalPath();
            qobject_cast<QFileDialog *>(dialog)->reject();
        });
        window->pressButton(window->importAction());
        QCOMPARE(directory, folder.filePath("archives"));
        window->close();
        window.reset(); // before the memory
    }

    // However often: each would keep a thread and some megabytes.
    void importsLeaveNoWindows()
    {
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        QVERIFY(folder.write("damaged.tgz", "no archive"));
        const auto dialogs = [this] { return window->findChildren<QFileDialog *>().size(); };
        const auto bars = [this] { return window->findChildren<QProgressBar *>().size(); };
        const int dialogsBefore = dialogs(), barsBefore = bars();
        ModalResponder responder;
        for (int i = 0; i < 2; ++i) {
            responder.expect([&](QWidget *dialog) {
                auto *field = dialog->findChild<QLineEdit *>("fileNameEdit");
                field->setText(folder.filePath("damaged.tgz"));
                QTest::keyClick(field, Qt::Key_Return);
            });
            responder.expectMessageBox(QMessageBox::Yes);
            window->pressButton(window->importAction());
            QTRY_COMPARE_WITH_TIMEOUT(responder.pending(), 0, 20000);
        }
        QTRY_COMPARE(dialogs(), dialogsBefore);
        QTRY_COMPARE(bars(), barsBefore);
    }

    void archiveThatIsDroppedIsImported()
    {
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs, false);
        const QString archive = folder.filePath("dropped.tgz");
        QVERIFY(QFile::copy(SAMPLE_ARCHIVE, archive));
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(archive)});
        const QPoint place = window->rect().center();
        QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.get(), &enter);
        QVERIFY(enter.isAccepted());
        QSignalSpy imported(window.get(), &MainWindow::fileImported);
        QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.get(), &drop);
        QVERIFY(drop.isAccepted());
        QTRY_COMPARE_WITH_TIMEOUT(imported.count(), 1, 60000);
        QCOMPARE(window->openJobName(), QString("dropped"));
        QTRY_VERIFY(!QApplication::testAttribute(Qt::AA_DontUseNativeDialogs));
        QVERIFY(QDir("job/dropped").removeRecursively());
    }

    void exportNeedsAnOpenJob()
    {
        QVERIFY(window->importAction()->isEnabled());
        QVERIFY(!window->exportAction()->isEnabled());
        window->openJob("beacon");
        QVERIFY(window->exportAction()->isEnabled());
    }

    void oneClickOpensOneDialogOfTheOpenJob()
    {
        window->openJob("beacon");
        window->pressButton(window->exportAction());
        QTRY_COMPARE(exportDialogs().size(), 1);
        QTest::qWait(100);
        QCOMPARE(exportDialogs().size(), 1);
    }

    void twoClicksOpenTwoDialogs()
    {
        window->openJob("beacon");
        window->pressButton(window->exportAction());
        QTRY_COMPARE(exportDialogs().size(), 1);
        window->exportAction()->trigger();
        QTRY_COMPARE(exportDialogs().size(), 2);
    }

    void exportRequestOfAnotherPluginDoesWhatAClickDoes()
    {
        window->openJob("beacon");
        sendToPlugin(messages::RequestExport);
        QTRY_COMPARE(exportDialogs().size(), 1);
    }

    void exportRequestWithoutAJobOpensNothing()
    {
        sendToPlugin(messages::RequestExport);
        QTest::qWait(100);
        QCOMPARE(exportDialogs().size(), 0);
    }

    void importRequestOfAnotherPluginOpensTheFileDialog()
    {
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        ModalResponder responder;
        QString title;
        QWidget *parent = nullptr;
        responder.expect([&](QWidget *dialog) {
            title = dialog->windowTitle();
            parent = dialog->parentWidget();
            qobject_cast<QFileDialog *>(dialog)->reject();
        });
        sendToPlugin(messages::RequestImport);
        QCOMPARE(responder.pending(), 0);
        QCOMPARE(title, QString("Import"));
        QCOMPARE(parent, static_cast<QWidget *>(window.get()));
    }

    void layerThatIsBeingReadDoesNotHoldTheExportUp()
    {
        window->openJob("beacon"); // begins to read its first copper layer
        QVERIFY(window->isReadingLayer());
        window->pressButton(window->exportAction());
        QTRY_COMPARE(exportDialogs().size(), 1);
        QTRY_COMPARE_WITH_TIMEOUT(window->findChild<BoardView *>()->title(), QString("TOP"), 20000);
    }

    void parentWidgetIsReachedThroughTheExportedName()
    {
        const LoadedPlugin &plugin = PluginHost::instance().plugins().first();
        QVERIFY(setPluginParentWidget(plugin, window.get()));
        LoadedPlugin other = plugin;
        other.file = QCoreApplication::applicationFilePath(); // a module without that name
        QVERIFY(!setPluginParentWidget(other, window.get()));
    }

    void everyLayerOfAnExportHasAResult_data()
    {
        QTest::addColumn<QString>("format");
        QTest::newRow("GDSII") << ".gds";
        QTest::newRow("Gerber") << ".gerber";
    }
    void everyLayerOfAnExportHasAResult()
    {
        QFETCH(QString, format);
        ExportDialog dialog = openDialog(format);
        QVERIFY(dialog.pressOk());
        QTRY_VERIFY(!window->exports().isRunning());
        QCOMPARE(results().layers.size(), dialog.rowCount());
        QVERIFY2(results().isComplete(), qPrintable(results().summary()));
        for (const LayerResult &result : results().layers) {
            QVERIFY(result.file.endsWith(result.layer.toLower() + format));
            QCOMPARE(result.bytes, QFileInfo(result.file).size());
        }
        QVERIFY2(messageBar()->text().startsWith("12 of 12 layers of beacon were written, 1 of them empty."),
                 qPrintable(messageBar()->text()));
        QVERIFY(!messageBar()->isFailure());
        QCOMPARE(redRows(), 0);
    }

    void whatWasExportedIsProvenInTheBackground()
    {
        ExportDialog dialog = openDialog(".gerber");
        chooseOnly(dialog, fewLayers);
        QVERIFY(dialog.pressOk());
        auto *proof = window->findChild<QLabel *>("ExportProof");
        QTRY_COMPARE_WITH_TIMEOUT(proof->text(),
                                  QString::fromUtf8("3 of 3 layers proven within 0.5 \u00b5m."), 60000);
        QVERIFY(proof->isVisible());
        auto *list = window->findChild<QTreeWidget *>("ExportResults");
        for (int row = 0; row < list->topLevelItemCount(); ++row)
            QCOMPARE(list->topLevelItem(row)->text(2), QString("proven"));
        QVERIFY(!messageBar()->isFailure());
        QCOMPARE(redRows(), 0);
    }

    // Somebody changes a file as soon as it is there.
    void fileThatIsNotItsLayerIsToldWithItsPlaces()
    {
        messageBar()->show(MessageBar::Kind::Failure, "an export before failed");
        ExportDialog dialog = openDialog(".gerber");
        chooseOnly(dialog, fewLayers);
        bool isChanged = false;
        connect(&window->exports(), &ExportWatch::changed, this, [&] {
            ExportResults copy = results();
            if (isChanged || !copy.find("bottom") || !copy.find("bottom")->isGood())
                return;
            QFile file(copy.find("bottom")->file);
            QVERIFY(file.open(QIODevice::ReadWrite));
            const QByteArray text =
                file.readAll().replace("M02*", "G36*\nX90000000Y90000000D02*\nG01*\nX91000000D01*\n"
                                               "Y92000000D01*\nX90000000D01*\nY90000000D01*\nG37*\nM02*");
            QVERIFY(file.resize(0) && file.write(text) == text.size());
            isChanged = true;
        });
        QVERIFY(dialog.pressOk());
        QTRY_VERIFY_WITH_TIMEOUT(!window->exports().isRunning() && !window->verifier().isRunning(), 60000);
        QVERIFY(isChanged);
        const QString expected =
            QString::fromUtf8("2 of 3 layers proven within 0.5 \u00b5m. Not proven: BOTTOM.");
        QCOMPARE(window->findChild<QLabel *>("ExportProof")->text(), expected);
        QVERIFY(messageBar()->isFailure());
        QCOMPARE(messageBar()->text(),
                 "an export before failed\n3 of 3 layers of beacon were written. " + expected);
        QVERIFY(window->statusBar()->currentMessage().isEmpty()); // nothing is being exported any longer
        QCOMPARE(redRows(), 1);
        auto *list = window->findChild<QTreeWidget *>("ExportResults");
        const QTreeWidgetItem *bottom = list->findItems("BOTTOM", Qt::MatchExactly).value(0);
        QCOMPARE(bottom->text(2), QString("not proven, 1 place(s) differ"));
        QCOMPARE(bottom->childCount(), 1);
        QVERIFY2(bottom->child(0)->text(0).contains("too much at 90."),
                 qPrintable(bottom->child(0)->text(0)));
        // A click on the place shows it.
        QSignalSpy chosen(window->findChild<ResultsPane *>(), &ResultsPane::placeChosen);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                          list->visualItemRect(bottom->child(0)).center());
        QCOMPARE(chosen.count(), 1);
        QCOMPARE(chosen[0][0].toString(), QString("BOTTOM"));
        QCOMPARE(chosen[0][1].toInt(), 0);
        QTRY_VERIFY(isShown({90.5e6, 91.0e6}, 0.1e6));
        QTest::mouseClick(messageBar()->findChild<QToolButton *>("Dismiss"), Qt::LeftButton);
    }

    void aMovedPadIsMarkedWhereTheViewShowsItsLayer_data()
    {
        QTest::addColumn<bool>("isTurned");
        QTest::newRow("as it is") << false;
        QTest::newRow("mirrored and rotated") << true;
    }
    void aMovedPadIsMarkedWhereTheViewShowsItsLayer()
    {
        QFETCH(const bool, isTurned);
        ExportDialog dialog = openDialog(".gerber");
        chooseOnly(dialog, fewLayers);
        cam::ExportOptions options;
        for (int row = 0; row < dialog.rowCount() && isTurned; ++row) {
            LayerChange change;
            change.mirror = options.mirror = true;
            change.angle = options.angle = 90.0;
            QVERIFY(dialog.layer(row) != "BOTTOM" || dialog.setRow(row, change));
        }
        cam::Point pad; // nanometres of the file, where it should be
        connect(&window->exports(), &ExportWatch::changed, this, [&] {
            ExportResults copy = results();
            if (pad != cam::Point() || !copy.find("bottom") || !copy.find("bottom")->isGood())
                return;
            pad = movePad(copy.find("bottom")->file);
        });
        QVERIFY(dialog.pressOk());
        QTRY_VERIFY_WITH_TIMEOUT(!window->exports().isRunning() && !window->verifier().isRunning(), 60000);
        QVERIFY(pad != cam::Point());
        auto *list = window->findChild<QTreeWidget *>("ExportResults");
        QTRY_COMPARE(redRows(), 1);
        const QTreeWidgetItem *bottom = list->findItems("BOTTOM", Qt::MatchExactly).value(0);
        QStringList texts; // where it was, and where it is
        for (int i = 0; i < bottom->childCount(); ++i)
            texts << bottom->child(i)->text(0);
        QVERIFY2(!texts.filter("missing").isEmpty() && !texts.filter("too much").isEmpty(),
                 qPrintable(texts.join('\n')));
        // By the keyboard, while the view shows layers as the dialog exports them.
        list->setFocus();
        list->setCurrentItem(bottom->child(0));
        QTest::keyClick(list, Qt::Key_Return);
        QTRY_VERIFY(isShown(pad, 1.5e6));
        QTRY_VERIFY(window->isViewDrawn());
        QVERIFY(differencePixels() > 60);
        // Without the dialog the view shows the layer as it is in the job.
        closeExportDialogs();
        const cam::Point place = drawing::inverse(cam::exportTransform(options, cam::Point{0.0, 0.0}))(pad);
        QTRY_COMPARE(window->findChild<BoardView *>()->title(), QString("BOTTOM"));
        list->scrollToItem(bottom->child(1));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                          list->visualItemRect(bottom->child(1)).center());
        QTRY_VERIFY(isShown(place, 1.5e6));
        QTRY_VERIFY(window->isViewDrawn());
        QVERIFY(differencePixels() > 60);
        // A key hides and shows them.
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        window->findChild<BoardView *>()->setFocus();
        QTest::keyClick(window->findChild<BoardView *>(), Qt::Key_D);
        QTRY_COMPARE(differencePixels(), 0);
        // The next export forgets them.
        QTest::keyClick(window->findChild<BoardView *>(), Qt::Key_D);
        QTRY_VERIFY(differencePixels() > 60);
        dialog = openDialog(".gerber");
        chooseOnly(dialog, {"SILK_BOT"});
        QVERIFY(dialog.pressOk());
        QTRY_COMPARE(differencePixels(), 0);
        QTest::mouseClick(messageBar()->findChild<QToolButton *>("Dismiss"), Qt::LeftButton);
    }

    void filesAreComparedWithTheLayersThatTheyAreNamedLike()
    {
        {
            ExportDialog dialog = openDialog(".gerber");
            chooseOnly(dialog, fewLayers);
            QVERIFY(dialog.pressOk());
            QTRY_VERIFY(!window->exports().isRunning());
            closeExportDialogs();
        }
        const QString drill = results().folder() + "/drill.gerber",
                      bottom = results().folder() + "/bottom.gerber";
        QVERIFY(QFile::remove(bottom) && QFile::copy(drill, bottom)); // not what its name says
        QVERIFY(QFile::copy(drill, results().folder() + "/else.gerber"));
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        ModalResponder responder;
        responder.expect([&](QWidget *window) {
            auto *chooser = qobject_cast<QFileDialog *>(window);
            QVERIFY(chooser);
            chooser->setDirectory(QFileInfo(drill).path());
            chooser->findChild<QLineEdit *>("fileNameEdit")
                ->setText("\"bottom.gerber\" \"drill.gerber\" \"else.gerber\"");
            QTest::keyClick(chooser->findChild<QLineEdit *>("fileNameEdit"), Qt::Key_Return);
        });
        window->findChild<QAction *>("CompareFiles")->trigger();
        QCOMPARE(responder.pending(), 0);
        QVERIFY2(messageBar()->text().contains("else.gerber"), qPrintable(messageBar()->text()));
        QTRY_VERIFY_WITH_TIMEOUT(window->verifier().proofs().size() == 2, 60000);
        QCOMPARE(window->verifier().unproven(), QStringList{"BOTTOM"});
        auto *list = window->findChild<QTreeWidget *>("ExportResults");
        QCOMPARE(list->topLevelItemCount(), 2);
        QCOMPARE(list->findItems("DRILL", Qt::MatchExactly).value(0)->text(2), QString("proven"));
        QVERIFY(list->findItems("BOTTOM", Qt::MatchExactly).value(0)->childCount() > 2);
        QTest::mouseClick(messageBar()->findChild<QToolButton *>("Dismiss"), Qt::LeftButton);
    }

    void nextExportEndsTheVerification()
    {
        ExportDialog dialog = openDialog(".gerber");
        chooseOnly(dialog, fewLayers);
        QVERIFY(dialog.pressOk());
        QTRY_VERIFY(!window->exports().isRunning());
        QVERIFY(dialog.pressOk());
        QTRY_VERIFY(window->exports().isRunning() || window->verifier().proofs().isEmpty());
        QTRY_VERIFY(!window->exports().isRunning());
        QTRY_VERIFY_WITH_TIMEOUT(!window->verifier().isRunning(), 60000);
        QCOMPARE(window->verifier().proofs().size(), fewLayers.size()); // each once
        // The end of the program does not wait for one.
        QVERIFY(dialog.pressOk());
        QTRY_VERIFY(!window->exports().isRunning());
        closeExportDialogs();
        window.reset();
    }

    void layerThatFailsIsRedWithItsReasonUntilDismissed()
    {
        QVERIFY(QDir().mkpath("out/OX/beacon/top.gerber")); // a folder is in the way
        ExportDialog dialog = openDialog(".gerber");
        QVERIFY(dialog.pressOk());
        QTRY_VERIFY(!window->exports().isRunning());
        QVERIFY(!results().isComplete());
        for (const LayerResult &result : results().layers)
            QCOMPARE(result.isGood(), result.layer != "TOP");
        ExportResults copy = results();
        QVERIFY2(copy.find("top")->reason.contains("top.gerber"), qPrintable(copy.find("top")->reason));
        QVERIFY2(messageBar()->text().startsWith(
                     "11 of 12 layers of beacon were written, 1 of them empty, 1 failed."),
                 qPrintable(messageBar()->text()));
        QVERIFY(messageBar()->isFailure());
        QCOMPARE(redRows(), 1);
        // A later success does not cover it.
        messageBar()->show(MessageBar::Kind::Good, "something else went well");
        QVERIFY(messageBar()->isFailure());
        QVERIFY(messageBar()->text().contains("1 failed"));
        QTest::mouseClick(messageBar()->findChild<QToolButton *>("Dismiss"), Qt::LeftButton);
        QVERIFY(messageBar()->text().isEmpty());
        QVERIFY(QDir("out/OX/beacon/top.gerber").removeRecursively());
    }

    void layersOfACancelledExportAreCancelled()
    {
        ExportDialog dialog = openDialog(".gds");
        QTimer cancel;
        connect(&cancel, &QTimer::timeout, this, [] {
            for (QWidget *open : QApplication::topLevelWidgets()) {
                if (auto *progress = qobject_cast<QProgressDialog *>(open))
                    QTest::keyClick(progress, Qt::Key_Escape);
            }
        });
        cancel.start(20);
        QVERIFY(dialog.pressOk());
        cancel.stop();
        QTRY_VERIFY(!window->exports().isRunning());
        QCOMPARE(results().layers.size(), dialog.rowCount());
        const int cancelled = results().count(LayerResult::State::Cancelled);
        QVERIFY(cancelled > 0);
        const int written =
            results().count(LayerResult::State::Written) + results().count(LayerResult::State::Empty);
        QCOMPARE(written + cancelled, dialog.rowCount());
        QVERIFY2(messageBar()->text().contains(QString("%1 cancelled").arg(cancelled)),
                 qPrintable(messageBar()->text()));
        QVERIFY(messageBar()->isFailure());
        QCOMPARE(redRows(), cancelled);
    }

    void recordedExportIsLoadedIntoANewDialog()
    {
        HostSettings values;
        values.jobFolder = folder.filePath("job");
        values.exportDatabase = folder.filePath("exports.sqlite");
        QVERIFY(hostsettings::write(values));
        cleanup();
        init();
        QDockWidget *dock = window->findChild<QDockWidget *>("HistoryDock");
        dock->raise();
        auto *list = window->findChild<QTreeWidget *>("ExportHistory");
        QTRY_VERIFY(list->isVisible());
        QCOMPARE(list->topLevelItemCount(), 0);
        {
            ExportDialog dialog = openDialog(".gerber");
            auto *table = dialog.window()->findChild<QTableWidget *>();
            for (int row = 0; row < dialog.rowCount(); ++row) {
                const QModelIndex check = table->model()->index(row, 0);
                if (dialog.layer(row) != "TOP") {
                    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                                      table->visualRect(check).center());
                    continue;
                }
                qobject_cast<QComboBox *>(table->cellWidget(row, 2))->setCurrentText("270");
                qobject_cast<QComboBox *>(table->cellWidget(row, 3))->setCurrentText("Yes");
                table->item(row, 4)->setText("1.5");
            }
            QVERIFY(dialog.pressOk());
            QTRY_VERIFY(!window->exports().isRunning());
            closeExportDialogs();
        }
        dock->raise();
        QTRY_COMPARE(list->topLevelItemCount(), 1);
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Down);
        window->findChild<QAction *>("RepeatExport")->trigger();
        QTRY_COMPARE(exportDialogs().size(), 1);
        ExportDialog dialog = ExportDialog::find();
        const auto top = [&dialog] {
            int row = 0;
            while (dialog.layer(row) != "TOP")
                ++row;
            return row;
        };
        QTRY_VERIFY(dialog.isChecked(top()));
        const LayerChange change = dialog.change(top());
        QCOMPARE(change.angle, 270.0);
        QVERIFY(change.mirror && !change.negate);
        QCOMPARE(change.xScale, 1.5);
        QCOMPARE(change.yScale, 1.0);
        int checked = 0;
        for (int row = 0; row < dialog.rowCount(); ++row)
            checked += dialog.isChecked(row) ? 1 : 0;
        QCOMPARE(checked, 1);
        // The record has the path as the plug-in gave it out: in lower case.
        QCOMPARE(QFileInfo(dialog.path()), QFileInfo(folder.filePath("out")));
        QCOMPARE(dialog.secondFolder().toUpper(), QString("OX"));
        QVERIFY(QFile::remove("oxconfig.ini") && QFile::remove("exports.sqlite"));
    }

    // The layer TOP is the one that is shown when the job has been opened.
    void theViewShowsWhatTheOpenDialogExports()
    {
        ExportDialog dialog = openDialog(".gds");
        auto *view = window->findChild<BoardView *>();
        QTRY_COMPARE_WITH_TIMEOUT(view->title(), QString("TOP"), 20000);
        QTRY_VERIFY(view->isDrawn());
        const QImage before = view->grab().toImage();
        auto *table = dialog.window()->findChild<QTableWidget *>();
        for (int row = 0; row < dialog.rowCount(); ++row) {
            if (dialog.layer(row) != "TOP")
                continue;
            qobject_cast<QComboBox *>(table->cellWidget(row, 2))->setCurrentText("90");
            qobject_cast<QComboBox *>(table->cellWidget(row, 6))->setCurrentText("Yes");
        }
        QTRY_COMPARE_WITH_TIMEOUT(view->title(),
                                  QString::fromUtf8("TOP, as exported: negated, rotated by 90\u00b0"), 20000);
        QTRY_VERIFY(view->isDrawn());
        QVERIFY(view->grab().toImage() != before);
        auto *asExported = window->findChild<QAction *>("AsExported");
        asExported->trigger();
        QTRY_COMPARE_WITH_TIMEOUT(view->title(), QString("TOP"), 20000);
        QTRY_VERIFY(view->isDrawn());
        QCOMPARE(view->grab().toImage(), before);
        asExported->trigger();
        QTRY_VERIFY_WITH_TIMEOUT(view->title().contains("negated"), 20000);
        dialog.pressCancel(); // what it was to export counts no more
        QTRY_COMPARE_WITH_TIMEOUT(view->title(), QString("TOP"), 20000);
    }

    void closingTheProgramWithAnOpenDialogIsSafe()
    {
        window->openJob("beacon");
        window->pressButton(window->exportAction());
        QTRY_COMPARE(exportDialogs().size(), 1);
        QVERIFY(!window->close()); // the dialog is modal
        closeExportDialogs();
        QVERIFY(window->close());
    }
};

QTEST_MAIN(tst_Workbench)
#include "tst_workbench.moc"
