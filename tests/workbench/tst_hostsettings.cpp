// The host's settings file and the jobs on disk.
#include "platform/paths.h"
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/hostsettings.h"
#include "workbench/jobstore.h"
#include "workbench/settingsdialog.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QSettings>
#include <QtTest>

class TestHostSettings : public QObject
{
    Q_OBJECT

private:
    static QString setting(const QString &key)
    {
        QSettings settings("oxconfig.ini", QSettings::IniFormat);
        settings.setIniCodec("utf-8");
        return settings.value(key).toString();
    }

    static QStringList names(const QVector<JobEntry> &jobs)
    {
        QStringList list;
        for (const JobEntry &job : jobs)
            list << job.name;
        return list;
    }

private slots:
    void firstStartWritesTheDefaults()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(hostsettings::writeDefaults());
        QCOMPARE(setting("Job_Path/path"), platform::toHandedOver(folder.filePath("job")));
        QCOMPARE(setting("Dbu/Dbu").toDouble(), 0.001);
        QCOMPARE(setting("Profile_Dot/Profile_Dot"), QString("no"));
    }

    void valuesAreReadAsTheyWereWritten()
    {
        TemporaryWorkingFolder folder;
        HostSettings values;
        values.jobFolder = QString::fromUtf8("D:/Aufträge");
        values.outputFolder = "out";
        values.secondFolder = "NC";
        values.resize = -2.5;
        values.resizeUnit = "mm";
        values.databaseUnit = 0.0005;
        values.withProfile = true;
        values.exportDatabase = "exports.sqlite";
        QVERIFY(hostsettings::write(values));
        const HostSettings read = hostsettings::read();
        QCOMPARE(platform::toLocal(read.jobFolder),
                 platform::toLocal(platform::toHandedOver(values.jobFolder)));
        QCOMPARE(setting("Job_Path/path"), QString::fromUtf8("D:\\Aufträge"));
        QCOMPARE(read.outputFolder, values.outputFolder);
        QCOMPARE(read.secondFolder, values.secondFolder);
        QCOMPARE(read.resize, values.resize);
        QCOMPARE(read.resizeUnit, values.resizeUnit);
        QCOMPARE(read.databaseUnit, values.databaseUnit);
        QCOMPARE(read.withProfile, values.withProfile);
        QCOMPARE(read.exportDatabase, values.exportDatabase);
    }

    void keysThatAreNotEditedStay()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write("oxconfig.ini", "[Another_Plugin]\nkey=7\n[Mirror]\nMirror=yes\n"));
        QVERIFY(hostsettings::write(hostsettings::read()));
        QCOMPARE(setting("Another_Plugin/key"), QString("7"));
        QCOMPARE(setting("Mirror/Mirror"), QString("yes"));
    }

    void settingsThatCannotBeWrittenAreReported()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(QDir().mkpath("oxconfig.ini")); // a folder is in the way
        QVERIFY(!hostsettings::write(HostSettings()));
    }

    void dialogGivesBackWhatWasEdited()
    {
        HostSettings values;
        values.jobFolder = "/jobs";
        values.resizeUnit = "mm";
        SettingsDialog dialog(values);
        QCOMPARE(QDir::fromNativeSeparators(dialog.findChild<QLineEdit *>("JobFolder")->text()),
                 QString("/jobs"));
        dialog.findChild<QLineEdit *>("OutputFolder")->setText("/out");
        dialog.findChild<QDoubleSpinBox *>("Resize")->setValue(0.125);
        dialog.findChild<QCheckBox *>()->setChecked(true);
        const HostSettings edited = dialog.values();
        QCOMPARE(edited.jobFolder, QString("/jobs"));
        QCOMPARE(edited.outputFolder, QString("/out"));
        QCOMPARE(edited.resize, 0.125);
        QCOMPARE(edited.resizeUnit, QString("mm"));
        QCOMPARE(edited.databaseUnit, 0.001);
        QVERIFY(edited.withProfile);
    }

    void settingsOfTheUserAreKept()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write("oxconfig.ini", "[Job_Path]\npath=D:/mine\n"));
        QVERIFY(hostsettings::writeDefaults());
        QFile file("oxconfig.ini");
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("[Job_Path]\npath=D:/mine\n"));
    }

    void slashesInTheUsersJobFolderAreMended()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write("oxconfig.ini", "[Job_Path]\npath=D:/mine/jobs\n[Dbu]\nDbu=0.0005\n"));
        hostsettings::mendJobFolder();
        QCOMPARE(setting("Job_Path/path"), QString("D:\\mine\\jobs"));
        QCOMPARE(setting("Dbu/Dbu").toDouble(), 0.0005);
    }

    void jobRootIsTheConfiguredFolderOrJob()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(QDir().mkpath("a/b"));
        QVERIFY(folder.write("file", "x"));
        QCOMPARE(hostsettings::jobRoot(folder.filePath("a/b")), folder.filePath("a/b"));
        QCOMPARE(hostsettings::jobRoot("a/b"), folder.filePath("a/b"));
        QCOMPARE(hostsettings::jobRoot("a\\b"), folder.filePath("a/b"));
        QCOMPARE(hostsettings::jobRoot(""), folder.filePath("job"));
        QCOMPARE(hostsettings::jobRoot("missing"), folder.filePath("job"));
        QCOMPARE(hostsettings::jobRoot("file"), folder.filePath("job"));
    }

    void runFolderHasTheUsersSettingsWithAnotherJobFolder()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write("oxconfig.ini",
                             "[Job_Path]\npath=mine\n[Export_Database]\npath=log/exports.sqlite\n"
                             "[Output_Path_Second]\npath=NC\n[Dbu]\nDbu=0.0005\n"));
        {
            const RunFolder runFolder(folder.filePath("other jobs"));
            QVERIFY(QDir::current().canonicalPath() != folder.path());
            QCOMPARE(setting("Job_Path/path"), platform::toHandedOver(folder.filePath("other jobs")));
            QCOMPARE(setting("Export_Database/path"), folder.filePath("log/exports.sqlite"));
            QCOMPARE(setting("Output_Path_Second/path"), QString("NC"));
            QCOMPARE(setting("Dbu/Dbu").toDouble(), 0.0005);
        }
        QCOMPARE(QDir::current().canonicalPath(), folder.path());
        QCOMPARE(setting("Job_Path/path"), QString("mine"));
    }

    void runFolderWithoutSettingsOfTheUserHasTheJobFolder()
    {
        TemporaryWorkingFolder folder;
        const RunFolder runFolder(folder.filePath("j"));
        QCOMPARE(setting("Job_Path/path"), platform::toHandedOver(folder.filePath("j")));
    }

    void jobsAreTheFoldersWithAMatrix()
    {
        TemporaryWorkingFolder folder;
        for (const char *name : {"b/matrix/matrix", "A/matrix/matrix.gz", "c d/matrix/matrix",
                                 "e/steps/pcb/stephdr", "f/matrix/other", "matrix"})
            QVERIFY(folder.write(name, "x"));
        const QVector<JobEntry> jobs = listJobs(folder.path());
        QCOMPARE(names(jobs), (QStringList{"A", "b", "c d"}));
        QCOMPARE(jobs[2].folder, folder.filePath("c d"));
    }

    void missingRootHasNoJobs() { QVERIFY(listJobs("no/such/folder").isEmpty()); }
};

QTEST_MAIN(TestHostSettings)
#include "tst_hostsettings.moc"
