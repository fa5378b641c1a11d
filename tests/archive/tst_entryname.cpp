// Which names inside an archive may be written.

#include "archive/archive.h"
#include "archive/entryname.h"

#include <QTest>

using namespace archive;

Q_DECLARE_METATYPE(archive::NameRules)

namespace {

QString reasonFor(const std::wstring &path, NameRules rules)
{
    try {
        checkedPathParts(path, rules);
    } catch (const BitException &refusal) {
        return refusal.what();
    }
    return {};
}

QString memberReason(const std::wstring &name, NameRules rules)
{
    try {
        checkMemberName(name, rules);
    } catch (const BitException &refusal) {
        return refusal.what();
    }
    return {};
}

} // namespace

class tst_EntryName : public QObject
{
    Q_OBJECT

private slots:
    void partsAreWhatIsBetweenTheSlashes_data();
    void partsAreWhatIsBetweenTheSlashes();
    void namesThatLeadOutAreRefused_data();
    void namesThatLeadOutAreRefused();
    void windowsNamesAreRefusedByTheWindowsRulesOnly_data();
    void windowsNamesAreRefusedByTheWindowsRulesOnly();
    void ordinaryNamesPassBothRules_data();
    void ordinaryNamesPassBothRules();
    void memberNamesThatTheInterpreterWouldReadAreRefused_data();
    void memberNamesThatTheInterpreterWouldReadAreRefused();
    void memberNamesWithBlanksAndBracketsAreFine();
    void windowsTakesLetterCaseForTheSameName();
};

void tst_EntryName::partsAreWhatIsBetweenTheSlashes_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("parts");
    QTest::newRow("one") << "ABC" << QStringList{"ABC"};
    QTest::newRow("three") << "ABC/matrix/matrix" << QStringList{"ABC", "matrix", "matrix"};
    QTest::newRow("dots are left out") << "./ABC/./x" << QStringList{"ABC", "x"};
    QTest::newRow("empty parts are left out") << "ABC//x/" << QStringList{"ABC", "x"};
    QTest::newRow("the folder itself") << "./" << QStringList();
}

void tst_EntryName::partsAreWhatIsBetweenTheSlashes()
{
    QFETCH(QString, path);
    QFETCH(QStringList, parts);
    for (const NameRules rules : {NameRules::Posix, NameRules::Windows}) {
        QStringList seen;
        for (const std::wstring &part : checkedPathParts(path.toStdWString(), rules))
            seen << QString::fromStdWString(part);
        QCOMPARE(seen, parts);
    }
}

void tst_EntryName::namesThatLeadOutAreRefused_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("no name") << "";
    QTest::newRow("absolute") << "/etc/passwd";
    QTest::newRow("absolute, twice") << "//etc/passwd";
    QTest::newRow("UNC") << "\\\\server\\share\\x";
    QTest::newRow("absolute with a backslash") << "\\windows\\x";
    QTest::newRow("drive") << "C:/x";
    QTest::newRow("drive with a backslash") << "C:\\x";
    QTest::newRow("drive, relative") << "c:x";
    QTest::newRow("long form") << "\\\\?\\C:\\x";
    QTest::newRow("up") << "../x";
    QTest::newRow("up twice") << "../../x";
    QTest::newRow("up inside") << "ABC/../../x";
    QTest::newRow("up at the end") << "ABC/..";
    QTest::newRow("up and back") << "ABC/../ABC/x";
    QTest::newRow("only up") << "..";
    QTest::newRow("up after a dot") << "./../x";
    QTest::newRow("up with backslashes") << "..\\x";
    QTest::newRow("up with backslashes inside") << "ABC\\..\\..\\x";
    QTest::newRow("mixed") << "ABC/..\\x";
    QTest::newRow("7-Zip's stand-in for a backslash") << QString("..") + QChar(0xF05C) + "x";
}

void tst_EntryName::namesThatLeadOutAreRefused()
{
    QFETCH(QString, path);
    for (const NameRules rules : {NameRules::Posix, NameRules::Windows})
        QVERIFY2(!reasonFor(path.toStdWString(), rules).isEmpty(), qPrintable(path));
}

