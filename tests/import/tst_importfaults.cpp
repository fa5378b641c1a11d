// Faults around the import: a job root that cannot be written or goes away, a system without threads,
// requests that come while another import is on, a host that takes the plug-in or its own window away
// meanwhile.

#include "import/unzipprogress.h"
#include "plugin/interface/messages.h"
#include "tests/archive/archivebuilder.h"
#include "tests/support/fileprocessaccess.h"
#include "tests/support/logcapture.h"
#include "tests/support/modalresponder.h"
#include "tests/support/temporaryworkingfolder.h"
#include "tests/support/threadfailure.h"
#include "tests/support/withoutoverride.h"

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <functional>
#include <iostream>
#include <memory>

using Tree = QMap<QString, QByteArray>;

namespace {

const char *const Failure = "The job unzipped failed, please check your files!";

// Runs `work` once, on the job's thread, when the job writes the gzip member's name: before its first stage.
class BeforeTheFirstStage : private std::wstreambuf
{
public:
    explicit BeforeTheFirstStage(std::function<void()> work)
        : m_work(std::move(work)), m_before(std::wcout.rdbuf(this))
    {
    }
    ~BeforeTheFirstStage() override { std::wcout.rdbuf(m_before); }

private:
    int_type overflow(int_type c) override
    {
        if (m_work)
            m_work();
        m_work = nullptr;
        return c == traits_type::eof() ? 0 : c;
    }

    std::function<void()> m_work;
    std::wstreambuf *m_before;
};

// Runs `work` once, on the job's thread, when the job writes the tar's name to the debug stream: between its
// stages.
class BetweenTheStages
{
public:
    explicit BetweenTheStages(std::function<void()> work) : m_before(qInstallMessageHandler(handle))
    {
        s_work = std::move(work);
    }
    ~BetweenTheStages() { qInstallMessageHandler(m_before); }

private:
    static void handle(QtMsgType, const QMessageLogContext &, const QString &)
    {
        if (QThread::currentThread() == qApp->thread() || !s_work)
            return;
        s_work();
        s_work = nullptr;
    }

    static std::function<void()> s_work;
    QtMessageHandler m_before;
};

std::function<void()> BetweenTheStages::s_work;

QWidget *visibleProgressWindow()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->findChild<QProgressBar *>())
            return window;
    }
    return nullptr;
}

// Calls `work` in the event pass of a poll loop.
void duringTheUnpacking(std::function<void()> work)
{
    QTimer::singleShot(1, [work] {
        if (visibleProgressWindow())
            work();
        else
            duringTheUnpacking(work);
    });
}

} // namespace

class tst_ImportFaults : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aJobRootWithoutWritePermissionFails();
    void anOldJobWithoutWritePermissionSurvives();
    void aJobRootThatVanishesBeforeTheFirstStageIsMadeAgain();
    void aJobRootThatVanishesBetweenTheStagesFails();
    void aJobRootMayVanishAtAnyMoment_data();
    void aJobRootMayVanishAtAnyMoment();
    void withoutThreadsTheImportFails_data();
    void withoutThreadsTheImportFails();
    void aRequestDuringAnUnpackingIsIgnored();
    void aRequestDuringTheErrorBoxIsIgnored();
    void aRequestDuringTheQuestionIsAnImportOfItsOwn();
    void thePluginMayGoWhileItsFileDialogIsOpen();
    void thePluginMayGoWhileItAsks();
    void thePluginMayGoWhileItUnpacks();
    void thePluginMayGoWhileItReportsAFailure();
    void theHostsWindowMayGoWhileTheFileDialogIsOpen();
    void theHostsWindowMayGoWhileAnArchiveIsUnpacked();

