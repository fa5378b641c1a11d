// The stand-in for the command interpreter: what it deletes, where it would ask, and what it refuses to run.

#include "platform/shell.h"
#include "platform/shell_standin.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QFileInfo>
#include <QtTest>

using namespace platform;

class tst_ShellStandin : public QObject
{
    Q_OBJECT

private slots:
    void wildcardsInAFolderMatchNothing();
    void linksAreRemovedAndNotFollowed();
    void aLargeFileIsGoneAtOnceAndItsSpaceSoon();
    void nothingElseIsRun();
    void aQuestionGetsNoAnswer_data();
    void aQuestionGetsNoAnswer();
    void aSlashIsASwitch();
};

void tst_ShellStandin::wildcardsInAFolderMatchNothing()
{
    TemporaryWorkingFolder folder;
    QVERIFY(folder.write("ABC.tar/ABC", "x"));
    deleteFiles("ABC*.tar\\ABC*.*");
    QVERIFY(QFileInfo::exists("ABC.tar/ABC"));
}

void tst_ShellStandin::linksAreRemovedAndNotFollowed()
{
    TemporaryWorkingFolder folder;
    QVERIFY(folder.write("outside/keep", "x"));
    QVERIFY(QDir().mkpath("job/ABC"));
    QVERIFY(QFile::link(folder.filePath("outside"), "job/ABC/link"));
    QVERIFY(QFile::link(folder.filePath("outside"), "job/link"));

    removeTree("job\\ABC");
    removeTree("job\\link");

    QVERIFY(!QFileInfo::exists("job/ABC"));
    QVERIFY(!QFileInfo("job/link").isSymLink());
    QVERIFY(QFileInfo::exists("outside/keep"));
}

void tst_ShellStandin::aLargeFileIsGoneAtOnceAndItsSpaceSoon()
{
    TemporaryWorkingFolder folder;
    QVERIFY(folder.write("ABC.tar", QByteArray(20000000, 'x')));
    QVERIFY(folder.write("other", "x"));
    QVERIFY(QFile::link(folder.filePath("other"), "ABC_link.tar"));

    deleteFiles(".\\ABC*.tar");

    QCOMPARE(QDir().entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot), QStringList{"other"});
    // As long as anybody has the file open, it takes its space.
    const auto isHeld = [] {
        for (const QFileInfo &open : QDir("/proc/self/fd").entryInfoList(QDir::Files | QDir::System)) {
            if (open.symLinkTarget().contains("ABC.tar"))
                return true;
        }
        return false;
    };
    QTRY_VERIFY(!isHeld());
}

void tst_ShellStandin::nothingElseIsRun()
{
    TemporaryWorkingFolder folder;
    shellExecuteAndWait(L"touch", L"touched", ShowState::Hidden);
    shellExecuteAndWait(L"cmd", L"/c echo x > touched", ShowState::Hidden);
    shellExecuteAndWait(L"cmd", L"/c del nothing & touch touched", ShowState::Hidden);
    QVERIFY(!QFileInfo::exists("touched"));
}

// "del" asks before it empties a folder. The interpreter would wait for ever.
void tst_ShellStandin::aQuestionGetsNoAnswer_data()
{
    QTest::addColumn<QString>("operand");
    QTest::newRow("folder") << ".\\board";
    QTest::newRow("folder with its separator") << ".\\board\\";
    QTest::newRow("everything in it") << ".\\board\\*";
    QTest::newRow("everything in it, the old way") << ".\\board\\*.*";
}

void tst_ShellStandin::aQuestionGetsNoAnswer()
{
    QFETCH(QString, operand);
    TemporaryWorkingFolder folder;
    QVERIFY(folder.write("board/file", "x"));
    QVERIFY(folder.write("before.tar", "x"));
    QVERIFY(folder.write("after.tar", "x"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("gets no answer"));

    shellExecuteAndWait(L"cmd", ("/c del before.tar " + operand + " after.tar").toStdWString(),
                        ShowState::Hidden);

    QVERIFY(QFileInfo::exists("board/file"));
    QVERIFY(!QFileInfo::exists("before.tar"));
    QVERIFY(QFileInfo::exists("after.tar"));
}

void tst_ShellStandin::aSlashIsASwitch()
{
    TemporaryWorkingFolder folder;
    QVERIFY(folder.write("job/ABC.tar", "x"));
    QVERIFY(folder.write("job/ABC/matrix", "x"));

    shellExecuteAndWait(L"cmd", L"/c del ./job\\ABC.tar", ShowState::Hidden);
    shellExecuteAndWait(L"cmd", L"/c rd /s /q ./job\\ABC", ShowState::Hidden);

    QVERIFY(QFileInfo::exists("job/ABC.tar"));
    QVERIFY(QFileInfo::exists("job/ABC/matrix"));
}

QTEST_GUILESS_MAIN(tst_ShellStandin)
#include "tst_shellstandin.moc"
