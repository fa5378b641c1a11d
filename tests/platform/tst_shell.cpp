// The two command lines that the plug-in runs, on the platform's own interpreter or its stand-in.

#include "platform/shell.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QDir>
#include <QFileInfo>
#include <QtTest>

using platform::ShowState;
Q_DECLARE_METATYPE(platform::ShowState)

class tst_Shell : public QObject
{
    Q_OBJECT

private slots:
    void delDeletesTheMatchingFiles_data();
    void delDeletesTheMatchingFiles();
    void rdRemovesTheWholeFolder();
    void aPathWithABlankFallsApart();
    void anUnbalancedQuoteRunsToTheEnd();
    void shownCommandsTakeLongerThanOnePoll();
    void missingNamesAreNoError();

private:
    static void run(const QString &parameters, ShowState show = ShowState::Hidden)
    {
        platform::shellExecuteAndWait(platform::wideFromSystemCodePage("cmd"),
                                      platform::wideFromSystemCodePage(parameters.toStdString()), show);
    }
};

void tst_Shell::delDeletesTheMatchingFiles_data()
{
    QTest::addColumn<ShowState>("show");
    QTest::newRow("hidden") << ShowState::Hidden;
    QTest::newRow("shown") << ShowState::Shown;
}

void tst_Shell::delDeletesTheMatchingFiles()
{
    QFETCH(ShowState, show);
    TemporaryWorkingFolder folder;
    for (const char *name : {"job/ABC.tar", "job/ABC_old.TAR", "job/abc2.tar", "job/ABC.tgz", "job/XABC.tar"})
        QVERIFY(folder.write(name, "x"));
    QVERIFY(QDir(folder.path()).mkpath("job/ABCfolder.tar"));

    run("/c del .\\job\\ABC*.tar", show);

    QCOMPARE(QDir("job").entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name),
             QStringList({"ABC.tgz", "ABCfolder.tar", "XABC.tar"}));
}

void tst_Shell::rdRemovesTheWholeFolder()
{
    TemporaryWorkingFolder folder;
    QVERIFY(folder.write("job/ABC/steps/pcb/features", "x"));
    QVERIFY(folder.write("job/ABCD/keep", "x"));
    QVERIFY(folder.write("job/ABC.tgz", "x"));

    run("/c rd /s /q .\\job\\ABC");

    QCOMPARE(QDir("job").entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name),
             QStringList({"ABC.tgz", "ABCD"}));
}

void tst_Shell::aPathWithABlankFallsApart()
{
    TemporaryWorkingFolder folder;
    QVERIFY(folder.write("my jobs/ABC/keep", "x"));
    QVERIFY(folder.write("my/gone", "x"));
    QVERIFY(folder.write("jobs/ABC/gone", "x"));

    run("/c rd /s /q .\\my jobs\\ABC");

    QVERIFY(QFileInfo::exists("my jobs/ABC/keep"));
    QVERIFY(!QFileInfo::exists("my"));
    QVERIFY(!QFileInfo::exists("jobs/ABC"));
}

void tst_Shell::anUnbalancedQuoteRunsToTheEnd()
{
    TemporaryWorkingFolder folder;
    QVERIFY(folder.write("one", "x"));
    QVERIFY(folder.write("two words", "x"));

    run("/c del one \"two words");

    QVERIFY(!QFileInfo::exists("one"));
    QVERIFY(!QFileInfo::exists("two words"));
}

void tst_Shell::shownCommandsTakeLongerThanOnePoll()
{
    TemporaryWorkingFolder folder;
    QElapsedTimer timer;
    timer.start();
    run("/c del nothing.tar", ShowState::Shown);
    QVERIFY(timer.elapsed() > 20);
}

void tst_Shell::missingNamesAreNoError()
{
    TemporaryWorkingFolder folder;
    QVERIFY(folder.write("keep", "x"));
    run("/c del .\\nowhere\\ABC*.tar");
    run("/c rd /s /q .\\nowhere\\ABC");
    QVERIFY(QFileInfo::exists("keep"));
}

QTEST_GUILESS_MAIN(tst_Shell)
#include "tst_shell.moc"