void tst_EntryName::windowsNamesAreRefusedByTheWindowsRulesOnly_data()
{
    QTest::addColumn<QString>("path");
    for (const char *name : {"con", "CON", "nul", "aux.txt", "PRN.a.b", "com1", "COM9.tar", "lpt0", "conin$",
                             "NUL .x", "CLOCK$"})
        QTest::newRow(name) << QString("ABC/") + name;
    QTest::newRow("superscript device") << QString("ABC/COM") + QChar(0xB2);
    QTest::newRow("device as a folder") << "ABC/nul/x";
    QTest::newRow("stream") << "ABC/matrix:hidden";
    QTest::newRow("stream of a folder") << "ABC:hidden:$DATA";
    QTest::newRow("dot at the end") << "ABC/x.";
    QTest::newRow("blank at the end") << "ABC/x ";
    QTest::newRow("three dots") << "ABC/.../x";
    QTest::newRow("dots and a blank") << "ABC/.. /x";
    for (const char *character : {"<", ">", "\"", "|", "?", "*"})
        QTest::newRow(character) << QString("ABC/a") + character + "b";
    QTest::newRow("control character") << QString("ABC/a") + QChar(7);
}

void tst_EntryName::windowsNamesAreRefusedByTheWindowsRulesOnly()
{
    QFETCH(QString, path);
    QVERIFY2(!reasonFor(path.toStdWString(), NameRules::Windows).isEmpty(), qPrintable(path));
    QCOMPARE(reasonFor(path.toStdWString(), NameRules::Posix), QString());
}

void tst_EntryName::ordinaryNamesPassBothRules_data()
{
    QTest::addColumn<QString>("path");
    for (const char *name : {"comp_+_top", "console", "com", "com10", "nullable", ".attrlist.sum", "..x",
                             "x..y", "a b", "a;b,c=d", "auxiliary.txt", "steps/panel+1/layers/l.1"})
        QTest::newRow(name) << QString("ABC/") + name;
    QTest::newRow("other alphabets") << QString::fromUtf8("料号/层");
}

void tst_EntryName::ordinaryNamesPassBothRules()
{
    QFETCH(QString, path);
    for (const NameRules rules : {NameRules::Posix, NameRules::Windows})
        QCOMPARE(reasonFor(path.toStdWString(), rules), QString());
}

void tst_EntryName::memberNamesThatTheInterpreterWouldReadAreRefused_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("folder") << "dir/x.tar";
    QTest::newRow("backslash") << "dir\\x.tar";
    QTest::newRow("up") << "..";
    QTest::newRow("dot") << ".";
    QTest::newRow("only dots and a slash") << "./x.tar";
    QTest::newRow("second command") << "x&calc&.tar";
    QTest::newRow("pipe") << "x|calc.tar";
    QTest::newRow("redirection") << "x>y.tar";
    QTest::newRow("variable") << "%TEMP%.tar";
    QTest::newRow("quote") << "x\".tar";
    QTest::newRow("wildcard") << "*.tar";
    QTest::newRow("tabulator") << "x\toxconfig.tar";
    QTest::newRow("line end") << "x\ncalc.tar";
}

void tst_EntryName::memberNamesThatTheInterpreterWouldReadAreRefused()
{
    QFETCH(QString, name);
    for (const NameRules rules : {NameRules::Posix, NameRules::Windows})
        QVERIFY2(!memberReason(name.toStdWString(), rules).isEmpty(), qPrintable(name));
}

void tst_EntryName::memberNamesWithBlanksAndBracketsAreFine()
{
    for (const NameRules rules : {NameRules::Posix, NameRules::Windows}) {
        for (const wchar_t *name : {L"my job.tar", L"my job", L"WiFi.tar", L"board(1).tar", L"board (1).tar",
                                    L"a,b;c=d.tar", L"x'y`z.tar", L"no\u00A0break.tar"})
            QCOMPARE(memberReason(name, rules), QString());
    }
}

void tst_EntryName::windowsTakesLetterCaseForTheSameName()
{
    QCOMPARE(foldedName(L"Matrix", NameRules::Windows), foldedName(L"mATRIX", NameRules::Windows));
    QVERIFY(foldedName(L"Matrix", NameRules::Posix) != foldedName(L"matrix", NameRules::Posix));
}

QTEST_APPLESS_MAIN(tst_EntryName)
#include "tst_entryname.moc"
