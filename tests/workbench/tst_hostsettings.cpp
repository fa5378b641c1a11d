// The host's settings file and the jobs on disk.
#include "platform/paths.h"
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/hostsettings.h"
#include "workbench/jobstore.h"
#include "workbench/numberbox.h"
#include "workbench/settingsdialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QtTest>

class tst_HostSettings : public QObject
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
        dialog.findChild<NumberBox *>("Resize")->setValue(0.125);
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

    void commaAndPointAreTheSameDecimalMark_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("shown");
        for (const char *locale : {"C", "en_US", "de_DE", "zh_CN", "fr_FR", "de_CH"}) {
            const QString mark = QLocale(locale).decimalPoint();
            const auto row = [locale](const char *name) -> QTestData & {
                return QTest::newRow(qPrintable(QString("%1, %2").arg(locale, name)));
            };
            row("point") << locale << "12.5" << 12.5 << "12" + mark + "5";
            row("comma") << locale << "12,5" << 12.5 << "12" + mark + "5";
            row("negative") << locale << "-0,25" << -0.25 << "-0" + mark + "25";
            row("three digits") << locale << "1.234" << 1.234 << "1" + mark + "234";
            row("whole") << locale << "1500" << 1500.0 << "1500";
            row("two marks") << locale << "1.2,3" << 1.23
                             << "1" + mark + "23"; // the second mark is not taken
        }
    }
    void commaAndPointAreTheSameDecimalMark()
    {
        QFETCH(QString, locale);
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        NumberBox box(-10000.0, 10000.0, 3);
        box.setLocale(QLocale(locale));
        box.show();
        box.selectAll();
        QTest::keyClicks(&box, typed);
        QTest::keyClick(&box, Qt::Key_Return);
        QTEST(box.value(), "value");
        QCOMPARE(box.text(), shown);
    }

    void numbersOutOfRangeAreNotTaken()
    {
        NumberBox box(0.0, 10.0, 2);
        box.setValue(1.0);
        box.selectAll();
        QTest::keyClicks(&box, "11.999x");
        QTest::keyClick(&box, Qt::Key_Return);
        QVERIFY2(box.value() <= 10.0, qPrintable(box.text()));
        QCOMPARE(box.cleanText().toDouble(), box.value());
    }

    void theDialogSaysWhatAResizeDoes()
    {
        QLocale::setDefault(QLocale("de_DE"));
        HostSettings values;
        SettingsDialog dialog(values);
        auto *meaning = dialog.findChild<QLabel *>("ResizeMeaning");
        QCOMPARE(meaning->text(), QString("Features keep their size."));
        auto *resize = dialog.findChild<NumberBox *>("Resize");
        resize->selectAll();
        QTest::keyClicks(resize, "12.5");
        QVERIFY2(meaning->text().contains("grow features by 12,5 "), qPrintable(meaning->text()));
        QVERIFY2(meaning->text().contains("6,25 "), qPrintable(meaning->text()));
        QCOMPARE(dialog.values().resize, 12.5);
        resize->setValue(-2.0);
        for (QComboBox *unit : dialog.findChildren<QComboBox *>())
            unit->setCurrentText("mm");
        QVERIFY2(meaning->text().contains("shrink features by 2.000 "), qPrintable(meaning->text()));
        QLocale::setDefault(QLocale::c());
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

QTEST_MAIN(tst_HostSettings)
#include "tst_hostsettings.moc"
