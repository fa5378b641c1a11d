// Reading a job's files: plain, gzip, compress; line by line; numbers.
#include "cam/base/error.h"
#include "cam/base/numbers.h"
#include "cam/base/paths.h"
#include "cam/odb/packing.h"
#include "cam/odb/textfile.h"
#include "tests/cam/support/messages.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QtTest>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>

#include <zlib.h>

using namespace cam;

namespace {

QByteArray gzip(const QByteArray &text)
{
    constexpr int gzipFormat = 16 + MAX_WBITS;
    z_stream stream{};
    deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, gzipFormat, 8, Z_DEFAULT_STRATEGY);
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

std::string numberedLines()
{
    std::string text;
    for (long i = 0; i < 400; ++i)
        text += "L " + std::to_string(i * 7 % 101) + " " + std::to_string(i * 31 % 97) + " " +
                std::to_string(i * i % 89) + " " + std::to_string(i * i * i % 83) + " 0 P 0\n";
    return text;
}

// numberedLines() as the program "compress -b 10" packs it: the width of the codes grows once.
QByteArray compressedLines()
{
    return QByteArray::fromBase64(
        "H52KTEDAEEhw4EAoAhUEvAFiRgwQDx8eTBgwBg0QNmSAuIiDIEIYCkHIeJhjBogcIhlOBBlQRkcZDGPYwHhxZcgZNUDUeJmThkab"
        "AX2CwIFyxswaBkF8DEkDpQyTTSFKVEpR59GLNi5a9FjVhkkcOXE8tJETKIgbA2OgjPGwJlWWZxkibajRpFkcHB/WyGmjo9kcEcMO"
        "nIHyb0caM2N0LPuWadyNchkvrRjx4Y2XhRtXPKxRhkaZXOHKyHnDZA2GnkPf1ChXp13NDYsevjjjJ2zEGFGC3egXdg2TwJ26nYxx"
        "MMeLUc3aYEh2o0bcZm9czDGz81TiYhsO/I3xNfaONiLGtE08R84crJ8nJf5QxkwaA9GqDrg45sDR8yGG7XjDskrYqaVGA18zmSUD"
        "StyNNNR1VRk1FEeHSVYVDSYphtFh/xE3V1RzxbBeVacNZZxI3nWl1UUyDJQZcf1tFJZOGVZ12Vkz4cBQjHDt5uFZRTEIF3obWWYa"
        "eVXlgNINGtlwZIG+YYQRakyyVxdzNw5XlVoX5lZcfu6JdJZJpeU3A3BgFhXlhANlNRRDM/RGHA0MmTeUl2bVgKJTaeEYUnhbzoBV"
        "fn2dpNd2bsqYE36BxlBijhrVUONhi4ZE1JoiWeZjSNRV6qJIH4qmE2tjEfnjUBUOpmdFiTEEX0NWigYVf42u2GB8a7EpIVwzxGSa"
        "aZcGhRyK2uVXg2U9JdmrTh3phtWpGPU0GIKthoTkWQ/t5lJ+NyC40UUz3jWTgz1FG1BJT8KoX34epiWSRjh0uiddZ/EnK1yKdgcZ"
        "RIWKpqJW4M0bEkwiddTuWaLedFENCOY0Zn40kDTYc8fS8JJWEfkb0F46haXXmXBlNNRMat5w6554bqRbwQsd9ZCD7tL3VWc5HZtD"
        "WonVmF8OqsaZkpjxbkQTuml95hy6qr42l4HcaiWVmNX6vJVZbcZ2UrMMk0azz3U+J5LCwhalMMj57gnye0VZ/CVBao5M32DV6qU2"
        "pR6zJZLZOUwH3Gcch3RfZOtii6yIrqHL0Vod1cZle1CpGnZLi3E7sZhhHfqc2UJhGSJ0tyG4naZ11tgWVpEG5NW5OqJ81kC4EbZR"
        "y4/dwBBep+cHu9xC4fdXW509ZtjZ3NmQd1BnQfT6sXJHPe2A6Pa7+r0Gcr3jjlDXxS3iYqLUHPKUz5SpgiHWCdxAOPAHaJpjFX7s"
        "cic1up3p0on0Lbe/L2huiu7LLrDAZ4l7kuRws65XmWff9eDZLMMWQ8zKR23g5OWafiDg6MfArINbKemkWRRuGuZOwsY3U7YQhW7u"
        "jjZuFPrPDc/ZYnSWdXYf6zO+j5Hpu+Wqk6k3Jwle4fob6WX4OpmtsEkK4oRuksjlNCy6KMnZ4gysd3kgROSLaZINqKfJ7KqAEayT"
        "/nBuLXzAwh58FJiLY1QtatsC+hLu50aXUw3scsQ6DuwGx6PstQ4V8+InvTeblgbyqBPBN0NkGpuhQ/QeihBzCSZpHWEJtYr3Oiqm"
        "qmnx9zYN0wOOg+nD6pRxQb4V/q3QyvEVU9PRCZ0dwNEVlSRW+uMAMlQoCfWXSXU3dJT/MNzH09LK6bRWYvrXO/PUzRl4H3JYA8j3"
        "ymJyxGSgZjXMKURSmyWxTm3pJGxYGiUMKN4QVWe2kvfiB1p0M83oYGp3VTh54H+hbpKahv9VpfwS89yR3DLov6PqhicHWww3btdT"
        "/DIgB7iCUK8cM3ihNwTee+NVTdCMq2bdUHussY4wRo2i9rbvJ5mmO2xhAkwDVvEPvNNQGsv+etmb/oXiV8gxux1yn7H++qEkCg4R"
        "giaZzX2e5hoosGWsQX7uqg4x/Fxi6zN85I2Wxe/o0sh3qRxU1uWPbXxfgce668EHGuZdtC02WPyAaelnQ4ufVDindN7G6pwxMCt3"
        "czY6aZaFmWb7d/PBhllv9BiNhRKF1adfbotm4dYl+vR7b66SGJluA/j8Accs+qllyyq2B38ll9nZwV742+Hjy6lOMvdUFG3+Az4X"
        "n3dBhBV4zMbQ03466Z/aDdW1t/jcEKFO2uINvWfptgyD+Vlab8/1Hvish5grwTwCilVHMcS0OLVe9m72jAunJztfyNUVevr7Pxjk"
        "zU6VDZHZfIGfk6PoagTYtme9jSV+YZnepaPmsr6wjX1HfJ9l+JsF56f3AlwnRxWCpz+fMbyOuumBSpyxTqyLzCO8ct/1WYUR6T8p"
        "DXlR/ddMIv+sv0YoRRX61Ks6GKhZoLWIn+oGmgbRUWIOpn3GYlLp84EMKx1R/MPCe5/pO9n7P6DnIQdvdJ0lyxu2CK5Vnf44aH9f"
        "T3SbJANt78WfbsYmcw5bjSCDjq5J9GcXg+n0D7v0qga+XhdrrPsJ0VGHvt3wvQO7zjB/HVnou7AxPzc8oM+BGSGgR6L4HLM32Bwi"
        "9LDhEJxOJN4cH+rT3azqUDl1DxtwCh8JNEY10kb8f0LVYLoMtLVHI9MYNWpSl1AnW2GVVe88rQ2s19DoYfGFrpNuaw0Wv+8kUtvQ"
        "4rwjd6js4B8qnuwx6QbezQenudjiBGXXYejBx6AwcqFDhFx18R2roOtz0m9gR3LbiJHpOA2dbUPMChVmmH4yfKSWCAv7LXi2AmqS"
        "kuUOi+1gWs7Auuusns3nXViRZj2zgJ1Uo1z651A4+AEzjFF78S2+NJB+bpt8/R2+jV+IgQ4c/VD381h93wpaaBZu3CGvpLBfTU/w"
        "+PhCNFjo5Ua1asPYchTfZ2Znt1UMcsUf/qbciXwzadUNZXpEqNt2V5APQoQuaXXpxmWSQx3K7IENqYqV/g4GWizDJjUqF+tzLZya"
        "3HUy5zhE+qspJ5xUR9ce4VjDNqMN4A8m+3luZ/kXzPCq/heCieklLKXZYWxWDNb9fCC6CE4OUfxd4gBcdaYvHANqOXFn1qoSQ/St"
        "6XDyOLXEwmoFlUj680mD0snBFqjIBGHO4nkQcQ4bDur5PPpdR5IEkemZxvwe63VVZ/XN5TpoO2ygtXUks0/Bq6bvYqb5Vdtixknx"
        "pmbRgGLhzzE7rE4JQ8T6TieBf1/oVMvA79TRNdqTXMxm+3HPzOJQ3X11ycyruTWYnu5QjdIIKETvoRh/vXAORZr+9M+oug2sAxwD"
        "u9yGzupGUNUVf8P5exm1WRLPmaCwCtcqPKCsxZckoCghRyi238acVuikYjRTixTenBTyLf7FZnvtsW6Sx+FjZPqO5AaaK9E7z+Un"
        "lwcXfrDZDg1VMk5ivvSVThHnZCelM7BeA7ukWX8swhAdaRL6yh2VJrSqAQ==");
}

std::filesystem::path folderPath(const TemporaryWorkingFolder &folder)
{
    return std::filesystem::u8path(folder.path().toStdString());
}

} // namespace

