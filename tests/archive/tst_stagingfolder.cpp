// Moving unpacked content to its place when the file system does not play along: names that are taken at the
// last moment, moves that fail, and ways back that fail, too.

#include "archive/archive.h"
#include "archive/stagingfolder.h"
#include "tests/archive/archivebuilder.h"
#include "tests/support/renamehook.h"

#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <memory>

using archive::StagingFolder;
using Tree = QMap<QString, QByteArray>;

namespace {

bool endsWith(const std::string &text, const std::string &ending)
{
    return text.size() >= ending.size() &&
           text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
}

// For file systems that cannot move and check in one go.
int noAtomicMoves(const std::string &, const std::string &, bool atomic)
{
    return atomic ? EINVAL : 0;
}

} // namespace

class tst_StagingFolder : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void aNameThatIsTakenAtTheLastMomentIsLeftAlone_data();
    void aNameThatIsTakenAtTheLastMomentIsLeftAlone();
    void aFileThatAppearsWhileFoldersAreMergedIsLeftAlone();
    void contentFindsItsPlaceOnEveryFileSystem();
    void aMoveThatFailsIsUndone();
    void aMoveThatFailsLeavesNoTraceOnAnyFileSystem();
    void whatCannotBeMovedBackIsKeptAndNamed();

private:
    QString out() const { return m_folder->path(); }
    Tree tree() const { return treeOf(out()); }
    // Fills `staging`, commits it and returns why it failed.
    QString commit(StagingFolder &staging, const Tree &content, const std::string &replaceable = {})
    {
        for (auto it = content.begin(); it != content.end(); ++it)
            writeFile(QString::fromStdString(staging.content().string()) + "/" + it.key(), it.value());
        try {
            m_placed = staging.commit(replaceable);
        } catch (const std::exception &error) {
            return QString::fromUtf8(error.what());
        }
        return {};
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::vector<StagingFolder::Placed> m_placed;
};

void tst_StagingFolder::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_placed.clear();
}

void tst_StagingFolder::aNameThatIsTakenAtTheLastMomentIsLeftAlone_data()
{
    QTest::addColumn<bool>("hasAtomicMoves");
    QTest::addColumn<QString>("content");
    for (const bool hasAtomicMoves : {true, false}) {
        const char *how = hasAtomicMoves ? ", checked by the system" : ", claimed first";
        QTest::newRow(qPrintable(QString("folder") + how)) << hasAtomicMoves << "odb/x";
        QTest::newRow(qPrintable(QString("file") + how)) << hasAtomicMoves << "odb";
    }
}

// An empty folder and a file are what a renaming would replace without a word.
void tst_StagingFolder::aNameThatIsTakenAtTheLastMomentIsLeftAlone()
{
    QFETCH(bool, hasAtomicMoves);
    QFETCH(QString, content);
    const QString odb = out() + "/odb";
    const bool comesFolder = content.contains("/");
    const RenameHook hook([&](const std::string &, const std::string &to, bool atomic) {
        if (atomic && endsWith(to, "/odb"))
            comesFolder ? QDir().mkdir(odb) : writeFile(odb, "somebody's");
        return atomic && !hasAtomicMoves ? EINVAL : 0;
    });
    StagingFolder staging(out().toStdString());
    QCOMPARE(commit(staging, {{content, "new"}}), QString());
    QCOMPARE(m_placed.size(), std::size_t(1));
    QCOMPARE(m_placed[0].placedAs.string(), std::string("odb~1"));
    if (comesFolder)
        QVERIFY(QDir(odb).isEmpty());
    else
        QCOMPARE(readFile(odb), QByteArray("somebody's"));
    QCOMPARE(readFile(out() + "/" + QString(content).replace("odb", "odb~1")), QByteArray("new"));
}

void tst_StagingFolder::aFileThatAppearsWhileFoldersAreMergedIsLeftAlone()
{
    QVERIFY(writeFile(out() + "/ABC/a", "old"));
    const QString b = out() + "/ABC/b";
    {
        const RenameHook hook([&](const std::string &, const std::string &to, bool) {
            if (endsWith(to, "/ABC/b") && to.find(".unpack") == std::string::npos)
                writeFile(b, "somebody's");
            return 0;
        });
        StagingFolder staging(out().toStdString());
        QVERIFY(!commit(staging, {{"ABC/a", "new"}, {"ABC/b", "new"}}, "ABC").isEmpty());
    }
    QCOMPARE(tree(), (Tree{{"ABC/", ""}, {"ABC/a", "old"}, {"ABC/b", "somebody's"}}));
}

