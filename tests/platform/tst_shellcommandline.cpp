// Command lines as the command interpreter reads them: parameters, switches, wildcards.

#include "platform/commandline.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QtTest>

using namespace platform;
Q_DECLARE_METATYPE(platform::CommandLine::Command)

class tst_ShellCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void commandLinesFallIntoParameters_data();
    void commandLinesFallIntoParameters();
    void wildcardsMatchWithoutRegardToCase_data();
    void wildcardsMatchWithoutRegardToCase();
    void manyStarsTakeNoLongerThanOne();
    void delAsksForAWholeFolderOnly();
};

void tst_ShellCommandLine::commandLinesFallIntoParameters_data()
{
    using Command = CommandLine::Command;
    QTest::addColumn<QString>("line");
    QTest::addColumn<Command>("command");
    QTest::addColumn<QStringList>("operands");
    QTest::addColumn<QStringList>("switches");
    QTest::addColumn<bool>("goesOn");
    const QStringList none;
    QTest::newRow("del") << "/c del C:\\j\\A*.tar" << Command::Delete << QStringList("C:\\j\\A*.tar") << none
                         << false;
    QTest::newRow("rd") << "/c rd /s /q C:\\j\\A" << Command::RemoveTree << QStringList("C:\\j\\A") << none
                        << false;
    QTest::newRow("capitals") << "/C DEL a" << Command::Delete << QStringList("a") << none << false;
    QTest::newRow("blanks") << "/c del C:\\my jobs\\A" << Command::Delete
                            << QStringList({"C:\\my", "jobs\\A"}) << none << false;
    QTest::newRow("brackets do not separate")
        << "/c del board(1)*.tar" << Command::Delete << QStringList("board(1)*.tar") << none << false;
    QTest::newRow("other separators")
        << QString::fromUtf8("/c del a,b;c=d\te\vf\fg\xC2\xA0h") << Command::Delete
        << QStringList({"a", "b", "c", "d", "e", "f", "g", "h"}) << none << false;
    QTest::newRow("quotes") << "/c del \"a b\" c" << Command::Delete << QStringList({"a b", "c"}) << none
                            << false;
    QTest::newRow("open quote") << "/c del a*.tara*.*\"" << Command::Delete << QStringList("a*.tara*.*")
                                << none << false;
    QTest::newRow("ampersand") << "/c del a&b c" << Command::Delete << QStringList("a") << none << true;
    QTest::newRow("ampersand in quotes")
        << "/c del \"a&b\"" << Command::Delete << QStringList("a&b") << none << false;
    QTest::newRow("redirection") << "/c del a>b" << Command::Delete << QStringList("a") << none << true;
    QTest::newRow("caret") << "/c del a^&b" << Command::Delete << QStringList("a&b") << none << false;
    QTest::newRow("slashes in a path") << "/c del C:/jobs\\A*.tar" << Command::Delete << QStringList("C:")
                                       << QStringList("/jobs\\A*.tar") << false;
    QTest::newRow("slashes at the begin") << "/c rd /s /q /home/me\\A b" << Command::RemoveTree
                                          << QStringList("b") << QStringList({"/home", "/me\\A"}) << false;
    QTest::newRow("a slash in quotes")
        << "/c del \"C:/jobs\"" << Command::Delete << QStringList("C:/jobs") << none << false;
    QTest::newRow("rd without switches") << "/c rd A" << Command::None << QStringList("A") << none << false;
    QTest::newRow("another command") << "/c format c:" << Command::None << QStringList({"format", "c:"})
                                     << none << false;
    QTest::newRow("no /c") << "del a" << Command::None << none << none << false;
    QTest::newRow("empty") << "" << Command::None << none << none << false;
}

void tst_ShellCommandLine::commandLinesFallIntoParameters()
{
    QFETCH(QString, line);
    const CommandLine parsed = parseCommandLine(line);
    QTEST(parsed.command, "command");
    QTEST(parsed.operands, "operands");
    QTEST(parsed.switches, "switches");
    QTEST(parsed.goesOn, "goesOn");
}

void tst_ShellCommandLine::wildcardsMatchWithoutRegardToCase_data()
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

void tst_ShellCommandLine::wildcardsMatchWithoutRegardToCase()
{
    QFETCH(QString, pattern);
    QFETCH(QString, name);
    QTEST(matchesWildcard(pattern, name), "matches");
}

// By trying every length for every star, this would take longer than anybody waits.
void tst_ShellCommandLine::manyStarsTakeNoLongerThanOne()
{
    const QString pattern = QString("*a").repeated(100) + "*.tar";
    const QString name = QString("a").repeated(250);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!matchesWildcard(pattern, name));
    QVERIFY(matchesWildcard(pattern, name + ".tar"));
    QVERIFY(matchesWildcard(pattern.chopped(5) + "*.*", name));
    QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
}

void tst_ShellCommandLine::delAsksForAWholeFolderOnly()
{
    const TemporaryWorkingFolder folder;
    QVERIFY(folder.write("board/file", "x"));
    for (const char *operand : {"board", ".\\board", "board\\", "board\\*", "board\\*.*", "*", "*.*", "."})
        QVERIFY2(delAsks(operand), operand);
    for (const char *operand : {"board\\file", "boa*", "board\\f*.*", "nothing", "board\\*.tar"})
        QVERIFY2(!delAsks(operand), operand);
}

QTEST_GUILESS_MAIN(tst_ShellCommandLine)
#include "tst_shellcommandline.moc"