private:
    QString put(const QString &name, const QByteArray &bytes)
    {
        m_folder->write("mail/" + name, bytes);
        return m_folder->filePath("mail/" + name);
    }
    bool import(const QString &file)
    {
        QString name = QFileInfo(file).completeBaseName();
        return FileProcessAccess::copyDirectory(*m_plugin, file, name);
    }
    Tree jobs() const { return treeOf(m_folder->filePath("job")); }

    // Answers the next file dialog with `file`.
    void choose(const QString &file)
    {
        m_user->expect([file](QWidget *window) {
            auto *dialog = qobject_cast<QFileDialog *>(window);
            QVERIFY(dialog);
            auto *field = dialog->findChild<QLineEdit *>("fileNameEdit");
            field->setText(file);
            QTest::keyClick(field, Qt::Key_Return);
        });
    }
    void request()
    {
        PluginMetaData data;
        data.msgType = messages::RequestImport;
        m_plugin->recMsgFromManager(data);
    }

    static QByteArray job(const QByteArray &name, const QByteArray &content = "new")
    {
        return gzip(TarBuilder()
                        .folder(name + "/")
                        .file(name + "/a", content)
                        .file(name + "/matrix/matrix", content)
                        .bytes());
    }
    // Large enough to be on its way during some polls.
    static QByteArray largeJob()
    {
        TarBuilder tar;
        tar.folder("ABC/");
        for (int i = 0; i < 300; ++i)
            tar.file("ABC/layers/" + QByteArray::number(i), QByteArray(100000, char('a' + i % 26)));
        return gzip(tar.bytes());
    }
    static Tree oldJob() { return {{"ABC/", ""}, {"ABC/a", "old"}}; }

    std::unique_ptr<TemporaryWorkingFolder> m_folder;
    std::unique_ptr<FileProcess> m_plugin;
    std::unique_ptr<QAction> m_action;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<ModalResponder> m_user;
    QStringList m_sent;
};

void tst_ImportFaults::init()
{
    m_folder = std::make_unique<TemporaryWorkingFolder>();
    m_plugin = std::make_unique<FileProcess>();
    m_window = std::make_unique<QWidget>();
    m_action.reset(m_plugin->InitImportTool(m_window.get()));
    m_user = std::make_unique<ModalResponder>();
    m_sent.clear();
    connect(m_plugin.get(), &FileProcess::sendMsgToManager, this, [this](const PluginMetaData &data) {
        if (data.msgType == messages::FileReady)
            m_sent << *static_cast<QString *>(data.payload);
    });
}

void tst_ImportFaults::cleanup()
{
    QCOMPARE(m_user->pending(), 0);
    m_user.reset();
    m_action.reset();
    m_plugin.reset();
    m_window.reset();
    m_folder.reset();
}

