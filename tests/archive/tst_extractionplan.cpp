// What the entries of an archive become, and which archives are refused.

#include "archive/archive.h"
#include "archive/extractionplan.h"

#include <QTest>

using namespace archive;

namespace {

Entry entry(Entry::Kind kind, const std::wstring &path, const std::wstring &target = {},
            std::uint64_t size = 0)
{
    Entry made;
    made.kind = kind;
    made.path = path;
    made.linkTarget = target;
    made.size = size;
    return made;
}

Entry file(const std::wstring &path, std::uint64_t size = 1)
{
    return entry(Entry::Kind::File, path, {}, size);
}

Entry folder(const std::wstring &path)
{
    return entry(Entry::Kind::Folder, path);
}

Entry link(const std::wstring &path, const std::wstring &target)
{
    return entry(Entry::Kind::SymbolicLink, path, target);
}

Entry hardLink(const std::wstring &path, const std::wstring &target)
{
    return entry(Entry::Kind::HardLink, path, target);
}

std::vector<Entry> numbered(std::vector<Entry> entries)
{
    for (std::size_t i = 0; i < entries.size(); ++i)
        entries[i].index = std::uint32_t(i);
    return entries;
}

ExtractionPlan plan(std::vector<Entry> entries, NameRules rules = NameRules::Posix)
{
    return planExtraction(numbered(std::move(entries)), rules);
}

QString refusal(std::vector<Entry> entries, NameRules rules = NameRules::Posix)
{
    try {
        plan(std::move(entries), rules);
    } catch (const BitException &error) {
        return error.what();
    }
    return {};
}

template <typename Planned>
QStringList paths(const std::vector<Planned> &planned)
{
    QStringList all;
    for (const Planned &one : planned)
        all << QString::fromStdWString(one.path);
    return all;
}

} // namespace

class tst_ExtractionPlan : public QObject
{
    Q_OBJECT

private slots:
    void foldersWithoutEntriesArePlanned();
    void foldersComeBeforeWhatIsInThem();
    void theLaterOfTwoFilesWins();
    void sizesAreSummedUp();
    void linksInsideTheJobArePlanned_data();
    void linksInsideTheJobArePlanned();
    void linksThatLeadOutAreRefused_data();
    void linksThatLeadOutAreRefused();
    void anEntryBehindALinkIsRefused();
    void aLinkReplacedByAFolderIsRefused();
    void onePathIsOneKindOfThing_data();
    void onePathIsOneKindOfThing();
    void aHardLinkNeedsAnEarlierFile_data();
    void aHardLinkNeedsAnEarlierFile();
    void aHardLinkToAnEarlierFileIsPlanned();
    void whatHasNoPlaceInAJobIsRefusedWithItsFlaw();
    void twoSpellingsAreRefusedByTheWindowsRules();
    void theRefusalNamesTheEntry();
};

void tst_ExtractionPlan::foldersWithoutEntriesArePlanned()
{
    const ExtractionPlan made = plan({file(L"ABC/matrix/matrix"), file(L"ABC/steps/pcb/profile")});
    QCOMPARE(paths(made.folders), (QStringList{"ABC", "ABC/matrix", "ABC/steps", "ABC/steps/pcb"}));
    QCOMPARE(paths(made.files), (QStringList{"ABC/matrix/matrix", "ABC/steps/pcb/profile"}));
}

void tst_ExtractionPlan::foldersComeBeforeWhatIsInThem()
{
    const ExtractionPlan made = plan({folder(L"ABC/b/c"), folder(L"ABC/b"), folder(L"ABC"), folder(L"./")});
    QCOMPARE(paths(made.folders), (QStringList{"ABC", "ABC/b", "ABC/b/c"}));
}

void tst_ExtractionPlan::theLaterOfTwoFilesWins()
{
    const ExtractionPlan made = plan({file(L"ABC/x", 5), file(L"ABC/y"), file(L"./ABC//x", 7)});
    QCOMPARE(paths(made.files), (QStringList{"ABC/y", "ABC/x"}));
    QCOMPARE(made.files[1].index, 2u);
    QCOMPARE(made.files[1].size, std::uint64_t(7));
}

