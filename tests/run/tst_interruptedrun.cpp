// An export run that the host interferes with: it deletes the dialog or the plug-in meanwhile, its receivers
// throw, somebody works on in the dialog. Most of these tests say more under the address sanitizer.

#include "tests/export/opendialog.h"
#include "tests/support/fileprocessaccess.h"
#include "tests/support/logcapture.h"
#include "tests/support/modalresponder.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QProgressBar>
#include <QProgressDialog>
#include <QSemaphore>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <stdexcept>
#include <utility>

using namespace layer_column;
using recording_host::Delivery;
using recording_host::ExportCall;
using recording_host::layer;
using recording_host::state;

namespace {

// Runs `work` once, from an event of its own, when the run's progress dialog is on the screen.
class WhenShown : public QObject
{
public:
    WhenShown(const OpenDialog &dialog, std::function<void(QProgressDialog *)> work)
    {
        connect(&m_timer, &QTimer::timeout, this, [this, &dialog, work] {
            auto *progress = dialog.get() ? dialog->findChild<QProgressDialog *>() : nullptr;
            if (!progress || !progress->isVisible())
                return;
            m_timer.stop();
            isDone = true;
            work(progress);
            m_done.release(1000); // for any number of exports
        });
        m_timer.start(5);
    }
    // For the thread of an export; gives up after a minute.
    bool wait() { return m_done.tryAcquire(1, 60000); }
    bool isDone = false;

private:
    QSemaphore m_done;
    QTimer m_timer;
};

// Runs `work` within the Show event of the progress dialog.
class OnShow : public QObject
{
public:
    explicit OnShow(std::function<void()> work) : m_work(std::move(work)) { qApp->installEventFilter(this); }
    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (m_work && event->type() == QEvent::Show && qobject_cast<QProgressDialog *>(object))
            std::exchange(m_work, nullptr)();
        return false;
    }

private:
    std::function<void()> m_work;
};

int progressDialogs()
{
    const QWidgetList all = QApplication::allWidgets();
    return int(std::count_if(all.begin(), all.end(),
                             [](QWidget *widget) { return qobject_cast<QProgressDialog *>(widget); }));
}

bool isLogged(const LogCapture &log, const std::string &message)
{
    const std::vector<LogLine> lines = log.lines();
    return std::any_of(lines.begin(), lines.end(),
                       [&message](const LogLine &line) { return line.message == message; });
}

// What a person can change in the dialog, as one text.
QString contents(const OpenDialog &dialog)
{
    QStringList all;
    for (const char *edit : {"PathLineEdit", "SecondDirLineEdit", "ReferenceXLineEdit", "ReferenceYLineEdit"})
        all << dialog.edit(edit)->text();
    all << dialog.format()->currentText();
    for (int row = 0; row < dialog.table()->rowCount(); ++row) {
        all << QString::number(dialog.isChecked(row)) << dialog.text(row, XScale) << dialog.text(row, YScale);
        for (int column : {Rotate, Mirror, Negate})
            all << dialog.combo(row, column)->currentText();
    }
    return all.join('|');
}

} // namespace

class tst_InterruptedRun : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void theHostMayDeleteTheDialog_data();
    void theHostMayDeleteTheDialog();
    void theHostMayDeleteTheProgressDialog();
    void theHostMayDeleteThePluginInTheReport();
    void theHostMayDeleteThePluginInItsRequests_data();
    void theHostMayDeleteThePluginInItsRequests();
    void theHostMayDeleteThePluginInTheJobFolderMessage();
    void theHostMayDeleteThePluginBetweenTwoFiles();
    void theHostMayDeleteTheParentWidget();
    void aThrowingReceiverHarmsNobody_data();
    void aThrowingReceiverHarmsNobody();
    void nothingCanBeChanged_data();
    void nothingCanBeChanged();
    void theDialogLooksBusyWithoutItsProgressDialog();
    void aLostFocusIsNoEndOfEditing();
};

void tst_InterruptedRun::init()
{
    recording_host::reset();
}

void tst_InterruptedRun::theHostMayDeleteTheDialog_data()
{
    QTest::addColumn<QString>("when");
    QTest::addColumn<int>("exports");
    QTest::newRow("in the report") << "report" << 0;
    QTest::newRow("as the progress dialog appears") << "show" << 0;
    QTest::newRow("in the poll loop") << "poll" << 1;
    QTest::newRow("as the progress is set") << "value" << 1;
    QTest::newRow("after the progress dialog was closed") << "closed" << 1;
}

