// Messages, clicks, keys and dialogs in random order, thousands of them: nothing crashes, no two exports run
// at once, and in the end every dialog can be closed.
//
// The seed of a run is printed. The seeds are the same ones every time; FILE_PROCESS_RANDOM=1 adds one that
// is new, FILE_PROCESS_SEED=N repeats the run of seed N, and FILE_PROCESS_STEPS=N makes the runs longer or
// shorter. The steps go on while a modal window is open and while a layer is exported, as
// they would for a host whose other plug-ins never rest.

#include "plugin/fileprocess.h"
#include "plugin/interface/messages.h"
#include "tests/archive/archivebuilder.h"
#include "tests/export/opendialog.h"
#include "tests/export/wheel.h"
#include "tests/support/exportdialogs.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QAbstractButton>
#include <QAction>
#include <QContextMenuEvent>
#include <QDir>
#include <QFileDialog>
#include <QMenu>
#include <QMessageBox>
#include <QProgressDialog>
#include <QToolBar>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <memory>
#include <random>
#include <stdexcept>
#include <thread>

using namespace layer_column;
using recording_host::ExportCall;
using recording_host::layer;
using recording_host::state;

namespace {

// The operator and the other plug-ins, who do anything at any time.
class RestlessHost : public QObject
{
public:
    RestlessHost(unsigned seed, const QString &folder) : m_random(seed), m_folder(folder)
    {
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); // those have no widgets to close
        m_window = std::make_unique<QWidget>();
        loadPlugin();
        planStepInBetween();
    }

    ~RestlessHost() override
    {
        qDeleteAll(m_actions);
        qDeleteAll(findChildren<QFileDialog *>());
    }

    // Throws the plug-in away, if there is one, and makes it anew.
    void loadPlugin()
    {
        m_plugin = std::make_unique<FileProcess>();
        m_plugin->setParentWidget(m_window.get());
        m_toolsAreMade = false;
        connect(m_plugin.get(), &FileProcess::sendMsgToManager, this,
                [this](PluginMetaData data) { answer(data); });
    }

    void step()
    {
        ++m_depth;
        randomStep();
        QApplication::processEvents();
        // In the order of their coming: a delegate closes an editor whose Return was pressed by a queued call
        // that names the editor by a bare pointer. Deletions before it, which no event loop makes, would
        // leave it dangling (Windows' dispatcher may return from processEvents() without having sent any
        // posted event).
        QApplication::sendPostedEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        --m_depth;
    }

    // Nobody does anything any more.
    void rest() { m_isResting = true; }

    int stepsInBetween = 0;
    int dialogsOpened = 0;
    int filesTaken = 0;
    int deletions = 0; // during runs and imports

private:
    int below(int end) { return int(m_random() % unsigned(end)); }
    bool oneIn(int n) { return below(n) == 0; }

    // For the event loops of modal windows and of export runs. Each step plans the next one before it begins:
    // it may open an event loop itself.
    void planStepInBetween()
    {
        QTimer::singleShot(1, this, [this] { stepInBetween(); });
    }

    void stepInBetween()
    {
        if (m_isResting)
            return;
        planStepInBetween();
        if (m_depth == 0)
            return;
        ++stepsInBetween;
        // Deep in nested event loops only their ends are looked for.
        const bool mayNest = m_depth < 4;
        ++m_depth;
        if (oneIn(20))
            deleteSomething();
        else if (!answerWindow(mayNest) && mayNest)
            randomStep();
        --m_depth;
    }