void tst_StagingFolder::contentFindsItsPlaceOnEveryFileSystem()
{
    QVERIFY(writeFile(out() + "/ABC/a", "old"));
    QVERIFY(writeFile(out() + "/odb/a", "old"));
    const RenameHook hook(noAtomicMoves);
    {
        StagingFolder staging(out().toStdString());
        const Tree content{{"ABC/a", "new"}, {"ABC/d/b", "new"}, {"odb/a", "new"}, {"top", "new"}};
        QCOMPARE(commit(staging, content, "ABC"), QString());
    }
    QCOMPARE(tree(), (Tree{{"ABC/", ""},
                           {"ABC/a", "new"},
                           {"ABC/d/", ""},
                           {"ABC/d/b", "new"},
                           {"odb/", ""},
                           {"odb/a", "old"},
                           {"odb~1/", ""},
                           {"odb~1/a", "new"},
                           {"top", "new"}}));
}

void tst_StagingFolder::aMoveThatFailsIsUndone()
{
    QVERIFY(writeFile(out() + "/ABC/a", "old a"));
    QVERIFY(writeFile(out() + "/ABC/b", "old b"));
    const Tree before = tree();
    for (int failing = 1; failing <= 4; ++failing) {
        int moves = 0;
        const RenameHook hook(
            [&](const std::string &, const std::string &, bool) { return ++moves == failing ? EACCES : 0; });
        StagingFolder staging(out().toStdString());
        QVERIFY(!commit(staging, {{"ABC/a", "new a"}, {"ABC/b", "new b"}}, "ABC").isEmpty());
        QVERIFY(moves >= failing);
        Tree after = tree();
        for (const QString &path : after.keys()) {
            if (path.startsWith(".unpack"))
                after.remove(path);
        }
        QCOMPARE(after, before);
    }
    QCOMPARE(tree(), before); // no staging folder is left
}

// What claimed the name goes with the failure.
void tst_StagingFolder::aMoveThatFailsLeavesNoTraceOnAnyFileSystem()
{
    const RenameHook hook(
        [](const std::string &, const std::string &, bool atomic) { return atomic ? EINVAL : EACCES; });
    for (const char *content : {"odb/x", "odb"}) {
        StagingFolder staging(out().toStdString());
        QVERIFY(!commit(staging, {{content, "new"}}).isEmpty());
        QVERIFY(!QFileInfo::exists(out() + "/odb"));
    }
    QCOMPARE(tree(), Tree());
}

void tst_StagingFolder::whatCannotBeMovedBackIsKeptAndNamed()
{
    QVERIFY(writeFile(out() + "/ABC/steps/a", "old a"));
    QVERIFY(writeFile(out() + "/ABC/steps/b", "old b"));
    QString reason, folder;
    {
        int moves = 0;
        const RenameHook hook([&](const std::string &, const std::string &, bool) {
            return ++moves > 2 ? EACCES : 0; // one file is replaced, then nothing goes any more
        });
        StagingFolder staging(out().toStdString());
        folder = QFileInfo(QString::fromStdString(staging.content().string())).path();
        reason = commit(staging, {{"ABC/steps/a", "new a"}, {"ABC/steps/b", "new b"}}, "ABC");
    }
    QVERIFY2(reason.contains(folder) && reason.contains("denied"), qPrintable(reason));
    const Tree kept = treeOf(folder);
    for (const char *name : {"a", "b"}) {
        const QString path = QString("ABC/steps/") + name;
        const QByteArray old = QByteArray("old ") + name;
        QVERIFY(readFile(out() + "/" + path) == old || kept.value("old/" + path) == old);
    }
    QCOMPARE(kept.contains("old/ABC/steps/a") + kept.contains("old/ABC/steps/b"), 1);
}

QTEST_GUILESS_MAIN(tst_StagingFolder)
#include "tst_stagingfolder.moc"
