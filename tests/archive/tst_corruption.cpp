// Damaged archives: whatever is changed, the import ends with the right content or not at all.

#include "archive/archive.h"
#include "archive/localpath.h"
#include "tests/archive/archivebuilder.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <filesystem>
#include <memory>

using namespace archive;
using Tree = QMap<QString, QByteArray>;

namespace {

QByteArray smallTar()
{
    return TarBuilder()
        .folder("ABC/")
        .file("ABC/matrix/matrix", "STEP {\n}\n")
        .entry(TarBuilder::LongName, "././@LongLink", "ABC/" + QByteArray(120, 'n') + '\0')
        .file("short", "long")
        .extended({{"path", "ABC/extended"}, {"mtime", "1600000000.5"}})
        .file("short", "more")
#ifndef _WIN32 // symbolic links take a privilege there
        .symbolicLink("ABC/link", "matrix/matrix")
#endif
        .hardLink("ABC/hard", "ABC/extended")
        .bytes();
}

} // namespace

class tst_Corruption : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void everyTruncationOfTheGzipFileFails();
    void everyTruncationOfTheTarFailsOrIsWhole();
    void everyTruncationOfASmallTarFailsOrIsWhole();
    void everyChangedByteOfTheGzipFrameFailsOrIsHarmless();
    void everyChangedByteOfTheGzipFileFailsOrIsHarmless();
    void everyChangedByteOfAHeaderIsNoticed();
    void everyChangedByteWithARightChecksumStaysInTheFolder_data();
    void everyChangedByteWithARightChecksumStaysInTheFolder();
    void sizesThatLieAreNoticed_data();
    void sizesThatLieAreNoticed();

private:
    // Whether `bytes` can be unpacked, and what is there afterwards. `tree` comes with what was there before.
    bool unpacks(const BitInFormat &format, const QByteArray &bytes, Tree &tree)
    {
        const QString out = m_folder->filePath("out");
        if (!tree.isEmpty()) {
            std::filesystem::remove_all(localPath(out.toStdWString())); // Qt leaves names that are no UTF-8
            QDir().mkpath(out);
        }
        QFile::remove(
            m_folder->filePath("ABC.tar")); // writing over it would have some file systems wait for the disk
        writeFile(m_folder->filePath("ABC.tar"), bytes);
        bool done = true;
        try {
            BitExtractor(*m_library, format)
                .extract(m_folder->filePath("ABC.tar").toStdWString(), (out + "/").toStdWString());
        } catch (const BitException &) {
            done = false;
        }
        tree = treeOf(out);
        return done;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Bit7zLibrary> m_library;
};

void tst_Corruption::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_library = std::make_unique<Bit7zLibrary>();
    QDir().mkpath(m_folder->filePath("out"));
}

void tst_Corruption::everyTruncationOfTheGzipFileFails()
{
    const QByteArray whole = gzip(smallTar(), "ABC.tar");
    Tree tree;
    for (int length = 0; length < whole.size(); ++length) {
        QVERIFY2(!unpacks(BitFormat::GZip, whole.left(length), tree), qPrintable(QString::number(length)));
        QVERIFY(tree.isEmpty());
    }
}

void tst_Corruption::everyTruncationOfTheTarFailsOrIsWhole()
{
    const QByteArray whole = smallTar();
    Tree wanted;
    QVERIFY(unpacks(BitFormat::Tar, whole, wanted));
    Tree tree = wanted;
    // Every length near a record's border, where readers err, and a sample of the others.
    for (int length = 0; length < whole.size(); ++length) {
        const int inRecord = length % 512;
        if (inRecord > 2 && inRecord < 510 && length % 37 != 0)
            continue;
        if (unpacks(BitFormat::Tar, whole.left(length), tree))
            QVERIFY2(length > whole.size() - 1024 && tree == wanted, qPrintable(QString::number(length)));
        else
            QVERIFY(tree.isEmpty());
    }
}

// Without an exception: one of the two empty records at the end is enough, a tar without any is refused.
void tst_Corruption::everyTruncationOfASmallTarFailsOrIsWhole()
{
    const QByteArray whole = TarBuilder().folder("ABC/").file("ABC/x", "content").bytes();
    Tree wanted;
    QVERIFY(unpacks(BitFormat::Tar, whole, wanted));
    Tree tree = wanted;
    for (int length = 0; length < whole.size(); ++length) {
        const bool isUnpacked = unpacks(BitFormat::Tar, whole.left(length), tree);
        QVERIFY2(tree == (isUnpacked ? wanted : Tree()), qPrintable(QString::number(length)));
        if (length <= whole.size() - 1024)
            QVERIFY2(!isUnpacked, qPrintable(QString::number(length)));
    }
}

void tst_Corruption::everyChangedByteOfTheGzipFrameFailsOrIsHarmless()
{
    const QByteArray tar = smallTar();
    const QByteArray whole = gzip(tar, "ABC.tar");
    Tree tree;
    const int header = 10 + 8; // and the name with its zero
    for (int place = 0; place < header + 8; ++place) {
        const int at = place < header ? place : whole.size() - 8 + place - header;
        // The byte of flags in all its values, the others with a bit changed here and there.
        const bool isFlags = at == 3;
        for (int flip = 1; flip < 256; flip += isFlags ? 1 : 31) {
            const int value = (whole[at] ^ flip) & 0xFF;
            QByteArray changed = whole;
            changed[at] = char(value);
            if (!unpacks(BitFormat::GZip, changed, tree)) {
                QVERIFY2(tree.isEmpty(), qPrintable(QString("%1 = %2").arg(at).arg(value)));
                continue;
            }
            QCOMPARE(tree.size(), 1); // under another name perhaps, but whole
            QVERIFY2(tree.first() == tar, qPrintable(QString("%1 = %2").arg(at).arg(value)));
        }
    }
}

