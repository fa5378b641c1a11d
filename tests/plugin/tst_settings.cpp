// The host's settings file: what is read, in which units, and which folders are made.

#include "tests/support/fileprocessaccess.h"
#include "tests/support/logcapture.h"
#include "tests/support/recordinghost.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QAction>
#include <QFileInfo>
#include <QtTest>

#include <memory>

class tst_Settings : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyKeyIsRead();
    void textsAreUtf8();
    void withoutAFileEverythingIsEmpty();
    void resizeIsConvertedByItsUnit_data();
    void resizeIsConvertedByItsUnit();
    void flagsAreTrueForYesOnly_data();
    void flagsAreTrueForYesOnly();
    void numbersThatDoNotParseAreZero();
    void jobAndOutputFoldersAreMade();
    void secondOutputFolderIsNotMade();
    void aFileInPlaceOfTheJobFolderIsLogged();
    void anExistingFolderIsNotLogged();
    void theLogLineNamesThePath();
    void everyReadReplacesTheValues();
    void theFileIsNeverWritten();
    void garbageGivesDefaults();
    void beforeTheFirstReadTheRecordIsEmpty();

private:
    // Reads the settings as the host makes the plug-in do it.
    ExportConfig read()
    {
        delete m_plugin.InitImportTool(nullptr);
        return FileProcessAccess::config(m_plugin);
    }

    ExportConfig read(const QByteArray &ini)
    {
        if (!m_folder->write("oxconfig.ini", ini))
            qFatal("the settings file cannot be written");
        return read();
    }

    FileProcess m_plugin;
    std::unique_ptr<TemporaryWorkingFolder> m_folder;
};

void tst_Settings::init()
{
    m_folder.reset(new TemporaryWorkingFolder);
    recording_host::reset();
}

void tst_Settings::cleanup()
{
    m_folder.reset();
}

void tst_Settings::everyKeyIsRead()
{
    const ExportConfig config = read("[Job_Path]\npath=jobs\n"
                                     "[Output_Path]\npath=out\n"
                                     "[Output_Path_Second]\npath=second\n"
                                     "[Output_Path_Format]\nformat=.gerber\n"
                                     "[Resize]\nunit=um\nvalue=2\n"
                                     "[Dbu]\nDbu=0.005\n"
                                     "[Profile_Dot]\nProfile_Dot=yes\n"
                                     "[Mirror]\nMirror=YES\n");
    QCOMPARE(config.jobPath, QString("jobs"));
    QCOMPARE(config.outputPath, QString("out"));
    QCOMPARE(config.outputPathSecond, QString("second"));
    QCOMPARE(config.outputFormat, QString(".gerber"));
    QCOMPARE(config.resizeUnit, QString("um"));
    QCOMPARE(config.resizeValue, 2000.0);
    QCOMPARE(config.dbu, 0.005);
    QCOMPARE(config.profileDot, true);
    QCOMPARE(config.mirror, true);
}

void tst_Settings::textsAreUtf8()
{
    const QByteArray board = "\xe6\x9d\xbf"; // an ideograph
    const ExportConfig config = read("[Job_Path]\npath=" + board + "\n[Output_Path_Second]\npath=\xc3\xa4\n");
    QCOMPARE(config.jobPath, QString(QChar(0x677F)));
    QCOMPARE(config.outputPathSecond, QString(QChar(0xE4)));
    QVERIFY(QFileInfo(QString(QChar(0x677F))).isDir());
}

void tst_Settings::withoutAFileEverythingIsEmpty()
{
    std::vector<PluginMetaData> sent;
    QString payload = "not sent";
    const auto connection =
        connect(&m_plugin, &FileProcess::sendMsgToManager, [&sent, &payload](PluginMetaData data) {
            sent.push_back(data);
            payload = *static_cast<QString *>(data.payload);
        });
    const ExportConfig config = read();
    disconnect(connection);

    QVERIFY(config.jobPath.isEmpty() && config.outputPath.isEmpty() && config.outputPathSecond.isEmpty() &&
            config.outputFormat.isEmpty() && config.resizeUnit.isEmpty());
    QCOMPARE(config.resizeValue, 0.0);
    QCOMPARE(config.dbu, 0.0);
    QVERIFY(!config.profileDot && !config.mirror);
    QVERIFY(QDir(".").isEmpty());
    QCOMPARE(sent.size(), size_t(1));
    QCOMPARE(sent[0].msgType, 10000404);
    QCOMPARE(payload, QString());
}

void tst_Settings::resizeIsConvertedByItsUnit_data()
{
    QTest::addColumn<QByteArray>("unit");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<double>("resize");
    QTest::newRow("mm") << QByteArray("mm") << QByteArray("0.5") << 500000.0;
    QTest::newRow("um") << QByteArray("um") << QByteArray("2") << 2000.0;
    QTest::newRow("inch") << QByteArray("inch") << QByteArray("2") << 2.0;
    QTest::newRow("UM in capitals") << QByteArray("UM") << QByteArray("2") << 2.0;
    QTest::newRow("MM in capitals") << QByteArray("MM") << QByteArray("2") << 2.0;
    QTest::newRow("no unit") << QByteArray("") << QByteArray("-3.5") << -3.5;
}