void tst_ImportFaults::aJobRootWithoutWritePermissionFails()
{
    QVERIFY(m_folder->write("job/ABC/a", "old"));
    const QString file = put("ABC.tgz", job("ABC"));
    QVERIFY(QFile::setPermissions("job", QFile::ReadOwner | QFile::ExeOwner));
    m_user->expectMessageBox(QMessageBox::Yes);
    m_user->expectMessageBox(QMessageBox::Yes);
    const LogCapture log;
    {
        const WithoutOverride plainUser;
        QVERIFY(!QFile("job/x").open(QIODevice::WriteOnly));
        QVERIFY(!import(file));
    }
    QCOMPARE(m_user->boxes.back().text, QString(Failure));
    QCOMPARE(log.find("Progress", 139).severity, google::GLOG_ERROR);
    QCOMPARE(jobs(), oldJob());
    QVERIFY(QFile::setPermissions("job", QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

// The tar can be unpacked beside the job, but nothing can take the place of what is in it.
void tst_ImportFaults::anOldJobWithoutWritePermissionSurvives()
{
    QVERIFY(m_folder->write("job/ABC/a", "old"));
    const QString file = put("ABC.tgz", job("ABC"));
    QVERIFY(QFile::setPermissions("job/ABC", QFile::ReadOwner | QFile::ExeOwner));
    m_user->expectMessageBox(QMessageBox::Yes);
    m_user->expectMessageBox(QMessageBox::Yes);
    {
        const WithoutOverride plainUser;
        QVERIFY(!import(file));
    }
    QCOMPARE(m_user->boxes.back().text, QString(Failure));
    QVERIFY(QFile::setPermissions("job/ABC", QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    Tree after = jobs();
    after.remove("ABC.tar"); // stays after a failure of the second stage
    QCOMPARE(after, oldJob());
}

void tst_ImportFaults::aJobRootThatVanishesBeforeTheFirstStageIsMadeAgain()
{
    QVERIFY(m_folder->write("job/OTHER/a", "old"));
    const BeforeTheFirstStage vanish([] { QDir().rename("job", "gone"); });
    QVERIFY(import(put("ABC.tgz", job("ABC"))));
    QVERIFY(QDir("gone").exists());
    QCOMPARE(jobs(),
             (Tree{{"ABC/", ""}, {"ABC/a", "new"}, {"ABC/matrix/", ""}, {"ABC/matrix/matrix", "new"}}));
}

void tst_ImportFaults::aJobRootThatVanishesBetweenTheStagesFails()
{
    QVERIFY(m_folder->write("job/OTHER/a", "old"));
    m_user->expectMessageBox(QMessageBox::Yes);
    {
        const BetweenTheStages vanish([] { QDir().rename("job", "gone"); });
        QVERIFY(!import(put("ABC.tgz", job("ABC"))));
    }
    QCOMPARE(m_user->boxes.back().text, QString(Failure));
    QCOMPARE(treeOf(m_folder->filePath("gone")).keys(), (QStringList{"ABC", "OTHER/", "OTHER/a"}));
    QVERIFY(!QDir("job").exists());
}

void tst_ImportFaults::aJobRootMayVanishAtAnyMoment_data()
{
    QTest::addColumn<int>("milliseconds");
    for (const int milliseconds : {0, 10, 20, 40, 60, 80, 100, 150, 200})
        QTest::newRow(qPrintable(QString("%1 ms").arg(milliseconds))) << milliseconds;
}

// What is at the job's place afterwards is the whole job or nothing.
void tst_ImportFaults::aJobRootMayVanishAtAnyMoment()
{
    QFETCH(int, milliseconds);
    const QString file = put("ABC.tgz", largeJob());
    QTimer::singleShot(milliseconds, [] { QDir().rename("job", "gone"); });
    bool hasFailed = false;
    QTimer answers;
    connect(&answers, &QTimer::timeout, [&hasFailed] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            hasFailed = true;
            box->done(QMessageBox::Yes);
        }
    });
    answers.start(5);
    const bool isUnpacked = import(file);
    QCOMPARE(isUnpacked, !hasFailed);
    QTest::qWait(hasFailed ? 0 : milliseconds);
    for (const char *root : {"job", "gone"}) {
        const QDir unpacked(QString(root) + "/ABC");
        if (unpacked.exists())
            QCOMPARE(QDir(unpacked.filePath("layers")).entryList(QDir::Files).size(), 300);
    }
}

void tst_ImportFaults::withoutThreadsTheImportFails_data()
{
    QTest::addColumn<int>("threads");
    QTest::newRow("none for the job") << 0;
    QTest::newRow("none to write the tar") << 1;
    QTest::newRow("none to write the files") << 2;
}

void tst_ImportFaults::withoutThreadsTheImportFails()
{
    QFETCH(int, threads);
    QVERIFY(m_folder->write("job/ABC/a", "old"));
    const QString file = put("ABC.tgz", job("ABC"));
    m_user->expectMessageBox(QMessageBox::Yes);
    m_user->expectMessageBox(QMessageBox::Yes);
    {
        const ThreadFailure limit(threads);
        QVERIFY(!import(file));
    }
    QCOMPARE(m_user->boxes.back().text, QString(Failure));
    Tree after = jobs();
    after.remove("ABC.tar");
    QCOMPARE(after, oldJob());
    // With threads again, the next import goes well.
    m_user->expectMessageBox(QMessageBox::Yes);
    QVERIFY(import(file));
    QCOMPARE(jobs()["ABC/a"], QByteArray("new"));
}

void tst_ImportFaults::aRequestDuringAnUnpackingIsIgnored()
{
    const QString file = put("ABC.tgz", largeJob());
    const LogCapture log;
    int requests = 0;
    duringTheUnpacking([&] {
        ++requests;
        request();
    });
    choose(file);
    request();
    QCOMPARE(requests, 1);
    QCOMPARE(m_sent, QStringList{file});
    QCOMPARE(jobs().size(), 302);
    bool isLogged = false;
    for (const LogLine &line : log.lines())
        isLogged = isLogged || line.message.find("the import was ignored") != std::string::npos;
    QVERIFY(isLogged);
}

// The failed job's clean-up may still be at work.
void tst_ImportFaults::aRequestDuringTheErrorBoxIsIgnored()
{
    const QString file = put("ABC.tgz", "no gzip");
    choose(file);
    m_user->expect([this](QWidget *window) {
        request();
        qobject_cast<QMessageBox *>(window)->done(QMessageBox::Yes);
    });
    request();
    QCOMPARE(m_sent, QStringList());
    choose(put("DEF.tgz", job("DEF")));
    request();
    QCOMPARE(m_sent.size(), 1);
}

void tst_ImportFaults::aRequestDuringTheQuestionIsAnImportOfItsOwn()
{
    QVERIFY(m_folder->write("job/ABC/a", "old"));
    const QString first = put("ABC.tgz", job("ABC"));
    const QString second = put("DEF.tgz", job("DEF"));
    choose(first);
    m_user->expect([&](QWidget *window) {
        // From an event of its own: who answers this window has to be free for the next.
        QTimer::singleShot(0, [this, window, second] {
            choose(second);
            request();
            qobject_cast<QMessageBox *>(window)->done(QMessageBox::Yes);
        });
    });
    request();
    QCOMPARE(m_sent, (QStringList{second, first}));
    QCOMPARE(jobs()["ABC/a"], QByteArray("new"));
    QCOMPARE(jobs()["DEF/a"], QByteArray("new"));
}

void tst_ImportFaults::thePluginMayGoWhileItsFileDialogIsOpen()
{
    const QString file = put("ABC.tgz", job("ABC"));
    m_user->expect([&](QWidget *window) {
        m_plugin.reset();
        auto *field = window->findChild<QLineEdit *>("fileNameEdit");
        field->setText(file);
        QTest::keyClick(field, Qt::Key_Return);
    });
    request();
    QCOMPARE(m_sent, QStringList());
    QVERIFY(!QDir("job").exists());
}

void tst_ImportFaults::thePluginMayGoWhileItAsks()
{
    QVERIFY(m_folder->write("job/ABC/a", "old"));
    choose(put("ABC.tgz", job("ABC")));
    m_user->expect([this](QWidget *window) {
        m_plugin.reset();
        qobject_cast<QMessageBox *>(window)->done(QMessageBox::Yes);
    });
    request();
    QCOMPARE(m_sent, QStringList());
    QCOMPARE(jobs(), oldJob());
}

void tst_ImportFaults::thePluginMayGoWhileItUnpacks()
{
    choose(put("ABC.tgz", largeJob()));
    duringTheUnpacking([this] { m_plugin.reset(); });
    request();
    QVERIFY(!m_plugin);
    QCOMPARE(m_sent, QStringList());
    QVERIFY(!visibleProgressWindow());
    QCOMPARE(QDir("job/ABC/layers").entryList(QDir::Files).size(), 300);
}

void tst_ImportFaults::thePluginMayGoWhileItReportsAFailure()
{
    choose(put("ABC.tgz", "no gzip"));
    m_user->expect([this](QWidget *window) {
        m_plugin.reset();
        qobject_cast<QMessageBox *>(window)->done(QMessageBox::Yes);
    });
    request();
    QCOMPARE(m_sent, QStringList());
}

void tst_ImportFaults::theHostsWindowMayGoWhileTheFileDialogIsOpen()
{
    m_user->expect([this](QWidget *) { m_window.reset(); });
    request();
    QCOMPARE(m_sent, QStringList());
    // Without it the next dialog has no parent.
    const QString file = put("ABC.tgz", job("ABC"));
    choose(file);
    request();
    QCOMPARE(m_sent, QStringList{file});
    qDeleteAll(QApplication::topLevelWidgets());
}

void tst_ImportFaults::theHostsWindowMayGoWhileAnArchiveIsUnpacked()
{
    const QString file = put("ABC.tgz", largeJob());
    choose(file);
    duringTheUnpacking([this] { m_window.reset(); });
    request();
    QVERIFY(!m_window);
    QCOMPARE(m_sent, QStringList{file});
    QCOMPARE(jobs().size(), 302);
}

QTEST_MAIN(tst_ImportFaults)
#include "tst_importfaults.moc"
