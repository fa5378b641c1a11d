// The stand-in for the command interpreter: parameters, wildcards, and what it refuses to run.

#include "platform/shell.h"
#include "platform/shell_standin.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QFileInfo>
#include <QtTest>

using namespace platform;
Q_DECLARE_METATYPE(platform::CommandLine::Command)

class tst_ShellStandin : public QObject
{
    Q_OBJECT

private slots:
    void commandLinesFallIntoParameters_data();
    void commandLinesFallIntoParameters();
    void wildcardsMatchWithoutRegardToCase_data();
    void wildcardsMatchWithoutRegardToCase();
    void wildcardsInAFolderMatchNothing();
    void linksAreRemovedAndNotFollowed();
    void aLargeFileIsGoneAtOnceAndItsSpaceSoon();
    void nothingElseIsRun();
};

void tst_ShellStandin::commandLinesFallIntoParameters_data()
{
    using Command = CommandLine::Command;
    QTest::addColumn<QString>("line");
    QTest::addColumn<Command>("command");
    QTest::addColumn<QStringList>("operands");
    QTest::newRow("del") << "/c del C:\\j\\A*.tar" << Command::Delete << QStringList("C:\\j\\A*.tar");
    QTest::newRow("rd") << "/c rd /s /q C:\\j\\A" << Command::RemoveTree << QStringList("C:\\j\\A");
    QTest::newRow("capitals") << "/C DEL a" << Command::Delete << QStringList("a");
    QTest::newRow("blanks") << "/c del C:\\my jobs\\A" << Command::Delete
                            << QStringList({"C:\\my", "jobs\\A"});
    QTest::newRow("other separators")
        << "/c del a,b;c=d\te" << Command::Delete << QStringList({"a", "b", "c", "d", "e"});
    QTest::newRow("quotes") << "/c del \"a b\" c" << Command::Delete << QStringList({"a b", "c"});
    QTest::newRow("open quote") << "/c del a*.tara*.*\"" << Command::Delete << QStringList("a*.tara*.*");
    QTest::newRow("ampersand") << "/c del a&b c" << Command::Delete << QStringList("a");
    QTest::newRow("caret") << "/c del a^&b" << Command::Delete << QStringList("a&b");
    QTest::newRow("rd without switches") << "/c rd A" << Command::None << QStringList();
    QTest::newRow("another command") << "/c format c:" << Command::None << QStringList();
    QTest::newRow("no /c") << "del a" << Command::None << QStringList();
    QTest::newRow("empty") << "" << Command::None << QStringList();
}

void tst_ShellStandin::commandLinesFallIntoParameters()
{
    QFETCH(QString, line);
    const CommandLine parsed = parseCommandLine(line);
    QTEST(parsed.command, "command");
    QTEST(parsed.operands, "operands");
}

void tst_ShellStandin::wildcardsMatchWithoutRegardToCase_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("matches");
    QTest::newRow("star") << "ABC*.tar"
                          << "abc_old.TAR" << true;
    QTest::newRow("empty star") << "ABC*.tar"
                                << "ABC.tar" << true;
    QTest::newRow("other start") << "ABC*.tar"
                                 << "xABC.tar" << false;
    QTest::newRow("other end") << "ABC*.tar"
                               << "ABC.tar.gz" << false;
    QTest::newRow("question mark") << "a?c"
                                   << "abc" << true;
    QTest::newRow("question mark needs one") << "a?c"
                                             << "ac" << false;
    QTest::newRow("two stars") << "a*b*c"
                               << "axxbyybzc" << true;
    QTest::newRow("star dot star without a dot") << "ABC*.*"
                                                 << "ABCdef" << true;
    QTest::newRow("plain") << "abc"
                           << "ABC" << true;
}

void tst_ShellStandin::wildcardsMatchWithoutRegardToCase()
{
    QFETCH(QString, pattern);
    QFETCH(QString, name);
    QTEST(matchesWildcard(pattern, name), "matches");
}

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

QTEST_GUILESS_MAIN(tst_ShellStandin)
#include "tst_shellstandin.moc"