void tst_InterruptedRun::theHostMayDeleteTheDialog()
{
    QFETCH(QString, when);
    QFETCH(int, exports);
    const OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2, 3, 4});
    const auto remove = [&dialog] { delete dialog.get(); };
    std::unique_ptr<OnShow> onShow;
    std::unique_ptr<WhenShown> whenShown;
    std::atomic<bool> hasEnded{false};
    if (when == "report") {
        connect(dialog.get(), &Export::on_send_exprot_xml_to_fileprocess, this, remove);
    } else if (when == "show") {
        onShow = std::make_unique<OnShow>(remove);
    } else {
        whenShown = std::make_unique<WhenShown>(dialog, [&](QProgressDialog *progress) {
            if (when == "closed")
                progress->close();
            if (when != "value") {
                remove();
                return;
            }
            // Setting a value handles events, this one among them, and then goes on with the dialog.
            connect(progress->findChild<QProgressBar *>(), &QProgressBar::valueChanged, this,
                    [&remove] { QTimer::singleShot(0, remove); });
        });
    }
    state().onExport = [&](const ExportCall &call) {
        if (whenShown)
            whenShown->wait();
        call.progress->set_value(33);
        QThread::msleep(500);
        return hasEnded = true;
    };
    dialog->findChild<QPushButton *>("OKButton")->click();
    QVERIFY(!dialog.get());
    QCOMPARE(int(state().exports.size()), exports);
    QCOMPARE(hasEnded.load(), exports > 0); // a layer that was begun has been finished
    QCOMPARE(progressDialogs(), 0);

    // The next dialog exports as ever.
    state().onExport = nullptr;
    const OpenDialog next({layer("BOARD", "SIGNAL", "next")});
    next.setChecked({0});
    next.button("OKButton")->click();
    QCOMPARE(state().exports.back().layer, std::string("next"));
}

void tst_InterruptedRun::theHostMayDeleteTheProgressDialog()
{
    const OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2, 4});
    WhenShown whenShown(dialog, [](QProgressDialog *progress) { delete progress; });
    state().onExport = [&whenShown](const ExportCall &) { return whenShown.wait(); };
    dialog.button("OKButton")->click();
    QCOMPARE(state().exports.size(), size_t(1)); // as when it is closed
    QVERIFY(dialog.button("OKButton")->isEnabled());
    QVERIFY(dialog->isEnabled());
}

void tst_InterruptedRun::theHostMayDeleteThePluginInTheReport()
{
    const OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    dialog.setChecked({0});
    auto plugin = std::make_unique<FileProcess>();
    connect(dialog.get(), SIGNAL(on_send_exprot_xml_to_fileprocess(PluginMetaData)), plugin.get(),
            SLOT(on_send_exprot_xml(PluginMetaData)));
    connect(plugin.get(), &FileProcess::sendMsgToManager, this, [&plugin] { plugin.reset(); });
    dialog.button("OKButton")->click();
    QVERIFY(!plugin);
    QCOMPARE(state().exports.size(), size_t(1));
}

void tst_InterruptedRun::theHostMayDeleteThePluginInItsRequests_data()
{
    QTest::addColumn<int>("delivery");
    QTest::addColumn<int>("deliveries");
    QTest::newRow("first, by the signal") << 0 << 1;
    QTest::newRow("second, directly") << 1 << 2;
    QTest::newRow("third, by the signal") << 2 << 3;
    QTest::newRow("fourth, directly") << 3 << 4;
}

void tst_InterruptedRun::theHostMayDeleteThePluginInItsRequests()
{
    QFETCH(int, delivery);
    QFETCH(int, deliveries);
    auto plugin = std::make_unique<FileProcess>();
    const std::unique_ptr<QAction> action(plugin->InitExportTool());
    QWidget parent;
    plugin->setParentWidget(&parent);
    int seen = 0;
    const auto take = [&] {
        if (seen++ == delivery)
            plugin.reset();
    };
    connect(plugin.get(), &FileProcess::sendMsgToManager, this, take);
    state().onDelivery = [&take](const Delivery &) { take(); };
    action->trigger();
    QVERIFY(!plugin);
    QCOMPARE(seen, deliveries);
}

