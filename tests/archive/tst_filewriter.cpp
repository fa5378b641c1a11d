// Writing files from two threads.

#include "archive/archive.h"
#include "archive/filewriter.h"
#include "tests/archive/archivebuilder.h"

#include <QTemporaryDir>
#include <QTest>

using namespace archive;

class tst_FileWriter : public QObject
{
    Q_OBJECT

private slots:
    void filesOfEverySizeArriveWhole_data();
    void filesOfEverySizeArriveWhole();
    void manyFilesArriveWhole();
    void aFileThatExistsIsAnError();
    void theFirstErrorIsThrownByWhatFollows();
    void unfinishedFilesDoNotHang();
};

namespace {

std::filesystem::path in(const QTemporaryDir &folder, const QString &name)
{
    return std::filesystem::u8path(folder.filePath(name).toStdString());
}

QByteArray pattern(int size)
{
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = char(i * 7 + i / 4096);
    return bytes;
}

} // namespace

void tst_FileWriter::filesOfEverySizeArriveWhole_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("piece");
    for (const int size : {0, 1, 100, 524287, 524288, 524289, 1048576, 20000000}) {
        for (const int piece : {32768, 524288, 3000001})
            QTest::newRow(qPrintable(QString("%1 by %2").arg(size).arg(piece))) << size << piece;
    }
}

void tst_FileWriter::filesOfEverySizeArriveWhole()
{
    QFETCH(int, size);
    QFETCH(int, piece);
    const QTemporaryDir folder;
    const QByteArray content = pattern(size);
    FileWriter writer;
    writer.beginFile(in(folder, "x"), std::nullopt);
    for (int at = 0; at < size; at += piece)
        writer.write(content.constData() + at, std::size_t(qMin(piece, size - at)));
    writer.endFile();
    writer.finish();
    QVERIFY(QFile::exists(folder.filePath("x")));
    QVERIFY(readFile(folder.filePath("x")) == content);
}

void tst_FileWriter::manyFilesArriveWhole()
{
    const QTemporaryDir folder;
    FileWriter writer;
    for (int i = 0; i < 500; ++i) {
        const QByteArray content = pattern(i * 131);
        writer.beginFile(in(folder, QString::number(i)), std::nullopt);
        writer.write(content.constData(), std::size_t(content.size()));
        writer.endFile();
    }
    writer.finish();
    for (int i = 0; i < 500; ++i)
        QVERIFY(readFile(folder.filePath(QString::number(i))) == pattern(i * 131));
}

void tst_FileWriter::aFileThatExistsIsAnError()
{
    const QTemporaryDir folder;
    QVERIFY(writeFile(folder.filePath("x"), "old"));
    FileWriter writer;
    const auto writeIt = [&] {
        writer.beginFile(in(folder, "x"), std::nullopt);
        writer.write("new", 3);
        writer.endFile();
        writer.finish();
    };
    QVERIFY_EXCEPTION_THROWN(writeIt(), BitException);
    QCOMPARE(readFile(folder.filePath("x")), QByteArray("old"));
}

void tst_FileWriter::theFirstErrorIsThrownByWhatFollows()
{
    const QTemporaryDir folder;
    FileWriter writer;
    const auto writeMany = [&] {
        writer.beginFile(in(folder, "missing/x"), std::nullopt);
        writer.write("1", 1);
        writer.endFile();
        for (int i = 0; i < 100000; ++i) {
            writer.beginFile(in(folder, QString::number(i)), std::nullopt);
            writer.write("2", 1);
            writer.endFile();
        }
    };
    QVERIFY_EXCEPTION_THROWN(writeMany(), BitException);
    QVERIFY_EXCEPTION_THROWN(writer.finish(), BitException);
    QVERIFY(QDir(folder.path()).entryList(QDir::Files).size() < 1000);
}

void tst_FileWriter::unfinishedFilesDoNotHang()
{
    const QTemporaryDir folder;
    const QByteArray content = pattern(2000000);
    {
        FileWriter writer;
        writer.beginFile(in(folder, "x"), std::nullopt);
        writer.write(content.constData(), std::size_t(content.size()));
    }
    QVERIFY(readFile(folder.filePath("x")).size() <= content.size());
}

QTEST_APPLESS_MAIN(tst_FileWriter)
#include "tst_filewriter.moc"
