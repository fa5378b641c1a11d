// Files that are packed as zip archives: what is read, and every lie that such an archive can tell.
#include "cam/odb/textfile.h"
#include "cam/odb/zip.h"
#include "tests/cam/support/messages.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QtTest>

#include <filesystem>

#include <zlib.h>

using namespace cam;

namespace {

const QByteArray records = "UNITS=MM\n$0 r100\nP 1 2 0 P 0 0\n";

// An archive of one member, whose every number a test may falsify before bytes() writes it.
struct Zip
{
    QByteArray name = "features", localName = name;
    quint16 flags = 0, localFlags = 0, method = 8, localMethod = 8;
    quint32 check = 0, packedSize = 0, size = 0;
    quint32 localCheck = 0, localPackedSize = 0, localSize = 0;
    quint16 disk = 0, count = 1, countInAll = 1;
    quint32 offset = 0, directorySize = 0, directoryShift = 0;
    QByteArray extra, localExtra, comment, entryComment, packed, descriptor, beforeDirectory, beforeEnd,
        behind;

    explicit Zip(const QByteArray &text = records) : packed(deflated(text))
    {
        check = localCheck =
            quint32(crc32(0, reinterpret_cast<const Bytef *>(text.constData()), uInt(text.size())));
        size = localSize = quint32(text.size());
        packedSize = localPackedSize = quint32(packed.size());
    }
    static Zip stored(const QByteArray &text = records)
    {
        Zip zip(text);
        zip.packed = text;
        zip.method = zip.localMethod = 0;
        zip.packedSize = zip.localPackedSize = quint32(text.size());
        return zip;
    }
    // As a program writes it that cannot go back to the header: the sizes stand behind the member.
    static Zip streamed(bool isMarked)
    {
        Zip zip;
        zip.flags = zip.localFlags = 8;
        zip.localCheck = zip.localPackedSize = zip.localSize = 0;
        zip.descriptor = (isMarked ? number(0x08074B50, 4) : QByteArray()) + number(zip.check, 4) +
                         number(zip.packedSize, 4) + number(zip.size, 4);
        return zip;
    }

    QByteArray bytes() const
    {
        const QByteArray dateAndVersion = QByteArray::fromHex("c7695d58");
        const QByteArray file = number(0x04034B50, 4) + number(20, 2) + number(localFlags, 2) +
                                number(localMethod, 2) + dateAndVersion + number(localCheck, 4) +
                                number(localPackedSize, 4) + number(localSize, 4) +
                                number(quint32(localName.size()), 2) + number(quint32(localExtra.size()), 2) +
                                localName + localExtra + packed + descriptor + beforeDirectory;
        const QByteArray entry = number(0x02014B50, 4) + number(20, 2) + number(20, 2) + number(flags, 2) +
                                 number(method, 2) + dateAndVersion + number(check, 4) +
                                 number(packedSize, 4) + number(size, 4) + number(quint32(name.size()), 2) +
                                 number(quint32(extra.size()), 2) + number(quint32(entryComment.size()), 2) +
                                 number(disk, 2) + number(0, 2) + number(0, 4) + number(offset, 4) + name +
                                 extra + entryComment + beforeEnd;
        return file + entry + number(0x06054B50, 4) + number(disk, 2) + number(disk, 2) + number(count, 2) +
               number(countInAll, 2) + number(quint32(entry.size()) + directorySize, 4) +
               number(quint32(file.size()) + directoryShift, 4) + number(quint32(comment.size()), 2) +
               comment + behind;
    }
    static QByteArray number(quint32 value, int size)
    {
        QByteArray bytes;
        for (int i = 0; i < size; ++i)
            bytes.append(char(value >> (8 * i)));
        return bytes;
    }
    static QByteArray deflated(const QByteArray &text)
    {
        z_stream stream{};
        deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
        QByteArray packed(int(deflateBound(&stream, uLong(text.size()))) + 32, '\0');
        stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(text.constData()));
        stream.avail_in = uInt(text.size());
        stream.next_out = reinterpret_cast<Bytef *>(packed.data());
        stream.avail_out = uInt(packed.size());
        deflate(&stream, Z_FINISH);
        packed.resize(int(stream.total_out));
        deflateEnd(&stream);
        return packed;
    }
};

template <typename Change>
QByteArray changed(const Change &change, Zip zip = Zip())
{
    change(zip);
    return zip.bytes();
}

QByteArray text(const QByteArray &zip)
{
    return QByteArray::fromStdString(unpackZip(zip.toStdString(), "features", "f.Z"));
}

std::filesystem::path folderPath(const TemporaryWorkingFolder &folder)
{
    return std::filesystem::u8path(folder.path().toStdString());
}

} // namespace