    // Answers one of the windows that wait for an answer; false when there is none.
    bool answerWindow(bool mayNest)
    {
        if (QWidget *popup = QApplication::activePopupWidget()) {
            auto *menu = qobject_cast<QMenu *>(popup);
            if (menu && mayNest) {
                const QList<QAction *> entries = menu->actions();
                QAction *entry = entries[below(entries.size())];
                QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(entry).center());
            }
            if (popup == QApplication::activePopupWidget())
                popup->close();
            return true;
        }
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (!window->isVisible())
                continue;
            if (auto *box = qobject_cast<QMessageBox *>(window)) {
                const QList<QAbstractButton *> buttons = box->buttons();
                box->done(box->standardButton(buttons[below(buttons.size())]));
                return true;
            }
            if (auto *chooser = qobject_cast<QFileDialog *>(window)) {
                answerChooser(chooser);
                return true;
            }
        }
        return false;
    }

    void answerChooser(QFileDialog *chooser)
    {
        // Only the test's own folder and files are ever chosen.
        const bool choosesFolder = chooser->fileMode() == QFileDialog::Directory;
        if (choosesFolder && oneIn(2)) {
            chooser->setDirectory(m_folder);
            chooser->findChild<QLineEdit *>("fileNameEdit")->setText(m_folder);
            static_cast<QDialog *>(chooser)->accept();
        } else if (!choosesFolder && !oneIn(4)) {
            chooser->findChild<QLineEdit *>("fileNameEdit")->setText(someImportFiles());
            static_cast<QDialog *>(chooser)->accept();
        }
        if (chooser->isVisible()) // nothing chosen
            chooser->reject();
    }

    // One or two of the files in "mail", in quotes as the dialog shows several.
    QString someImportFiles()
    {
        const QString mail = m_folder + "/mail/";
        const QStringList names = QDir(mail).entryList(QDir::Files);
        QString files = '"' + mail + names[below(names.size())] + '"';
        if (oneIn(3))
            files += " \"" + mail + names[below(names.size())] + '"';
        return files;
    }

    void randomStep()
    {
        switch (below(16)) {
        case 0:
            sendMessage();
            break;
        case 1:
            useTools();
            break;
        case 2:
            closeSomething();
            break;
        case 3:
            pressOk();
            break;
        case 4:
            typeIntoField();
            break;
        case 5:
            chooseInComboBox();
            break;
        case 6:
            openMenu();
            break;
        case 7:
            useWheel();
            break;
        case 8:
            editCell();
            break;
        case 9:
            callSlot();
            break;
        default:
            clickTable();
            break;
        }
    }

    // The host takes away what its code may hold at this moment.
    void deleteSomething()
    {
        switch (below(3)) {
        case 0:
            // Only the dialog whose OK was pressed first: this class's own frames hold no other's widgets.
            if (!m_runningDialog)
                return;
            delete m_runningDialog;
            break;
        case 1:
            loadPlugin();
            break;
        default:
            m_window = std::make_unique<QWidget>();
            m_plugin->setParentWidget(m_window.get());
            m_actions << m_plugin->InitImportTool(m_window.get());
            break;
        }
        ++deletions;
    }

    Export *someDialog()
    {
        const QList<Export *> dialogs = openExportDialogs();
        return dialogs.isEmpty() ? nullptr : dialogs[below(dialogs.size())];
    }

    template <typename Widget>
    Widget *someChild(const char *name = nullptr)
    {
        Export *dialog = someDialog();
        if (!dialog)
            return nullptr;
        const QList<Widget *> all =
            name ? dialog->findChildren<Widget *>(name) : dialog->findChildren<Widget *>();
        return all.isEmpty() ? nullptr : all[below(all.size())];
    }

    void sendMessage()
    {
        PluginMetaData data;
        QList<std::string> profiles{"profile"};
        const qint32 types[] = {messages::JobContext,
                                messages::JobContext,
                                messages::JobContext,
                                messages::NewProfileList,
                                messages::RequestImport,
                                messages::RequestExport,
                                0,
                                messages::RequestJobContext,
                                messages::ExportReport};
        data.msgType = types[below(9)];
        ExportJobInfo job = someJob();
        if (data.msgType == messages::JobContext && !oneIn(5))
            data.payload = &job;
        else if (data.msgType == messages::NewProfileList && !oneIn(3))
            data.payload = &profiles;
        deliver(data);
    }

    void deliver(const PluginMetaData &data)
    {
        if (data.msgType == messages::JobContext) {
            if (openExportDialogs().size() > 4)
                return;
            setMatrix();
            ++dialogsOpened;
        }
        m_plugin->recMsgFromManager(data);
    }

    // A request for the job context is answered at once, later or never.
    void answer(const PluginMetaData &data)
    {
        if (data.msgType == messages::FileReady)
            ++filesTaken;
        if (data.msgType != messages::RequestJobContext || !oneIn(4))
            return;
        ExportJobInfo job = someJob();
        PluginMetaData context;
        context.msgType = messages::JobContext;
        context.payload = &job;
        deliver(context);
    }

    ExportJobInfo someJob()
    {
        ExportJobInfo job;
        job.jobName = oneIn(4) ? QString() : QString("Job%1").arg(below(3));
        job.stepName = "Pcb";
        job.folderPath = m_folder;
        job.list.assign(size_t(below(3)), "entry");
        return job;
    }

    void setMatrix()
    {
        std::vector<ORVEX::API::layer_info> layers;
        const char *const types[] = {"SIGNAL", "GDS", "DRILL", "SOLDER_MASK", "DOCUMENT"};
        for (int i = below(12); i > 0; --i)
            layers.push_back(
                layer(oneIn(4) ? "MISC" : "BOARD", types[below(5)], "l" + std::to_string(below(10))));
        state().layers = layers;
        state().onMatrix = nullptr;
        if (oneIn(10))
            state().onMatrix = [](std::vector<ORVEX::API::layer_info> &) {
                throw std::runtime_error("no matrix");
            };
    }

    void useTools()
    {
        if (m_actions.size() > 20)
            return;
        switch (below(4)) {
        case 0:
            m_plugin->CreateFileProTools();
            m_toolsAreMade = true;
            break;
        case 1:
            m_actions << m_plugin->InitExportTool();
            break;
        case 2:
            m_actions << m_plugin->InitImportTool(m_window.get());
            break;
        default:
            if (m_toolsAreMade)
                m_plugin->GetFileProActions(&m_bar);
            break;
        }
    }

    void closeSomething()
    {
        if (oneIn(3)) {
            if (auto *progress = someChild<QProgressDialog>())
                progress->close();
        } else if (oneIn(2)) {
            if (auto *cancel = someChild<QPushButton>("CancelButton"))
                QTest::mouseClick(cancel, Qt::LeftButton);
        } else if (Export *dialog = someDialog()) {
            dialog->close();
        }
    }

    void pressOk()
    {
        if (!oneIn(5)) // each layer takes a fifth of a second
            return;
        Export *dialog = someDialog();
        if (!dialog)
            return;
        // Everything is written below the test's folder.
        auto *path = dialog->findChild<QLineEdit *>("PathLineEdit");
        if (path->text().isEmpty())
            path->setText(m_folder);
        if (m_depth == 1)
            m_runningDialog = dialog;
        dialog->findChild<QPushButton *>("OKButton")->click();
        if (m_depth == 1)
            m_runningDialog = nullptr;
    }

    void typeIntoField()
    {
        const char *const names[] = {"SecondDirLineEdit", "ReferenceXLineEdit", "ReferenceYLineEdit",
                                     "PathLineEdit"};
        auto *edit = someChild<QLineEdit>(names[below(4)]);
        if (!edit)
            return;
        edit->setFocus();
        QPointer<QLineEdit> alive(edit);
        QTest::keyClick(edit, char('0' + below(70)));
        if (alive && oneIn(5)) {
            if (oneIn(2))
                alive->setText(m_folder);
            QTest::keyClick(alive, oneIn(2) ? Qt::Key_Return : Qt::Key_Tab);
        }
    }

    void chooseInComboBox()
    {
        auto *box = someChild<QComboBox>();
        if (!box)
            return;
        if (oneIn(3))
            box->showPopup();
        else
            QTest::keyClick(box, oneIn(2) ? Qt::Key_Down : Qt::Key_Up);
    }

    void openMenu()
    {
        auto *table = someChild<QTableWidget>("PNListTable");
        if (!table)
            return;
        QContextMenuEvent request(QContextMenuEvent::Mouse, QPoint(5, 5),
                                  table->viewport()->mapToGlobal({5, 5}));
        QCoreApplication::sendEvent(table->viewport(), &request);
    }

    void useWheel()
    {
        if (auto *box = someChild<QComboBox>()) {
            const int before = box->currentIndex();
            turnWheel(box, oneIn(2) ? 1 : -1);
            QCOMPARE(box->currentIndex(), before);
        }
    }

    void editCell()
    {
        auto *table = someChild<QTableWidget>("PNListTable");
        if (!table || table->rowCount() == 0)
            return;
        table->editItem(table->item(below(table->rowCount()), oneIn(2) ? XScale : YScale));
        QPointer<QLineEdit> editor = table->viewport()->findChild<QLineEdit *>();
        if (!editor)
            return;
        QTest::keyClicks(editor, oneIn(2) ? "1.5" : "7");
        if (editor)
            QTest::keyClick(editor, oneIn(2) ? Qt::Key_Return : Qt::Key_Escape);
    }

    void callSlot()
    {
        const char *const names[] = {"on_SelectAll_clicked",     "on_ClearAll_clicked",
                                     "on_BoardLayer_clicked",    "on_SetParamater_clicked",
                                     "on_PathLineEdit_finished", "on_PathButton_clicled"};
        if (Export *dialog = someDialog())
            QMetaObject::invokeMethod(dialog, names[below(6)]);
    }

    void clickTable()
    {
        auto *table = someChild<QTableWidget>("PNListTable");
        if (!table)
            return;
        QWidget *viewport = table->viewport();
        const QPoint at(below(viewport->width()), below(viewport->height()));
        const Qt::MouseButton buttons[] = {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton};
        const Qt::MouseButton button = buttons[below(3)];
        if (oneIn(5))
            QTest::mouseDClick(viewport, button, Qt::NoModifier, at);
        else
            QTest::mouseClick(viewport, button, Qt::NoModifier, at);
    }

    std::mt19937 m_random;
    const QString m_folder;
    std::unique_ptr<QWidget> m_window;
    QToolBar m_bar;
    std::unique_ptr<FileProcess> m_plugin;
    QPointer<Export> m_runningDialog; // its OK was pressed in a step that was not in between others
    QList<QAction *> m_actions;
    bool m_isResting = false;
    bool m_toolsAreMade = false;
    int m_depth = 0;
};