void tst_Corruption::everyChangedByteOfTheGzipFileFailsOrIsHarmless()
{
    const QByteArray tar = smallTar();
    const QByteArray whole = gzip(tar, "ABC.tar");
    Tree tree;
    for (int at = 0; at < whole.size(); ++at) {
        for (const int flip : {0x01, 0x80}) {
            QByteArray changed = whole;
            changed[at] = char(changed[at] ^ flip);
            if (!unpacks(BitFormat::GZip, changed, tree))
                QVERIFY(tree.isEmpty());
            else
                QVERIFY2(tree.size() == 1 && tree.first() == tar,
                         qPrintable(QString("%1 ^ %2").arg(at).arg(flip)));
        }
    }
}

// A header's checksum notices every change of one byte, except of the checksum's own padding.
void tst_Corruption::everyChangedByteOfAHeaderIsNoticed()
{
    const QByteArray whole = smallTar();
    Tree wanted;
    QVERIFY(unpacks(BitFormat::Tar, whole, wanted));
    QList<int> headers;
    for (int at = 0; at < whole.size() - 1024; at += 512) {
        if (whole.mid(at + 257, 5) == "ustar")
            headers << at;
    }
    QVERIFY(headers.size() >= 7);
    Tree tree = wanted;
    for (const int header : headers) {
        for (int at = header; at < header + 512; ++at) {
            QByteArray changed = whole;
            changed[at] = char(changed[at] ^ 0x11);
            if (unpacks(BitFormat::Tar, changed, tree))
                QVERIFY2(tree == wanted, qPrintable(QString::number(at)));
            else
                QVERIFY(tree.isEmpty());
        }
    }
}

void tst_Corruption::everyChangedByteWithARightChecksumStaysInTheFolder_data()
{
    QTest::addColumn<int>("header"); // its place in the tar
    QTest::addColumn<int>("value");
    // A dot, a slash, and the mark of a number in base-256.
    for (const int header : {0, 1024}) {
        for (const int value : {0x2e, 0x2f, 0x80})
            QTest::newRow(qPrintable(QString("header at %1, 0x%2").arg(header).arg(value, 2, 16)))
                << header << value;
    }
}

// Whatever a header says when its checksum is right: nothing but the output folder changes, and nothing of
// the unpacking's own stays there.
void tst_Corruption::everyChangedByteWithARightChecksumStaysInTheFolder()
{
    QFETCH(int, header);
    QFETCH(int, value);
    const QByteArray whole = TarBuilder()
                                 .file("ABC/file", "content")
                                 .hardLink("ABC/hard", "ABC/file")
                                 .folder("ABC/steps/")
                                 .bytes();
    QCOMPARE(whole.mid(header + 257, 5), QByteArray("ustar"));
    Tree tree{{"something", ""}};
    for (int at = 0; at < 512; ++at) {
        QByteArray changed = whole.mid(header, 512);
        changed[at] = char(value);
        TarBuilder::setChecksum(changed);
        const bool isUnpacked =
            unpacks(BitFormat::Tar, QByteArray(whole).replace(header, 512, changed), tree);
        QVERIFY2(isUnpacked || tree.isEmpty(), qPrintable(QString::number(at)));
        for (const QString &path : tree.keys())
            QVERIFY2(!path.startsWith(".unpack"), qPrintable(path));
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
                 (QStringList{"ABC.tar", "out"}));
    }
}

void tst_Corruption::sizesThatLieAreNoticed_data()
{
    QTest::addColumn<QByteArray>("size");
    QTest::newRow("beyond the file") << TarBuilder::octal(100000);
    QTest::newRow("8 GB") << TarBuilder::octal(077777777777);
    QTest::newRow("base-256, huge") << QByteArray::fromHex("80000000"
                                                           "7fffffffffffffff");
    QTest::newRow("base-256, negative") << QByteArray::fromHex("ffffffff"
                                                               "fffffffffffffff0");
    QTest::newRow("no number") << QByteArray("12x4       \0", 12);
    QTest::newRow("base-256, more than 64 bits") << QByteArray::fromHex("8f000000"
                                                                        "0000000000000005");
}

void tst_Corruption::sizesThatLieAreNoticed()
{
    QFETCH(QByteArray, size);
    QByteArray header = TarBuilder::header(TarBuilder::File, "ABC/x", size.leftJustified(12, '\0'));
    TarBuilder::setChecksum(header);
    Tree tree;
    QVERIFY(!unpacks(BitFormat::Tar,
                     TarBuilder().file("ABC/a", "a").raw(header).raw(QByteArray(512, 'x')).bytes(), tree));
    QVERIFY(tree.isEmpty());
}

QTEST_APPLESS_MAIN(tst_Corruption)
#include "tst_corruption.moc"