class tst_Zip : public QObject
{
    Q_OBJECT

private slots:
    void archivesOfOneFileAreRead_data()
    {
        QTest::addColumn<QByteArray>("zip");
        QTest::newRow("deflated") << Zip().bytes();
        QTest::newRow("stored") << Zip::stored().bytes();
        QTest::newRow("streamed") << Zip::streamed(true).bytes();
        QTest::newRow("streamed, without a mark") << Zip::streamed(false).bytes();
        QTest::newRow("name in upper case") << changed([](Zip &z) { z.name = z.localName = "FEATURES"; });
        QTest::newRow("name in UTF-8") << changed([](Zip &z) { z.flags = z.localFlags = 0x0800; });
        QTest::newRow("comments and extra fields") << changed([](Zip &z) {
            z.comment = "packed by hand";
            z.entryComment = "one file";
            z.localExtra = QByteArray::fromHex("5554050003aabbccdd");
            z.extra = QByteArray::fromHex("5554050003aabbccdd");
        });
        // What Python's zipfile wrote, to a file and to a stream.
        QTest::newRow("another program") << QByteArray::fromHex(
            "504b0304140000000800c7695d58ce9d483b1f0000001f0000000800000066656174757265730b"
            "f5f30c09b6f5f5e552315028323430e00a50305430523050080062032e00504b01021403140000"
            "000800c7695d58ce9d483b1f0000001f0000000800000000000000000000008001000000006665"
            "617475726573504b0506000000000100010036000000450000000000");
        QTest::newRow("another program, streamed") << QByteArray::fromHex(
            "504b0304140008000800c7695d580000000000000000000000000800000066656174757265730b"
            "f5f30c09b6f5f5e552315028323430e00a50305430523050080062032e00504b0708ce9d483b1f"
            "0000001f000000504b01021403140008000800c7695d58ce9d483b1f0000001f00000008000000"
            "00000000000000008001000000006665617475726573504b050600000000010001003600000055"
            "00000010007061636b656420627920612074657374");
    }
    void archivesOfOneFileAreRead()
    {
        QFETCH(QByteArray, zip);
        QCOMPARE(text(zip), records);
    }