void tst_ExtractionPlan::sizesAreSummedUp()
{
    QCOMPARE(plan({file(L"a/x", 5), file(L"a/y", 6), file(L"a/x", 7)}).totalSize, std::uint64_t(13));
    const std::uint64_t huge = std::uint64_t(1) << 63;
    QVERIFY(!refusal({file(L"a/x", huge), file(L"a/y", huge), file(L"a/z", 10)}).isEmpty());
}

void tst_ExtractionPlan::linksInsideTheJobArePlanned_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("target");
    QTest::newRow("neighbour") << "ABC/a"
                               << "x";
    QTest::newRow("up and down") << "ABC/steps/a"
                                 << "../matrix/x";
    QTest::newRow("to the job itself") << "ABC/steps/a"
                                       << "..";
    QTest::newRow("dangling") << "ABC/a"
                              << "nowhere/at/all";
    QTest::newRow("dots") << "ABC/a"
                          << "./x";
}

void tst_ExtractionPlan::linksInsideTheJobArePlanned()
{
    QFETCH(QString, path);
    QFETCH(QString, target);
    const ExtractionPlan made = plan({file(L"ABC/x"), link(path.toStdWString(), target.toStdWString())});
    QCOMPARE(paths(made.symbolicLinks), QStringList{path});
    QCOMPARE(QString::fromStdWString(made.symbolicLinks[0].target), target);
}

void tst_ExtractionPlan::linksThatLeadOutAreRefused_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("target");
    QTest::newRow("absolute") << "ABC/a"
                              << "/etc";
    QTest::newRow("backslash") << "ABC/a"
                               << "..\\..\\x";
    QTest::newRow("UNC") << "ABC/a"
                         << "\\\\server\\share";
    QTest::newRow("drive") << "ABC/a"
                           << "C:/x";
    QTest::newRow("out of the job") << "ABC/a"
                                    << "../OTHER/x";
    QTest::newRow("to the job root") << "ABC/a"
                                     << "..";
    QTest::newRow("out and back") << "ABC/a"
                                  << "../ABC/x";
    QTest::newRow("far out") << "ABC/b/a"
                             << "../../../../etc/passwd";
    QTest::newRow("beside the jobs") << "a"
                                     << "ABC";
    QTest::newRow("no target") << "ABC/a"
                               << "";
    QTest::newRow("itself") << "ABC/a"
                            << "a";
    QTest::newRow("through another link") << "ABC/a"
                                          << "l/x";
    QTest::newRow("another link with a dot behind it") << "ABC/a"
                                                       << "l/.";
    QTest::newRow("another link with a slash behind it") << "ABC/a"
                                                         << "l/";
    QTest::newRow("up after another link") << "ABC/d/a"
                                           << "../l/../x";
}

void tst_ExtractionPlan::linksThatLeadOutAreRefused()
{
    QFETCH(QString, path);
    QFETCH(QString, target);
    const std::vector<Entry> entries{file(L"ABC/x"), link(path.toStdWString(), target.toStdWString()),
                                     link(L"ABC/l", L"x")};
    QVERIFY2(!refusal(entries).isEmpty(), qPrintable(path + " -> " + target));
}

void tst_ExtractionPlan::anEntryBehindALinkIsRefused()
{
    const QString reason = refusal({folder(L"ABC/d"), link(L"ABC/l", L"d"), file(L"ABC/l/x")});
    QVERIFY2(reason.contains("behind the link"), qPrintable(reason));
    QVERIFY(!refusal({folder(L"ABC/d"), link(L"ABC/l", L"d"), link(L"ABC/l/x", L"y")}).isEmpty());
    QVERIFY(!refusal({folder(L"ABC/d"), link(L"ABC/l", L"d"), folder(L"ABC/l/x")}).isEmpty());
}