class tst_TextFile : public QObject
{
    Q_OBJECT

private slots:
    void plainFileIsReadAsItIs()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write("features", "a\nb"));
        const TextFile file(folderPath(folder), "features");
        QCOMPARE(std::string(file.text()), std::string("a\nb"));
        QVERIFY(QString::fromStdString(file.name()).endsWith("features"));
    }

    void nameIsFoundWithoutRegardToCase()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write("Features", "x"));
        QCOMPARE(std::string(TextFile(folderPath(folder), "FEATURES").text()), std::string("x"));
    }

    void gzipFileIsUnpacked()
    {
        TemporaryWorkingFolder folder;
        const QByteArray text =
            QByteArray("L 0 0 1 1 0 P 0\n").repeated(50'000); // more than one output block
        QVERIFY(folder.write("features.gz", gzip(text)));
        QVERIFY(TextFile(folderPath(folder), "features").text() == text.toStdString());
    }

    void compressFileIsUnpacked()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write("features.Z", compressedLines()));
        QVERIFY(TextFile(folderPath(folder), "features").text() == numberedLines());
    }

    // Codes come in groups of eight: behind a clear code the rest of its group is padding.
    void compressTableMayBeCleared()
    {
        const QByteArray packed = QByteArray::fromHex("1f9d9061c48c01080000000064ca043403");
        QCOMPARE(unpackCompress(packed.toStdString(), "f.Z"), std::string("abcdedef"));
    }

    // Some programs keep the name when they pack the file.
    void packingIsToldByTheBytesNotByTheName()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write("features", gzip("packed")));
        QCOMPARE(std::string(TextFile(folderPath(folder), "features").text()), std::string("packed"));
    }

    void plainFileWinsOverPackedOne()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write("features", "plain"));
        QVERIFY(folder.write("features.gz", gzip("packed")));
        QCOMPARE(std::string(TextFile(folderPath(folder), "features").text()), std::string("plain"));
    }

    void missingFileIsNamed()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(!TextFile::exists(folderPath(folder), "stephdr"));
        const QString message = messageOf([&] { TextFile(folderPath(folder), "stephdr"); });
        QVERIFY(message.contains("stephdr") && message.contains("no such file"));
    }

    void damagedGzipIsAnError()
    {
        QByteArray packed = gzip(QByteArray("some text that takes some room ").repeated(10));
        packed.truncate(packed.size() - 12);
        QVERIFY(messageOf([&] {
                    unpackGzip(packed.toStdString(), "f.gz");
                }).startsWith("f.gz: expected a whole gzip"));
        packed[14] = char(packed[14] ^ 0x55);
        QVERIFY(!messageOf([&] { unpackGzip(packed.toStdString(), "f.gz"); }).isEmpty());
    }

    // Nothing of a file is left out in silence.
    void gzipFileOfSeveralStreamsIsReadWhole()
    {
        const QByteArray streams = gzip("one\n") + gzip("") + gzip("two\n");
        QCOMPARE(unpackGzip(streams.toStdString(), "f.gz"), std::string("one\ntwo\n"));
        const QByteArray filledUp = streams + QByteArray(512, '\0');
        QCOMPARE(unpackGzip(filledUp.toStdString(), "f.gz"), std::string("one\ntwo\n"));
        const QString message = messageOf([&] { unpackGzip((streams + "rest").toStdString(), "f.gz"); });
        QCOMPARE(message, QString("f.gz: expected nothing behind the gzip stream"));
    }

    void damagedCompressIsAnError_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("only the magic") << QByteArray::fromHex("1f9d");
        QTest::newRow("17 bits") << QByteArray::fromHex("1f9d91aabb");
        QTest::newRow("8 bits") << QByteArray::fromHex("1f9d88aabb");
        QTest::newRow("starts with a string") << QByteArray::fromHex("1f9d90ffff");
        QTest::newRow("code of the future") << QByteArray::fromHex("1f9d9061fe03ffff");
    }
    void damagedCompressIsAnError()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(messageOf([&] { unpackCompress(bytes.toStdString(), "f.Z"); }).startsWith("f.Z: expected"));
    }

    void linesAreNumberedAndEndsRemoved()
    {
        LineReader lines("one\r\n\ntwo\nlast");
        TextLine line;
        QVERIFY(lines.next(line) && line.text == "one" && line.number == 1);
        QVERIFY(lines.next(line) && line.text.empty() && line.number == 2);
        QVERIFY(lines.next(line) && line.text == "two" && line.number == 3);
        QVERIFY(lines.next(line) && line.text == "last" && line.number == 4);
        QVERIFY(!lines.next(line));
    }

    void linesOfAFileReadInPiecesAreTheWholes_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("none") << QByteArray();
        QTest::newRow("one") << QByteArray("x");
        QTest::newRow("many") << QByteArray::fromStdString(numberedLines());
        const QByteArray piece(128 * 1024 - 1, 'a'); // of the length that is read at once, with its line end
        QTest::newRow("ends with a piece") << piece + '\n';
        QTest::newRow("goes on behind a piece") << piece + "\nb";
        QTest::newRow("line longer than a piece") << "1\n" + piece + piece + piece + "\r\n" + piece + "\n\n2";
        QTest::newRow("carriage return at the end of a piece") << piece + "\r\nb\n";
    }
    void linesOfAFileReadInPiecesAreTheWholes()
    {
        QFETCH(QByteArray, bytes);
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write("features", bytes));
        LineFile file(folderPath(folder), "features");
        const std::string text = bytes.toStdString();
        LineReader wanted(text);
        TextLine line, wantedLine;
        while (wanted.next(wantedLine)) {
            QVERIFY(file.lines().next(line));
            QVERIFY(line.text == wantedLine.text && line.number == wantedLine.number);
            QCOMPARE(file.lines().share(), wanted.share());
        }
        QVERIFY(!file.lines().next(line));
        QCOMPARE(file.lines().share(), 1.0);
    }

    void linesOfAPackedFileAreItsTexts()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write("features.gz", gzip("one\ntwo\n")));
        LineFile file(folderPath(folder), "features");
        TextLine line;
        QVERIFY(file.lines().next(line) && line.text == "one");
        QVERIFY(file.lines().next(line) && line.text == "two");
        QVERIFY(!file.lines().next(line));
    }

    void numbersAreTheNearestDoubles_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text :
             {"0", "-0.5", "+12", ".25", "7.", "0.000787402", "-6.175024606299", "123456789012345",
              "1234567890.123456789", "0.1000000000000000055511151231257827", "1e-3", "-2.5E2"})
            QTest::newRow(text) << QString(text);
    }
    void numbersAreTheNearestDoubles()
    {
        QFETCH(QString, text);
        const auto value = toNumber(text.toStdString());
        QVERIFY(value.has_value());
        QCOMPARE(*value, text.toDouble());
    }

    // Bit by bit those of the C library.
    void randomNumbersAreTheNearestDoubles()
    {
        std::mt19937 random(1);
        const auto upTo = [&random](unsigned most) { return random() % (most + 1); };
        for (int round = 0; round < 200000; ++round) {
            std::string text = upTo(2) == 0 ? "-" : "";
            const auto addDigits = [&](unsigned count) {
                for (unsigned i = 0; i < count; ++i)
                    text += static_cast<char>('0' + upTo(9));
            };
            addDigits(1 + upTo(round % 3 == 0 ? 18 : 5));
            if (upTo(4) != 0) {
                text += '.';
                addDigits(upTo(round % 5 == 0 ? 20 : 9));
            }
            if (upTo(9) == 0)
                text += "e" + std::to_string(static_cast<int>(upTo(40)) - 20);
            const double expected = std::strtod(text.c_str(), nullptr);
            const std::string more = text + " 7";
            const char *at = more.data();
            double value = 0.0;
            QVERIFY2(readNumber(at, more.data() + more.size(), value), text.c_str());
            QVERIFY2(std::memcmp(&value, &expected, sizeof value) == 0, text.c_str());
            QCOMPARE(at, more.data() + text.size());
        }
    }

    void whatIsNoNumberIsRefused_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text : {"", "-", ".", "x", "1x", "--1", "+-1", "0x10", "nan", "inf", "1e999", "1 2"})
            QTest::newRow(text) << QString(text);
    }
    void whatIsNoNumberIsRefused()
    {
        QFETCH(QString, text);
        QVERIFY(!toNumber(text.toStdString()));
        QVERIFY(!toInteger(text.toStdString()));
    }

    // Whoever lower-cases a name with Qt finds it again.
    void caseIsFoldedAsQtFoldsIt()
    {
        for (uint letter = 0x21; letter < 0x20000; ++letter) {
            if (QChar::isSurrogate(letter))
                continue;
            const QString name = QString::fromUcs4(&letter, 1);
            const std::string lower = lowerCase(name.toStdString());
            QVERIFY2(lower == name.toLower().toStdString(), qPrintable(QString::number(letter, 16)));
            QVERIFY2(lowerCase(lower) == lower, qPrintable(QString::number(letter, 16)));
        }
    }

    // Names in an older encoding: their bytes stay apart.
    void bytesThatAreNoUtf8KeepTheirValues()
    {
        QCOMPARE(lowerCase("\xc3"), std::string("\xc3"));
        QCOMPARE(lowerCase("TOP\xb2\xe3"), std::string("top\xb2\xe3"));
        QVERIFY(lowerCase("\xb0\xe5") != lowerCase("\xb2\xe3"));
    }

    // As the export hands it over: lower-cased as a whole, "/" and a backslash.
    void outputPathFindsItsFolders()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write("Out/Jobs/keep", ""));
        const QString path = folder.path() + "/out//jobs\\top.gds";
        const std::filesystem::path found = resolveIgnoringCase(path.toStdString());
        QCOMPARE(found.filename().u8string(), std::string("top.gds"));
        // One folder, however the file system spells it.
        const QString wanted = folder.path() + "/Out/Jobs";
        QVERIFY2(
            std::filesystem::equivalent(found.parent_path(), std::filesystem::u8path(wanted.toStdString())),
            found.u8string().c_str());
    }

    void entriesOfEveryAlphabetAreFound_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name :
             {"Job-\u00c4\u00d8\u0160\u0394\u0416\u0401\u0178", "\u0490", "\u0218", "\u0386",
              "\uff2f\uff35\uff34", "\u0130", "\u1e9e", "\u0531\u0532", "B\u1ea2NG M\u1ea0CH", "\U00010400"})
            QTest::newRow(name) << QString::fromUtf8(name);
    }
    void entriesOfEveryAlphabetAreFound()
    {
        QFETCH(QString, name);
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write(name + "/" + name, ""));
        const QString path = folder.path() + "/" + name.toLower() + "/" + name.toLower();
        std::error_code failure;
        const QString wanted = folder.filePath(name + "/" + name);
        QVERIFY(std::filesystem::equivalent(resolveIgnoringCase(path.toStdString()),
                                            std::filesystem::u8path(wanted.toStdString()), failure));
    }

    void exactNameWinsOverAnotherCase()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write("b/file", ""));
        const auto found = findEntry(folderPath(folder), "b");
        QVERIFY(found && found->filename() == "b");
        QVERIFY(!findEntry(folderPath(folder), "c"));
        QVERIFY(!findEntry(folderPath(folder), ".."));
        QVERIFY(!findEntry(folderPath(folder) / "b", "../b"));
    }
};

QTEST_APPLESS_MAIN(tst_TextFile)
#include "tst_textfile.moc"