    void emptyAndLargeFilesAreRead()
    {
        QCOMPARE(text(Zip(QByteArray()).bytes()), QByteArray());
        const QByteArray large = QByteArray("L 0 0 1 1 0 P 0\n").repeated(100'000); // many output blocks
        QVERIFY(text(Zip(large).bytes()) == large);
    }

    void lyingArchiveIsAnError_data()
    {
        QTest::addColumn<QByteArray>("zip");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const QByteArray &zip, const char *expected) {
            QTest::newRow(name) << zip << QString(expected);
        };
        row("two files", changed([](Zip &z) { z.count = z.countInAll = 2; }), "of one file, found 2");
        row("no file", changed([](Zip &z) { z.count = z.countInAll = 0; }), "of one file, found 0");
        row("another number of files here", changed([](Zip &z) { z.countInAll = 3; }),
            "of one file, found 3");
        row("a second file behind the first", changed([](Zip &z) { z.beforeDirectory = z.packed; }),
            "with its directory behind its file");
        row("a second entry", changed([](Zip &z) { z.beforeEnd = QByteArray(46, 'x'); }),
            "whose directory has the length that it states");
        for (const char *name : {"../features", "layers/features", "features/", "C:\\features", "..", "",
                                 "components", "features.txt"})
            row(name, changed([name](Zip &z) { z.name = z.localName = name; }), "of the file \"features\"");
        row("a name with control characters",
            changed([](Zip &z) { z.name = z.localName = QByteArray("a\nb"); }), "found \"a?b\"");
        row("two names", changed([](Zip &z) { z.localName = "profile1"; }),
            "whose file has one name, found \"features\" and \"profile1\"");
        row("encrypted", changed([](Zip &z) { z.flags = z.localFlags = 1; }), "not encrypted");
        row("strongly encrypted", changed([](Zip &z) { z.flags = z.localFlags = 0x40; }), "not encrypted");
        row("patched data", changed([](Zip &z) { z.flags = z.localFlags = 0x20; }), "without the flags 32");
        row("unknown method", changed([](Zip &z) { z.method = z.localMethod = 14; }), "found the method 14");
        row("two methods", changed([](Zip &z) { z.localMethod = 0; }), "says the same as its file's header");
        row("zip64 sizes", changed([](Zip &z) { z.localSize = z.localPackedSize = 0xFFFFFFFF; }), "zip64");
        row("zip64 directory", changed([](Zip &z) { z.directoryShift = quint32(-70); }), "zip64");
        row("zip64 locator",
            changed([](Zip &z) { z.beforeEnd = Zip::number(0x07064B50, 4) + QByteArray(16, '\0'); }),
            "zip64");
        row("in parts", changed([](Zip &z) { z.disk = 1; }), "in one part");
        row("another start", changed([](Zip &z) { z.offset = 4; }), "that begins with its file");
        row("another check", changed([](Zip &z) { z.check = z.localCheck = 7; }), "the check that it states");
        row("two checks", changed([](Zip &z) { z.localCheck ^= 1; }), "says the same as its file's header");
        row("more than it states", changed([](Zip &z) { z.size = z.localSize = 30; }), "it has more");
        row("less than it states", changed([](Zip &z) { z.size = z.localSize = 32; }),
            "the 32 bytes that it states, found 31");
        row("stored with another size", changed([](Zip &z) { z.size = z.localSize = 32; }, Zip::stored()),
            "the 32 bytes that it states, found 31");
        row("packed into less", changed([](Zip &z) { z.packedSize = --z.localPackedSize; }),
            "with its directory behind its file");
        row("packed into more", changed([](Zip &z) { z.packedSize = ++z.localPackedSize; }),
            "with its directory behind its file");
        row("bytes behind the stream", changed([](Zip &z) {
                z.packed += "xx";
                z.packedSize = z.localPackedSize += 2;
            }),
            "with a whole deflate stream");
        row("stream cut off", changed([](Zip &z) {
                z.packed.chop(2);
                z.packedSize = z.localPackedSize -= 2;
            }),
            "with a whole deflate stream");
        row("damaged stream", changed([](Zip &z) { z.packed[0] = char(0x07); }),
            "with a whole deflate stream");
        row("another size behind the file",
            changed([](Zip &z) { z.descriptor[14] = 1; }, Zip::streamed(true)),
            "what stands behind its file");
        row("no sizes at all", changed([](Zip &z) { z.descriptor.clear(); }, Zip::streamed(true)),
            "what stands behind its file");
        row("directory elsewhere", changed([](Zip &z) { z.directoryShift = 1; }),
            "in front of its end record");
        row("directory of another length", changed([](Zip &z) { z.directorySize = 1; }),
            "in front of its end record");
        row("bytes behind the archive", changed([](Zip &z) { z.behind = "more"; }),
            "cut off or followed by other bytes");
        row("only the mark", "PK\3\4", "cut off or followed by other bytes");
    }
    void lyingArchiveIsAnError()
    {
        QFETCH(QByteArray, zip);
        QFETCH(QString, expected);
        const QString message = messageOf([&] { text(zip); });
        QVERIFY2(message.startsWith("f.Z: expected a zip archive ") && message.contains(expected),
                 qPrintable(message));
    }

    void archiveCutOffAnywhereIsAnError()
    {
        const QByteArray whole = Zip().bytes();
        for (int size = 4; size < whole.size(); ++size)
            QVERIFY2(!messageOf([&] { text(whole.left(size)); }).isEmpty(),
                     qPrintable(QString::number(size)));
    }

    // A text with one bit more or less never comes out as if nothing had happened.
    void archiveWithAChangedBitIsAnErrorOrTheSame()
    {
        for (const QByteArray &whole : {Zip().bytes(), Zip::stored().bytes(), Zip::streamed(true).bytes()}) {
            for (int bit = 32; bit < whole.size() * 8; ++bit) {
                QByteArray zip = whole;
                zip[bit / 8] = char(zip[bit / 8] ^ (1 << (bit % 8)));
                QByteArray read;
                const QString message = messageOf([&] { read = text(zip); });
                QVERIFY2(!message.isEmpty() || read == records, qPrintable(QString::number(bit)));
            }
        }
    }

    void zipIsToldByItsBytesNotByItsName_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"features", "features.Z", "features.z", "features.gz", "features.zip"})
            QTest::newRow(name) << QString(name);
    }
    void zipIsToldByItsBytesNotByItsName()
    {
        QFETCH(QString, name);
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write(name, Zip().bytes()));
        QCOMPARE(QByteArray::fromStdString(std::string(TextFile(folderPath(folder), "features").text())),
                 records);
        LineFile file(folderPath(folder), "features");
        TextLine line;
        QVERIFY(file.lines().next(line) && line.text == "UNITS=MM");
        QVERIFY(messageOf([&] { TextFile(folderPath(folder), "profile"); }).contains("no such file"));
    }
};

QTEST_APPLESS_MAIN(tst_Zip)
#include "tst_zip.moc"