void tst_ExtractionPlan::aLinkReplacedByAFolderIsRefused()
{
    QVERIFY(!refusal({link(L"ABC/l", L"x"), folder(L"ABC/l"), file(L"ABC/l/y")}).isEmpty());
    QVERIFY(!refusal({folder(L"ABC/l"), file(L"ABC/l/y"), link(L"ABC/l", L"x")}).isEmpty());
}

void tst_ExtractionPlan::onePathIsOneKindOfThing_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    enum { AFile, AFolder, ALink, AHardLink };
    const char *names[] = {"file", "folder", "link", "hard link"};
    for (const int first : {AFile, AFolder, ALink, AHardLink}) {
        for (const int second : {AFile, AFolder, ALink, AHardLink}) {
            if (first != second || first == ALink || first == AHardLink)
                QTest::newRow(qPrintable(QString("%1, %2").arg(names[first], names[second])))
                    << first << second;
        }
    }
}

void tst_ExtractionPlan::onePathIsOneKindOfThing()
{
    QFETCH(int, first);
    QFETCH(int, second);
    const std::vector<Entry> kinds{file(L"ABC/p"), folder(L"ABC/p"), link(L"ABC/p", L"x"),
                                   hardLink(L"ABC/p", L"ABC/x")};
    QVERIFY(!refusal({file(L"ABC/x"), kinds[std::size_t(first)], kinds[std::size_t(second)]}).isEmpty());
}

void tst_ExtractionPlan::aHardLinkNeedsAnEarlierFile_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("outside") << "/etc/passwd";
    QTest::newRow("up") << "../x";
    QTest::newRow("not in the archive") << "ABC/nothing";
    QTest::newRow("later in the archive") << "ABC/later";
    QTest::newRow("a folder") << "ABC";
    QTest::newRow("a link") << "ABC/l";
    QTest::newRow("stored twice") << "ABC/twice";
    QTest::newRow("nothing") << ".";
}

void tst_ExtractionPlan::aHardLinkNeedsAnEarlierFile()
{
    QFETCH(QString, target);
    QVERIFY(!refusal({file(L"ABC/x"), link(L"ABC/l", L"x"), file(L"ABC/twice"),
                      hardLink(L"ABC/h", target.toStdWString()), file(L"ABC/later"), file(L"ABC/twice")})
                 .isEmpty());
}

void tst_ExtractionPlan::aHardLinkToAnEarlierFileIsPlanned()
{
    const ExtractionPlan made =
        plan({file(L"ABC/x"), hardLink(L"ABC/h", L"./ABC/x"), hardLink(L"ABC/i", L"ABC/h")});
    QCOMPARE(paths(made.hardLinks), (QStringList{"ABC/h", "ABC/i"}));
    QCOMPARE(made.hardLinks[0].target, std::wstring(L"ABC/x"));
}

void tst_ExtractionPlan::whatHasNoPlaceInAJobIsRefusedWithItsFlaw()
{
    Entry device = entry(Entry::Kind::Unsupported, L"ABC/dev");
    device.flaw = "it is a device";
    QCOMPARE(refusal({device}), QString("\"ABC/dev\": it is a device"));
}

void tst_ExtractionPlan::twoSpellingsAreRefusedByTheWindowsRules()
{
    const std::vector<Entry> entries{file(L"ABC/Matrix"), file(L"ABC/matrix")};
    QVERIFY(!refusal(entries, NameRules::Windows).isEmpty());
    QCOMPARE(refusal(entries, NameRules::Posix), QString());
    QVERIFY(!refusal({link(L"ABC/L", L"x"), file(L"ABC/l/y")}, NameRules::Windows).isEmpty());
}

void tst_ExtractionPlan::theRefusalNamesTheEntry()
{
    QVERIFY(refusal({file(L"ABC/x"), file(L"ABC/../../evil")}).startsWith("\"ABC/../../evil\": "));
}

QTEST_APPLESS_MAIN(tst_ExtractionPlan)
#include "tst_extractionplan.moc"
