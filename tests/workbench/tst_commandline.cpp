// The workbench's command line.
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/commandline.h"

#include <QtTest>

class tst_CommandLine : public QObject
{
    Q_OBJECT

private:
    static CommandLine parse(const QStringList &arguments)
    {
        return CommandLine::parse(QStringList{"workbench"} + arguments);
    }

private slots:
    void nothingMeansTheWindow()
    {
        const CommandLine line = parse({});
        QCOMPARE(line.error, QString());
        QVERIFY(!line.batch);
        QVERIFY(!line.overwrite);
    }

    void bothFormatsAreExportedWhenNoneIsGiven()
    {
        QCOMPARE(parse({"--batch", "a.tgz"}).formats, (QStringList{".gds", ".gerber"}));
        QCOMPARE(parse({"--batch", "--format", ".gerber", "a.tgz"}).formats, QStringList{".gerber"});
    }

    void pathsBecomeAbsolute()
    {
        TemporaryWorkingFolder folder;
        const CommandLine line =
            parse({"--batch", "--out", "o/../p", "--jobs", "j", "--screenshots", "s", "x/a.tgz", "b.tgz"});
        QCOMPARE(line.outputFolder, folder.filePath("p"));
        QCOMPARE(line.jobFolder, folder.filePath("j"));
        QCOMPARE(line.screenshotFolder, folder.filePath("s"));
        QCOMPARE(line.archives, (QStringList{folder.filePath("x/a.tgz"), folder.filePath("b.tgz")}));
    }

    void senselessLinesSayWhy_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("error");
        QTest::newRow("format") << QStringList{"--batch", "--format", ".dxf", "a.tgz"}
                                << "--format .dxf: expected .gds or .gerber";
        QTest::newRow("no archive") << QStringList{"--batch"} << "--batch: expected at least one archive";
        QTest::newRow("option") << QStringList{"--nonsense"} << "Unknown option 'nonsense'.";
        QTest::newRow("value") << QStringList{"--batch", "--out"} << "Missing value after '--out'.";
    }
    void senselessLinesSayWhy()
    {
        QFETCH(QStringList, arguments);
        QTEST(parse(arguments).error, "error");
    }

    void helpNamesEveryOption()
    {
        const QString help = parse({"--help"}).help;
        for (const char *option : {"--batch", "--format", "--out", "--jobs", "--step", "--overwrite",
                                   "--screenshots", "--verbose", "--open"})
            QVERIFY2(help.contains(option), option);
    }
};

QTEST_GUILESS_MAIN(tst_CommandLine)
#include "tst_commandline.moc"
