// How commands are started through the Windows shell: the show state, the wait, the handle that stays open,
// and the code page that their texts are read in.
#include "platform/shell.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QtTest>

#include <windows.h>

using platform::ShowState;
Q_DECLARE_METATYPE(platform::ShowState)

class tst_ShellExecute : public QObject
{
    Q_OBJECT

private slots:
    void everyCallLeavesOneHandleOpen_data();
    void everyCallLeavesOneHandleOpen();
    void theHandleLeftOpenIsThatOfTheEndedProcess();
    void theShowStateReachesTheProgram_data() { everyCallLeavesOneHandleOpen_data(); }
    void theShowStateReachesTheProgram();
    void theProgramRunsInTheCallersFolder();
    void parametersArriveAsTheyWereWritten();
    void theCallWaitsForTheEndOfTheProgram();
    void textsAreReadInTheSystemCodePage_data();
    void textsAreReadInTheSystemCodePage();
    void everyByteIsReadAsQtReadsIt();
    void theThreadsCodePageIsThatOfItsLocale();
    void whatDelDoesWithAFolder();
    void utf8NamesOutsideAsciiNameAnotherFile();

private:
    static QStringList probe(const TemporaryWorkingFolder &folder, ShowState show,
                             const QString &more = QString());
    static int openProcessHandles();
};

// Runs the probe on the file "probe.txt" of `folder`; returns the lines it wrote.
QStringList tst_ShellExecute::probe(const TemporaryWorkingFolder &folder, ShowState show, const QString &more)
{
    const QString program = QCoreApplication::applicationDirPath() + "/" STARTUP_PROBE;
    platform::shellExecuteAndWait(QDir::toNativeSeparators(program).toStdWString(),
                                  ("probe.txt" + more).toStdWString(), show);
    QFile file(folder.filePath("probe.txt"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split('\n');
}

// How many handles of this process are those of processes.
int tst_ShellExecute::openProcessHandles()
{
    int count = 0;
    for (quintptr value = 4; value < 0x4000; value += 4) {
        if (GetProcessId(HANDLE(value)) != 0)
            ++count;
    }
    return count;
}

void tst_ShellExecute::everyCallLeavesOneHandleOpen_data()
{
    QTest::addColumn<ShowState>("show");
    QTest::newRow("hidden") << ShowState::Hidden;
    QTest::newRow("shown") << ShowState::Shown;
}

void tst_ShellExecute::everyCallLeavesOneHandleOpen()
{
    QFETCH(ShowState, show);
    TemporaryWorkingFolder folder;
    const int before = openProcessHandles();
    for (int i = 0; i < 4; ++i)
        platform::shellExecuteAndWait(L"cmd", L"/c del nothing.tar", show);
    QCOMPARE(openProcessHandles(), before + 4);
}

void tst_ShellExecute::theHandleLeftOpenIsThatOfTheEndedProcess()
{
    const auto endedProcesses = [] {
        int count = 0;
        for (quintptr value = 4; value < 0x4000; value += 4) {
            DWORD code = STILL_ACTIVE;
            if (GetExitCodeProcess(HANDLE(value), &code) && code == 77)
                ++count;
        }
        return count;
    };
    TemporaryWorkingFolder folder;
    const int before = endedProcesses();
    platform::shellExecuteAndWait(L"cmd", L"/c exit 77", ShowState::Hidden);
    QCOMPARE(endedProcesses(), before + 1);
}

void tst_ShellExecute::theShowStateReachesTheProgram()
{
    QFETCH(ShowState, show);
    TemporaryWorkingFolder folder;
    const QStringList lines = probe(folder, show);
    QVERIFY(lines.size() >= 4);
    QCOMPARE(lines[0].toInt(), int(show));
    QCOMPARE(lines[1], QString("1"));
}

void tst_ShellExecute::theProgramRunsInTheCallersFolder()
{
    TemporaryWorkingFolder folder;
    const QStringList lines = probe(folder, ShowState::Hidden);
    QVERIFY(lines.size() >= 4);
    QCOMPARE(QDir(lines[2]).canonicalPath(), folder.path());
}

void tst_ShellExecute::parametersArriveAsTheyWereWritten()
{
    TemporaryWorkingFolder folder;
    const QString odd = QString::fromUtf8(" /c  .\\my jobs\\\xC3\xA9\xE6\x9D\xBF*.tar*.*\"");
    const QStringList lines = probe(folder, ShowState::Hidden, odd);
    QVERIFY(lines.size() >= 4);
    QVERIFY2(lines[3].endsWith("probe.txt" + odd), qPrintable(lines[3]));
}

void tst_ShellExecute::theCallWaitsForTheEndOfTheProgram()
{
    TemporaryWorkingFolder folder;
    QElapsedTimer timer;
    timer.start();
    const QStringList lines = probe(folder, ShowState::Shown, " sleep");
    QVERIFY(timer.elapsed() >= 300);
    QVERIFY(lines.size() >= 4);
}

void tst_ShellExecute::textsAreReadInTheSystemCodePage_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QByteArray() << QString();
    QTest::newRow("ASCII") << QByteArray("/c del .\\job\\A B*.tar") << QString("/c del .\\job\\A B*.tar");
    switch (GetACP()) {
    case 1252:
        QTest::newRow("1252 euro") << QByteArray("\x80") << QString(QChar(0x20AC));
        QTest::newRow("1252, e acute in UTF-8")
            << QByteArray("\xC3\xA9") << QString::fromUtf8("\xC3\x83\xC2\xA9");
        break;
    case 936:
        QTest::newRow("936 board") << QByteArray("\xB0\xE5") << QString(QChar(0x677F));
        break;
    case 65001:
        QTest::newRow("UTF-8 e acute") << QByteArray("\xC3\xA9") << QString(QChar(0xE9));
        break;
    default: // every code page is compared with Qt's reading in everyByteIsReadAsQtReadsIt
        break;
    }
}

void tst_ShellExecute::textsAreReadInTheSystemCodePage()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QCOMPARE(QString::fromStdWString(platform::wideFromSystemCodePage(bytes.toStdString())), text);
}