void tst_InterruptedRun::theHostMayDeleteThePluginInTheJobFolderMessage()
{
    const TemporaryWorkingFolder folder;
    auto plugin = std::make_unique<FileProcess>();
    connect(plugin.get(), &FileProcess::sendMsgToManager, this, [&plugin] { plugin.reset(); });
    FileProcess *const object = plugin.get();
    const std::unique_ptr<QAction> action(object->InitImportTool(nullptr));
    QVERIFY(!plugin);
    QVERIFY(action);
    action->trigger(); // connected to nobody
}

void tst_InterruptedRun::theHostMayDeleteThePluginBetweenTwoFiles()
{
    const TemporaryWorkingFolder folder;
    QVERIFY(folder.write("a.gds", "a") && folder.write("b.gds", "b"));
    auto plugin = std::make_unique<FileProcess>();
    int sent = 0;
    connect(plugin.get(), &FileProcess::sendMsgToManager, this, [&] {
        ++sent;
        plugin.reset();
    });
    ModalResponder user;
    user.expect([&folder](QWidget *window) {
        auto *field = window->findChild<QLineEdit *>("fileNameEdit");
        field->setText('"' + folder.filePath("a.gds") + "\" \"" + folder.filePath("b.gds") + '"');
        QTest::keyClick(field, Qt::Key_Return);
    });
    FileProcess *const object = plugin.get();
    object->on_ImportACT_clicked();
    QVERIFY(!plugin);
    QCOMPARE(sent, 1);
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (qobject_cast<QFileDialog *>(window))
            window->deleteLater();
    }
}

void tst_InterruptedRun::theHostMayDeleteTheParentWidget()
{
    FileProcess plugin;
    auto parent = std::make_unique<QWidget>();
    plugin.setParentWidget(parent.get());
    parent.reset();
    plugin.on_ExportACT_clicked();
    QCOMPARE(state().deliveries.size(), size_t(2));
    QVERIFY(!state().deliveries[0].sender);
    QVERIFY(!state().deliveries[1].sender);
}

void tst_InterruptedRun::aThrowingReceiverHarmsNobody_data()
{
    QTest::addColumn<bool>("isException");
    QTest::newRow("std::exception") << true;
    QTest::newRow("anything") << false;
}

void tst_InterruptedRun::aThrowingReceiverHarmsNobody()
{
    QFETCH(bool, isException);
    const OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    dialog.setChecked({0});
    const auto fail = connect(dialog.get(), &Export::on_send_exprot_xml_to_fileprocess, this, [isException] {
        if (isException)
            throw std::runtime_error("the list is full");
        throw 5;
    });
    const LogCapture log;
    bool wasThrown = false;
    try {
        dialog->on_OKButton_clicked();
    } catch (...) {
        wasThrown = true;
    }
    QVERIFY(!wasThrown);
    QVERIFY(isLogged(log, "A receiver of the export's report has failed with an exception"));
    QCOMPARE(state().exports.size(), size_t(1));
    QVERIFY(dialog.button("OKButton")->isEnabled());
    disconnect(fail);

    const OpenDialog other({layer("BOARD", "SIGNAL", "other")});
    other.setChecked({0});
    other.button("OKButton")->click();
    QCOMPARE(state().exports.size(), size_t(2));
    const QPointer<Export> alive(dialog.get());
    QVERIFY(dialog->close());
    QTRY_VERIFY(!alive);
}

void tst_InterruptedRun::nothingCanBeChanged_data()
{
    QTest::addColumn<bool>("isClosed");
    QTest::addColumn<QString>("what");
    for (const char *what : {"check", "keys", "Return", "combo box", "F2", "menu", "slots"}) {
        QTest::addRow("%s, with the progress dialog", what) << false << what;
        QTest::addRow("%s, without it", what) << true << what;
    }
}

