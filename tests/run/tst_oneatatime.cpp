// Imports and exports take turns: while one of them has a job in the background, a request for another does
// nothing but write a line to the log. Where one of them waits for the user, nothing is kept waiting.

#include "plugin/interface/messages.h"
#include "tests/archive/archivebuilder.h"
#include "tests/export/opendialog.h"
#include "tests/support/fileprocessaccess.h"
#include "tests/support/logcapture.h"
#include "tests/support/modalresponder.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QProgressBar>
#include <QProgressDialog>
#include <QSemaphore>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <memory>

using recording_host::ExportCall;
using recording_host::layer;
using recording_host::state;

namespace {

// Holds the unpacking up, on the job's thread and between its two stages, where it writes to the debug
// stream, until `release`.
class HeldUnpacking
{
public:
    HeldUnpacking() : m_before(qInstallMessageHandler(handle)) {}
    ~HeldUnpacking() { qInstallMessageHandler(m_before); }

    static void release() { s_released.release(); }

private:
    static void handle(QtMsgType, const QMessageLogContext &, const QString &)
    {
        if (QThread::currentThread() != qApp->thread())
            s_released.acquire();
    }

    static QSemaphore s_released;
    QtMessageHandler m_before;
};

QSemaphore HeldUnpacking::s_released;

bool isUnpackingShown()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget *window : windows) {
        if (window->isVisible() && window->findChild<QProgressBar *>(QString(), Qt::FindDirectChildrenOnly))
            return true;
    }
    return false;
}

// Calls `work` from an event of its own, as soon as `isTime`, unless `test` has ended before.
void when(QObject *test, std::function<bool()> isTime, std::function<void()> work)
{
    QTimer::singleShot(1, test, [test, isTime, work] {
        if (isTime())
            work();
        else
            when(test, isTime, work);
    });
}

QByteArray job(const QByteArray &folder)
{
    return gzip(TarBuilder().folder(folder + "/").file(folder + "/a", "new").bytes());
}

bool isLogged(const LogCapture &log, const std::string &message)
{
    const std::vector<LogLine> lines = log.lines();
    return std::any_of(lines.begin(), lines.end(),
                       [&message](const LogLine &line) { return line.message == message; });
}

} // namespace

class tst_OneAtATime : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void okWhileAnArchiveIsUnpackedIsIgnored();
    void okCannotTurnAFailedImportIntoASuccess();
    void okWhileAFailureIsReportedIsIgnored();
    void importWhileLayersAreExportedIsIgnored_data();
    void importWhileLayersAreExportedIsIgnored();
    void importOutOfTheReportIsIgnored();
    void exportWhileTheImportWaitsForAFile();
    void exportWhileTheImportAsks();

private:
    QString put(const QString &name, const QByteArray &bytes) const
    {
        m_folder->write("mail/" + name, bytes);
        return m_folder->filePath("mail/" + name);
    }
    bool import(const QString &file)
    {
        QString name = QFileInfo(file).completeBaseName();
        return FileProcessAccess::copyDirectory(*m_plugin, file, name);
    }
    void choose(QWidget *window, const QString &file)
    {
        auto *field = window->findChild<QLineEdit *>("fileNameEdit");
        QVERIFY(qobject_cast<QFileDialog *>(window) && field);
        field->setText(file);
        QTest::keyClick(field, Qt::Key_Return);
    }
    void request(qint32 type)
    {
        PluginMetaData data;
        data.msgType = type;
        m_plugin->recMsgFromManager(data);
    }

    std::unique_ptr<TemporaryWorkingFolder> m_folder;
    std::unique_ptr<FileProcess> m_plugin;
    std::unique_ptr<QWidget> m_window; // the import's windows are its children
    std::unique_ptr<QAction> m_importAction;
    std::unique_ptr<ModalResponder> m_user;
};

void tst_OneAtATime::init()
{
    recording_host::reset();
    m_folder = std::make_unique<TemporaryWorkingFolder>();
    m_plugin = std::make_unique<FileProcess>();
    m_window = std::make_unique<QWidget>();
    m_importAction.reset(m_plugin->InitImportTool(m_window.get()));
    m_user = std::make_unique<ModalResponder>();
}

void tst_OneAtATime::cleanup()
{
    QCOMPARE(m_user->pending(), 0);
    m_user.reset();
    m_importAction.reset();
    m_plugin.reset();
    m_window.reset();
    m_folder.reset();
}

void tst_OneAtATime::okWhileAnArchiveIsUnpackedIsIgnored()
{
    const OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    dialog.setChecked({0});
    const QString file = put("ABC.tgz", job("ABC"));
    const LogCapture log;
    {
        const HeldUnpacking held;
        when(m_user.get(), isUnpackingShown, [&dialog] {
            dialog.button("OKButton")->click();
            HeldUnpacking::release();
        });
        QVERIFY(import(file));
    }
    QVERIFY(state().exports.empty());
    QVERIFY(!QDir(dialog.folder() + "/OX").exists());
    QVERIFY(isLogged(log, "An archive is being unpacked; OK was ignored"));
    QVERIFY(dialog.button("OKButton")->isEnabled());
    dialog.button("OKButton")->click();
    QCOMPARE(state().exports.size(), size_t(1));
}

