// The commands that an import gives to the command interpreter, in which window, and what follows from what
// they leave behind. They are taken down instead of being run: the linker leads the call here (--wrap).

#include "import/unzipprogress.h"
#include "platform/shell.h"
#include "tests/archive/archivebuilder.h"
#include "tests/support/fileprocessaccess.h"
#include "tests/support/modalresponder.h"
#include "tests/support/temporaryworkingfolder.h"
#include "tests/support/trace.h"

#include <QtTest>

#include <memory>
#include <mutex>

namespace {

struct Command
{
    QString text; // program and parameters
    platform::ShowState show;
};

std::mutex commandsMutex;
std::vector<Command> commands;
// What a command does instead.
std::function<void(const QString &)> onCommand;

QStringList given()
{
    std::lock_guard<std::mutex> lock(commandsMutex);
    QStringList texts;
    for (const Command &command : commands)
        texts << (command.show == platform::ShowState::Hidden ? "hidden " : "shown ") + command.text;
    return texts;
}

} // namespace

extern "C" void SHELL_EXECUTE_AND_WAIT(const std::wstring &program, const std::wstring &parameters,
                                       platform::ShowState show)
{
    const QString text = QString::fromStdWString(program + L" " + parameters);
    {
        std::lock_guard<std::mutex> lock(commandsMutex);
        commands.push_back({text, show});
    }
    if (onCommand)
        onCommand(text);
}

class tst_CleanUpCommands : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theTarIsDeletedHidden();
    void theOldJobIsRemovedHidden();
    void aFailureIsCleanedUpShown();
    void anEmptyFolderThatTheCommandLeftIsRemoved();
    void aFolderThatTheCommandLeftKeepsItsName();
    void nothingFollowsWhenTheJobRootIsGone();

private:
    bool import(const QByteArray &archive);
    QStringList jobs() const { return treeOf(m_folder->filePath("job")).keys(); }

    static QByteArray job(const QByteArray &name)
    {
        return gzip(TarBuilder().folder(name + "/").file(name + "/x", "new").bytes());
    }

    std::unique_ptr<TemporaryWorkingFolder> m_folder;
    std::unique_ptr<FileProcess> m_plugin;
    std::unique_ptr<ModalResponder> m_user;
};

void tst_CleanUpCommands::init()
{
    commands.clear();
    onCommand = nullptr;
    m_folder = std::make_unique<TemporaryWorkingFolder>();
    m_plugin = std::make_unique<FileProcess>();
    m_user = std::make_unique<ModalResponder>();
}

void tst_CleanUpCommands::cleanup()
{
    QCOMPARE(m_user->pending(), 0);
    m_user.reset();
    m_plugin.reset();
    m_folder.reset();
}

bool tst_CleanUpCommands::import(const QByteArray &archive)
{
    m_folder->write("mail/ABC.tgz", archive);
    QString name = "ABC";
    return FileProcessAccess::copyDirectory(*m_plugin, m_folder->filePath("mail/ABC.tgz"), name);
}

void tst_CleanUpCommands::theTarIsDeletedHidden()
{
    QVERIFY(import(job("XYZ")));
    QCOMPARE(given(), QStringList{"hidden cmd /c del .\\job\\ABC*.tar"});
    QCOMPARE(jobs(), QStringList({"ABC.tar", "ABC/", "ABC/x"})); // nothing else deletes the tar
}

void tst_CleanUpCommands::theOldJobIsRemovedHidden()
{
    QVERIFY(m_folder->write("job/ABC/old", "old"));
    m_user->expectMessageBox(QMessageBox::Yes);
    QVERIFY(import(job("XYZ")));
    QCOMPARE(given(),
             QStringList({"hidden cmd /c del .\\job\\ABC*.tar", "hidden cmd /c rd /s /q .\\job\\ABC"}));
}

void tst_CleanUpCommands::aFailureIsCleanedUpShown()
{
    // The poll has to see the failure before the clean-up has ended.
    std::unique_ptr<QSemaphore> isSeen = std::make_unique<QSemaphore>();
    onCommand = [&isSeen](const QString &) { isSeen->acquire(); };
    m_user->expect([&isSeen](QWidget *window) {
        isSeen->release();
        qobject_cast<QDialog *>(window)->accept();
    });
    QVERIFY(!import("this is no gzip file"));
    QCOMPARE(given(), QStringList{"shown cmd /c del .\\job\\ABC*.tar.\\job\\ABC*.*\""});
}

void tst_CleanUpCommands::anEmptyFolderThatTheCommandLeftIsRemoved()
{
    QVERIFY(m_folder->write("job/ABC/old", "old"));
    m_user->expectMessageBox(QMessageBox::Yes);
    onCommand = [this](const QString &command) {
        if (command.contains("/c rd"))
            QFile::remove(m_folder->filePath("job/ABC/old"));
    };
    QVERIFY(import(job("XYZ")));
    QCOMPARE(jobs(), QStringList({"ABC.tar", "ABC/", "ABC/x"}));
}

void tst_CleanUpCommands::aFolderThatTheCommandLeftKeepsItsName()
{
    QVERIFY(m_folder->write("job/ABC/old", "old"));
    m_user->expectMessageBox(QMessageBox::Yes);
    QVERIFY(import(job("XYZ")));
    QCOMPARE(jobs(), QStringList({"ABC.tar", "ABC/", "ABC/old", "XYZ/", "XYZ/x"}));
}

void tst_CleanUpCommands::nothingFollowsWhenTheJobRootIsGone()
{
    QVERIFY(m_folder->write("job/ABC/old", "old"));
    m_user->expectMessageBox(QMessageBox::Yes);
    std::unique_ptr<Trace> after;
    onCommand = [&](const QString &command) {
        if (!command.contains("/c del"))
            return;
        QDir(m_folder->filePath("job")).removeRecursively();
        after = std::make_unique<Trace>();
    };
    QVERIFY(import(job("XYZ")));
    QVERIFY(after);
    QCOMPARE(after->entries(), QStringList()); // not even the lines about the renaming
    QCOMPARE(given().size(), 1);
    QVERIFY(!QDir(m_folder->filePath("job")).exists());
}

QTEST_MAIN(tst_CleanUpCommands)
#include "tst_cleanupcommands.moc"