void tst_Settings::resizeIsConvertedByItsUnit()
{
    QFETCH(QByteArray, unit);
    QFETCH(QByteArray, value);
    const ExportConfig config = read("[Resize]\nunit=" + unit + "\nvalue=" + value + "\n");
    QTEST(config.resizeValue, "resize");
    QCOMPARE(config.resizeUnit, QString(unit));
}

void tst_Settings::flagsAreTrueForYesOnly_data()
{
    QTest::addColumn<QByteArray>("word");
    QTest::addColumn<bool>("flag");
    QTest::newRow("yes") << QByteArray("yes") << true;
    QTest::newRow("Yes") << QByteArray("Yes") << true;
    QTest::newRow("YES") << QByteArray("YES") << true;
    QTest::newRow("1") << QByteArray("1") << false;
    QTest::newRow("true") << QByteArray("true") << false;
    QTest::newRow("no") << QByteArray("no") << false;
    QTest::newRow("empty") << QByteArray("") << false;
}

void tst_Settings::flagsAreTrueForYesOnly()
{
    QFETCH(QByteArray, word);
    const ExportConfig config =
        read("[Profile_Dot]\nProfile_Dot=" + word + "\n[Mirror]\nMirror=" + word + "\n");
    QTEST(config.profileDot, "flag");
    QTEST(config.mirror, "flag");
}

void tst_Settings::numbersThatDoNotParseAreZero()
{
    const ExportConfig config = read("[Resize]\nunit=mm\nvalue=wide\n[Dbu]\nDbu=small\n");
    QCOMPARE(config.resizeValue, 0.0);
    QCOMPARE(config.dbu, 0.0);
}

void tst_Settings::jobAndOutputFoldersAreMade()
{
    read("[Job_Path]\npath=a/b/jobs\n[Output_Path]\npath=c/out\n");
    QVERIFY(QFileInfo("a/b/jobs").isDir());
    QVERIFY(QFileInfo("c/out").isDir());
}

void tst_Settings::secondOutputFolderIsNotMade()
{
    read("[Output_Path_Second]\npath=second\n");
    QVERIFY(!QFileInfo::exists("second"));
}

void tst_Settings::aFileInPlaceOfTheJobFolderIsLogged()
{
    QVERIFY(m_folder->write("jobs", "a file"));
    LogCapture log;
    const ExportConfig config = read("[Job_Path]\npath=jobs\n");
    QCOMPARE(config.jobPath, QString("jobs"));
    QVERIFY(QFileInfo("jobs").isFile());
    QCOMPARE(log.find("fileprocess.cpp", 416).severity, int(google::GLOG_INFO));
    QVERIFY(!log.find("fileprocess.cpp", 416).message.empty());
}

void tst_Settings::anExistingFolderIsNotLogged()
{
    QVERIFY(QDir().mkpath("jobs"));
    LogCapture log;
    read("[Job_Path]\npath=jobs\n");
    QVERIFY(log.find("fileprocess.cpp", 416).message.empty());
}

void tst_Settings::theLogLineNamesThePath()
{
    LogCapture log;
    FileProcessAccess::checkDir(m_plugin, QString::fromUtf8("板"));
    QCOMPARE(QByteArray::fromStdString(log.find("fileprocess.cpp", 416).message),
             QByteArray("\xc2\xb7\xbe\xb6\xa3\xba\"\xe6\x9d\xbf\""
                        "\xb2\xbb\xb4\xe6\xd4\xda\xa3\xac\xbd\xab\xd7\xd4\xb6\xaf\xb4\xb4\xbd\xa8\xa3\xa1"));
    QVERIFY(QFileInfo(QString::fromUtf8("板")).isDir());
}

void tst_Settings::everyReadReplacesTheValues()
{
    QCOMPARE(read("[Mirror]\nMirror=yes\n[Dbu]\nDbu=2\n").mirror, true);
    const ExportConfig second = read("[Output_Path_Format]\nformat=.gds\n");
    QCOMPARE(second.mirror, false);
    QCOMPARE(second.dbu, 0.0);
    QCOMPARE(second.outputFormat, QString(".gds"));
}

void tst_Settings::theFileIsNeverWritten()
{
    const QByteArray ini = "; the host's own remark\n[Mirror]\nMirror = Yes\n";
    read(ini);
    QFile file("oxconfig.ini");
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), ini);
}

void tst_Settings::garbageGivesDefaults()
{
    const ExportConfig config = read(QByteArray("\x00\xff[[[=\n]Job_Path\n\x80=\n", 18));
    QVERIFY(config.jobPath.isEmpty());
    QCOMPARE(config.dbu, 0.0);
}

void tst_Settings::beforeTheFirstReadTheRecordIsEmpty()
{
    FileProcess plugin;
    const ExportConfig &config = FileProcessAccess::config(plugin);
    QCOMPARE(config.resizeValue, 0.0);
    QCOMPARE(config.dbu, 0.0);
    QVERIFY(!config.profileDot && !config.mirror);
    QVERIFY(config.jobPath.isEmpty());
}

QTEST_MAIN(tst_Settings)
#include "tst_settings.moc"