unsigned numberFrom(const char *variable, unsigned otherwise)
{
    bool isNumber = false;
    const unsigned number = qgetenv(variable).toUInt(&isNumber);
    return isNumber ? number : otherwise;
}

// Whole, refused and damaged archives, and a file that is passed on.
void writeImportFiles(const TemporaryWorkingFolder &folder)
{
    const QByteArray job = TarBuilder().folder("Job1/").file("Job1/matrix/matrix", "rows").bytes();
    folder.write("mail/Job1.tgz", gzip(job, "Job1.tar"));
    folder.write("mail/Job2.tgz", gzip(job));
    folder.write("mail/Job3.tgz", gzip(TarBuilder().file("Job3/x", QByteArray(3000000, 'x')).bytes()));
    folder.write("mail/out.tgz", gzip(TarBuilder().file("../evil", "x").bytes()));
    folder.write("mail/cut.tgz", gzip(job).chopped(20));
    folder.write("mail/layer.gds", "a layer");
}

} // namespace

class tst_Sequence : public QObject
{
    Q_OBJECT

private slots:
    void anyOrderIsSurvived_data();
    void anyOrderIsSurvived();
    void theRunsDidSomething();

private:
    int m_dialogsOpened = 0; // in all runs
    int m_filesTaken = 0;
    int m_deletions = 0;
};