// An export within the import's poll loop would hold it up until the failed job has ended, and a job that has
// ended is one that went well.
void tst_OneAtATime::okCannotTurnAFailedImportIntoASuccess()
{
    const OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    dialog.setChecked({0});
    QVERIFY(m_folder->write("job/ABC/a", "old"));
    state().onExport = [](const ExportCall &) {
        QThread::msleep(1000);
        return true;
    };
    m_user->expectMessageBox(QMessageBox::Yes); // overwrite
    m_user->expectMessageBox(QMessageBox::Yes); // the failure
    const HeldUnpacking held;
    when(m_user.get(), isUnpackingShown, [&dialog] {
        HeldUnpacking::release();
        dialog.button("OKButton")->click();
    });
    // The tar ends in the middle of its file.
    const QByteArray tar = TarBuilder().folder("XYZ/").file("XYZ/a", QByteArray(2000, 'x')).bytesWithoutEnd();
    QVERIFY(!import(put("ABC.tgz", gzip(tar.chopped(1000)))));
    QCOMPARE(readFile(m_folder->filePath("job/ABC/a")), QByteArray("old"));
    QVERIFY(state().exports.empty());
}

// The failed job's clean-up may still be at work.
void tst_OneAtATime::okWhileAFailureIsReportedIsIgnored()
{
    const OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    dialog.setChecked({0});
    m_user->expect([&dialog](QWidget *window) {
        dialog.button("OKButton")->click();
        qobject_cast<QMessageBox *>(window)->done(QMessageBox::Yes);
    });
    QVERIFY(!import(put("ABC.tgz", "no gzip")));
    QVERIFY(state().exports.empty());
}

void tst_OneAtATime::importWhileLayersAreExportedIsIgnored_data()
{
    QTest::addColumn<bool>("byMessage");
    QTest::newRow("action") << false;
    QTest::newRow("10000801") << true;
}

void tst_OneAtATime::importWhileLayersAreExportedIsIgnored()
{
    QFETCH(bool, byMessage);
    const OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    dialog.setChecked({0});
    QSemaphore isAsked;
    state().onExport = [&isAsked](const ExportCall &) { return isAsked.tryAcquire(1, 60000); };
    const auto isRunning = [&dialog] { return dialog->findChild<QProgressDialog *>() != nullptr; };
    const LogCapture log;
    // In case the import does begin, its file dialog is sent away.
    bool wasImportOpen = false;
    QTimer importWatch;
    connect(&importWatch, &QTimer::timeout, [&wasImportOpen] {
        if (auto *chooser = qobject_cast<QFileDialog *>(QApplication::activeModalWidget())) {
            wasImportOpen = true;
            chooser->reject();
        }
    });
    importWatch.start(5);
    when(m_user.get(), isRunning, [&] {
        if (byMessage)
            request(messages::RequestImport);
        else
            m_importAction->trigger();
        isAsked.release();
    });
    dialog.button("OKButton")->click();
    QVERIFY(!wasImportOpen);
    QCOMPARE(state().exports.size(), size_t(1));
    QVERIFY(isLogged(log, "An export is running; the import was ignored"));

    importWatch.stop();
    m_user->expect([](QWidget *window) { qobject_cast<QFileDialog *>(window)->reject(); });
    m_importAction->trigger(); // afterwards it works
}

void tst_OneAtATime::importOutOfTheReportIsIgnored()
{
    const OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    dialog.setChecked({0});
    connect(dialog.get(), &Export::on_send_exprot_xml_to_fileprocess, this,
            [this] { request(messages::RequestImport); });
    dialog.button("OKButton")->click();
    QCOMPARE(state().exports.size(), size_t(1));
}

void tst_OneAtATime::exportWhileTheImportWaitsForAFile()
{
    const OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    dialog.setChecked({0});
    const QString file = put("ABC.tgz", job("ABC"));
    m_user->expect([&](QWidget *window) {
        dialog.button("OKButton")->click();
        choose(window, file);
    });
    request(messages::RequestImport);
    QCOMPARE(state().exports.size(), size_t(1));
    QCOMPARE(readFile(m_folder->filePath("job/ABC/a")), QByteArray("new"));
}

void tst_OneAtATime::exportWhileTheImportAsks()
{
    const OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    dialog.setChecked({0});
    QVERIFY(m_folder->write("job/ABC/a", "old"));
    m_user->expect([&dialog](QWidget *window) {
        dialog.button("OKButton")->click();
        qobject_cast<QMessageBox *>(window)->done(QMessageBox::Yes);
    });
    QVERIFY(import(put("ABC.tgz", job("ABC"))));
    QCOMPARE(state().exports.size(), size_t(1));
    QCOMPARE(readFile(m_folder->filePath("job/ABC/a")), QByteArray("new"));
}

QTEST_MAIN(tst_OneAtATime)
#include "tst_oneatatime.moc"