void tst_ShellExecute::everyByteIsReadAsQtReadsIt()
{
    for (int value = 1; value < 256; ++value) {
        const QByteArray bytes = QByteArray("a") + char(value) + "bc";
        QCOMPARE(QString::fromStdWString(platform::wideFromSystemCodePage(bytes.toStdString())),
                 QString::fromLocal8Bit(bytes));
    }
}

// A host may give a thread a locale of its own.
void tst_ShellExecute::theThreadsCodePageIsThatOfItsLocale()
{
    const LCID before = GetThreadLocale();
    const std::string bytes = "\xE0\xE1.tar";
    QCOMPARE(platform::wideFromThreadCodePage("plain"), std::wstring(L"plain"));
    QVERIFY(SetThreadLocale(MAKELCID(MAKELANGID(LANG_RUSSIAN, SUBLANG_DEFAULT), SORT_DEFAULT)));
    const std::wstring russian = platform::wideFromThreadCodePage(bytes);
    QVERIFY(SetThreadLocale(MAKELCID(MAKELANGID(LANG_GREEK, SUBLANG_DEFAULT), SORT_DEFAULT)));
    const std::wstring greek = platform::wideFromThreadCodePage(bytes);
    SetThreadLocale(before);
    QCOMPARE(QString::fromStdWString(russian), QString::fromUtf8("\xD0\xB0\xD0\xB1.tar")); // windows-1251
    QCOMPARE(QString::fromStdWString(greek), QString::fromUtf8("\xCE\xB0\xCE\xB1.tar"));   // windows-1253
}

// It asks, and without an answer deletes nothing. Seen in a program of its own, which can be ended.
void tst_ShellExecute::whatDelDoesWithAFolder()
{
    TemporaryWorkingFolder folder;
    for (const char *operand : {"board", ".\\board\\*", ".\\board\\*.*"}) {
        QVERIFY(folder.write("board/file", "x"));
        QProcess interpreter;
        interpreter.setNativeArguments(QString("/c del ") + operand);
        interpreter.start("cmd", QStringList());
        QVERIFY(interpreter.waitForStarted());
        const bool hasEnded = interpreter.waitForFinished(5000);
        qInfo() << "del" << operand << (hasEnded ? "ended" : "waits") << interpreter.readAll().left(100);
        if (!hasEnded) {
            interpreter.kill();
            interpreter.waitForFinished();
        }
        QVERIFY(!hasEnded || QFile::exists("board/file"));
    }
}

// The plug-in builds its commands in UTF-8, and the shell gets them through the system code page: a job whose
// name is outside ASCII is not the one that is deleted.
void tst_ShellExecute::utf8NamesOutsideAsciiNameAnotherFile()
{
    if (GetACP() == CP_UTF8) {
        qInfo("this system's code page is UTF-8: both names are the same file");
        return;
    }
    TemporaryWorkingFolder folder;
    const QString name = QString::fromUtf8("job\\t\xC3\xA9st.tar");
    QVERIFY(folder.write("job/plain.tar", "x"));
    QVERIFY(folder.write(QDir::fromNativeSeparators(name), "x"));
    const QString asRead = QString::fromLocal8Bit(name.toUtf8());
    QVERIFY(asRead != name);
    QVERIFY(folder.write(QDir::fromNativeSeparators(asRead), "x"));

    const std::wstring command = platform::wideFromSystemCodePage(("/c del " + name).toStdString());
    platform::shellExecuteAndWait(L"cmd", command, ShowState::Hidden);

    QVERIFY(QFile::exists(name));
    QVERIFY(!QFile::exists(asRead));
    QVERIFY(QFile::exists("job/plain.tar"));
}

QTEST_GUILESS_MAIN(tst_ShellExecute)
#include "tst_shellexecute.moc"