// The widgets are worked on directly, without the windows of a real desktop in between: before the progress
// dialog appears, and when it has been closed, they get their input so.
void tst_InterruptedRun::nothingCanBeChanged()
{
    QFETCH(bool, isClosed);
    QFETCH(QString, what);
    const OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2});
    dialog.edit("PathLineEdit")->setText(dialog.folder());
    dialog.table()->setCurrentCell(3, XScale);
    const QString before = contents(dialog);
    QString during;
    bool isOkEnabled = true;
    bool hasMenu = true;
    WhenShown whenShown(dialog, [&](QProgressDialog *progress) {
        if (isClosed)
            progress->close();
        if (what == "check") {
            dialog.clickCell(0, Check);
        } else if (what == "keys") {
            for (const char *edit :
                 {"PathLineEdit", "SecondDirLineEdit", "ReferenceXLineEdit", "ReferenceYLineEdit"})
                QTest::keyClick(dialog.edit(edit), Qt::Key_1);
        } else if (what == "Return") {
            QTest::keyClick(dialog.edit("PathLineEdit"), Qt::Key_Return);
        } else if (what == "combo box") {
            QTest::keyClick(dialog.combo(2, Rotate), Qt::Key_Down);
            QTest::keyClick(dialog.format(), Qt::Key_Down);
        } else if (what == "F2") {
            QTest::keyClick(dialog.table(), Qt::Key_F2);
        } else if (what == "menu") {
            QContextMenuEvent request(QContextMenuEvent::Mouse, QPoint(5, 5));
            QTimer::singleShot(0, [] {
                if (QWidget *popup = QApplication::activePopupWidget())
                    popup->close();
            });
            QCoreApplication::sendEvent(dialog.table()->viewport(), &request);
        } else {
            dialog->on_SelectAll_clicked();
            dialog->on_BoardLayer_clicked();
            dialog->on_SetParamater_clicked();
            dialog->on_PathLineEdit_finished();
        }
        during = contents(dialog);
        isOkEnabled = dialog.button("OKButton")->isEnabled();
        hasMenu = dialog.table()->findChild<QMenu *>();
    });
    state().onExport = [&whenShown](const ExportCall &) { return whenShown.wait(); };
    dialog.button("OKButton")->click();
    QVERIFY(whenShown.isDone);
    QCOMPARE(during, before);
    QCOMPARE(contents(dialog), before);
    QVERIFY(!isOkEnabled);
    QVERIFY(!hasMenu);
    QVERIFY(!dialog.editor());
    for (int row = 0; row < 6; ++row)
        QCOMPARE(dialog.table()->cellWidget(row, Time) != nullptr, row == 2);

    // Afterwards everything works again.
    dialog.clickCell(0, Check);
    QVERIFY(dialog.isChecked(0));
    QVERIFY(dialog.button("OKButton")->isEnabled());
}

void tst_InterruptedRun::theDialogLooksBusyWithoutItsProgressDialog()
{
    const OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    dialog.setChecked({0});
    bool wasEnabled = false;
    bool isEnabled = true;
    WhenShown whenShown(dialog, [&](QProgressDialog *progress) {
        wasEnabled = dialog->isEnabled();
        progress->close();
        isEnabled = dialog->isEnabled();
    });
    state().onExport = [&whenShown](const ExportCall &) { return whenShown.wait(); };
    dialog.button("OKButton")->click();
    QVERIFY(wasEnabled);
    QVERIFY(!isEnabled);
    QVERIFY(dialog->isEnabled());
}

// The progress dialog takes the focus away from the path, which need not be a folder that can be made.
void tst_InterruptedRun::aLostFocusIsNoEndOfEditing()
{
    const OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    dialog.setChecked({0});
    QVERIFY(QFile(dialog.folder() + "/file").open(QIODevice::WriteOnly));
    dialog.edit("PathLineEdit")->setText(dialog.folder() + "/file/below");
    WhenShown whenShown(dialog, [&dialog](QProgressDialog *) {
        QFocusEvent out(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
        QCoreApplication::sendEvent(dialog.edit("PathLineEdit"), &out);
    });
    state().onExport = [&whenShown](const ExportCall &) { return whenShown.wait(); };
    bool wasWarned = false;
    QTimer boxes;
    connect(&boxes, &QTimer::timeout, [&wasWarned] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            wasWarned = true;
            box->done(0);
        }
    });
    boxes.start(5);
    dialog->on_OKButton_clicked();
    QVERIFY(!wasWarned);
}

QTEST_MAIN(tst_InterruptedRun)
#include "tst_interruptedrun.moc"