void tst_Sequence::anyOrderIsSurvived_data()
{
    QTest::addColumn<unsigned>("seed");
    if (qEnvironmentVariableIsSet("FILE_PROCESS_SEED")) {
        const unsigned seed = numberFrom("FILE_PROCESS_SEED", 0);
        QTest::newRow(QByteArray::number(seed).constData()) << seed;
        return;
    }
    for (unsigned seed : {1u, 2u})
        QTest::newRow(QByteArray::number(seed).constData()) << seed;
    if (!qEnvironmentVariableIsSet("FILE_PROCESS_RANDOM"))
        return;
    const unsigned fresh = std::random_device()();
    QTest::newRow(QByteArray::number(fresh).constData()) << fresh;
}

void tst_Sequence::anyOrderIsSurvived()
{
    QFETCH(unsigned, seed);
    qInfo("FILE_PROCESS_SEED=%u", seed);
    // The plug-in's debug lines would be most of the output.
    struct Quiet
    {
        Quiet()
            : before(qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {}))
        {
        }
        ~Quiet() { qInstallMessageHandler(before); }
        QtMessageHandler before;
    } quiet;

    TemporaryWorkingFolder folder;
    writeImportFiles(folder);
    recording_host::reset();
    std::atomic<int> running{0};
    std::atomic<bool> hasOverlapped{false};
    state().onExport = [&](const ExportCall &call) {
        if (++running > 1)
            hasOverlapped = true;
        call.progress->set_value(double(call.layer.size() * 37 % 101));
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        --running;
        if (call.layer == "l7")
            throw "progress_cancle";
        return call.layer != "l3";
    };
    {
        RestlessHost host(seed, folder.path());
        const int steps = int(numberFrom("FILE_PROCESS_STEPS", 1000));
        int done = 0;
        // Short runs of a slow machine go on until they did each of these once.
        while (done < steps ||
               (done < 20 * steps && !(host.dialogsOpened && host.filesTaken && host.deletions))) {
            host.step();
            ++done;
        }
        host.rest();
        QVERIFY(!hasOverlapped);

        // What is left can be closed, and is gone then.
        for (int i = 0; i < 100 && !openExportDialogs().isEmpty(); ++i) {
            for (const QPointer<Export> dialog : openExportDialogs()) {
                if (!dialog)
                    continue;
                QVERIFY(dialog->findChild<QPushButton *>("CancelButton")->isEnabled());
                QVERIFY(!dialog->findChild<QProgressDialog *>());
                dialog->close();
            }
            QTest::qWait(1);
        }
        QVERIFY(openExportDialogs().isEmpty());
        m_dialogsOpened += host.dialogsOpened;
        m_filesTaken += host.filesTaken;
        m_deletions += host.deletions;
        std::printf("seed %u: %d steps, %d more in between, %d dialogs, %zu exports, %d files taken in, "
                    "%d deletions\n",
                    seed, done, host.stepsInBetween, host.dialogsOpened, state().exports.size(),
                    host.filesTaken, host.deletions);
    }
}

void tst_Sequence::theRunsDidSomething()
{
    QVERIFY(m_dialogsOpened > 0);
    QVERIFY(m_filesTaken > 0);
    QVERIFY(m_deletions > 0);
}

QTEST_MAIN(tst_Sequence)
#include "tst_sequence.moc"
