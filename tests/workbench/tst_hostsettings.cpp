// The host's settings file and the jobs on disk.
#include "platform/paths.h"
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/foldercheck.h"
#include "workbench/hostsettings.h"
#include "workbench/jobstore.h"
#include "workbench/numberbox.h"
#include "workbench/settingsdialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QStandardPaths>
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
    void firstStartWritesTheDefaultsToTheSettingsFolder()
    {
        TemporaryWorkingFolder folder;
        const UserFolders folders = UserFolders::below(folder.filePath("home/settings"));
        const hostsettings::Entered entered = hostsettings::enter(folders);
        QVERIFY2(entered.failure.isEmpty() && entered.takenOver.isEmpty(), qPrintable(entered.failure));
        QCOMPARE(QDir::current().canonicalPath(), folder.filePath("home/settings"));
        QVERIFY(!QFileInfo::exists(folder.filePath("oxconfig.ini")));
        QCOMPARE(setting("Job_Path/path"), platform::toHandedOver(folders.jobs));
        QCOMPARE(setting("Output_Path/path"), folders.exports);
        QCOMPARE(setting("Export_Database/path"), folders.history);
        QCOMPARE(setting("Dbu/Dbu").toDouble(), 0.001);
        QCOMPARE(setting("Profile_Dot/Profile_Dot"), QString("no"));
        QVERIFY(!folders.exports.startsWith(folders.jobs));
    }

    void theUsersFolderIsTheSystems()
    {
        QStandardPaths::setTestModeEnabled(true);
        const UserFolders folders = UserFolders::ofSystem();
        QCOMPARE(folders.settings, QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation));
        for (const QString &path : {folders.settings, folders.jobs, folders.exports, folders.history})
            QVERIFY2(QDir::isAbsolutePath(path), qPrintable(path));
        QCOMPARE(QFileInfo(folders.jobs).path(), QFileInfo(folders.exports).path());
        QStandardPaths::setTestModeEnabled(false);
    }

    void settingsOfTheWorkingFolderAreTakenOverOnce()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write("old/oxconfig.ini",
                             "[Job_Path]\npath=mine\n[Output_Path_Second]\npath=NC\n[Dbu]\nDbu=0.0005\n"
                             "[Another_Plugin]\nkey=7\n"));
        QVERIFY(QDir::setCurrent(folder.filePath("old")));
        const UserFolders folders = UserFolders::below(folder.filePath("new"));
        const hostsettings::Entered entered = hostsettings::enter(folders);
        QCOMPARE(QFileInfo(entered.takenOver).canonicalFilePath(), folder.filePath("old/oxconfig.ini"));
        QCOMPARE(setting("Job_Path/path"), platform::toHandedOver(folder.filePath("old/mine")));
        // Beside the jobs, as without settings, and not inside a job.
        QCOMPARE(setting("Output_Path/path"), folder.filePath("old/export"));
        QCOMPARE(setting("Output_Path_Second/path"), QString("NC"));
        QCOMPARE(setting("Another_Plugin/key"), QString("7"));
        QCOMPARE(setting("Dbu/Dbu").toDouble(), 0.0005);

        QVERIFY(folder.write("old/oxconfig.ini", "[Dbu]\nDbu=0.25\n"));
        QVERIFY(QDir::setCurrent(folder.filePath("old")));
        QVERIFY(hostsettings::enter(folders).takenOver.isEmpty());
        QCOMPARE(setting("Dbu/Dbu").toDouble(), 0.0005);
    }

    void settingsFolderThatCannotBeUsedIsAFailure()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write("file", "x"));
        const hostsettings::Entered entered =
            hostsettings::enter(UserFolders::below(folder.filePath("file/settings")));
        QVERIFY(!entered.failure.isEmpty());
        QCOMPARE(QDir::current().canonicalPath(), folder.path());
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
        const QByteArray mine = "[Job_Path]\npath=D:\\\\mine\n";
        QVERIFY(folder.write("oxconfig.ini", mine));
        QVERIFY(hostsettings::enter(UserFolders::below(folder.path())).takenOver.isEmpty());
        QFile file("oxconfig.ini");
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), mine);
    }

    void slashesInTheUsersJobFolderAreMended()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write("oxconfig.ini", "[Job_Path]\npath=D:/mine/jobs\n[Dbu]\nDbu=0.0005\n"));
        hostsettings::enter(UserFolders::below(folder.path()));
        QCOMPARE(setting("Job_Path/path"), QString("D:\\mine\\jobs"));
        QCOMPARE(setting("Dbu/Dbu").toDouble(), 0.0005);
    }

    void foldersAreJudged_data()
    {
        QTest::addColumn<QString>("path"); // below a temporary folder
        QTest::addColumn<int>("weight");
        QTest::addColumn<QString>("said");
        using Weight = FolderCheck::Weight;
        QTest::newRow("there") << "there" << int(Weight::None) << "";
        QTest::newRow("missing") << "a/b/c" << int(Weight::Note) << "will be made";
        QTest::newRow("blank") << "my jobs" << int(Weight::Warning) << "an old job stays";
        QTest::newRow("below a file") << "file/jobs" << int(Weight::Error) << "is no folder";
        QTest::newRow("none") << "" << int(Weight::Error) << "need a folder";
        if (QFileInfo("/proc/self").isDir()) // nobody writes there, root neither
            QTest::newRow("read-only") << "/proc/jobs" << int(Weight::Error) << "read-only";
    }
    void foldersAreJudged()
    {
        QFETCH(QString, path);
        QFETCH(QString, said);
        TemporaryWorkingFolder folder;
        QVERIFY(QDir().mkpath("there") && folder.write("file", ""));
        const QString whole = path.isEmpty() || path[0] == '/' ? path : folder.filePath(path);
        const FolderCheck check = FolderCheck::ofJobs(whole);
        QTEST(int(check.weight), "weight");
        QVERIFY2(check.text.contains(said), qPrintable(check.text));
    }

    void exportsInsideAJobAreWarnedAbout()
    {
        TemporaryWorkingFolder folder;
        using Weight = FolderCheck::Weight;
        QVERIFY(FolderCheck::ofExports("", folder.path()).weight == Weight::Note);
        QVERIFY(FolderCheck::ofExports(folder.filePath("jobs/x"), folder.filePath("jobs")).weight ==
                Weight::Warning);
        QVERIFY(FolderCheck::ofExports(folder.filePath("jobs2"), folder.filePath("jobs")).weight ==
                Weight::Note);
        QVERIFY(FolderCheck::ofExports("relative", folder.path()).weight == Weight::Error);
    }

    void theDialogSaysAtTheFieldWhatStandsAgainstAFolder()
    {
        TemporaryWorkingFolder folder;
        HostSettings values;
        values.jobFolder = folder.path();
        values.outputFolder = folder.filePath("out");
        SettingsDialog dialog(values);
        dialog.show();
        auto *edit = dialog.findChild<QLineEdit *>("JobFolder");
        auto *check = dialog.findChild<QLabel *>("JobFolderCheck");
        QPushButton *ok = dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
        QVERIFY(check->isHidden() && ok->isEnabled());
        QTest::keyClicks(edit, "/a b");
        QVERIFY2(check->isVisible() && check->text().contains("blank"), qPrintable(check->text()));
        QVERIFY(ok->isEnabled());
        edit->selectAll();
        QTest::keyClicks(edit, "jobs");
        QVERIFY2(check->text().contains("absolute"), qPrintable(check->text()));
        QVERIFY(!ok->isEnabled());
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
            const RunFolder runFolder(folder.filePath("other jobs"),
                                      UserFolders::below(folder.filePath("none")));
            QVERIFY(QDir::current().canonicalPath() != folder.path());
            QCOMPARE(setting("Job_Path/path"), platform::toHandedOver(folder.filePath("other jobs")));
            QCOMPARE(setting("Export_Database/path"), folder.filePath("log/exports.sqlite"));
            QCOMPARE(setting("Output_Path_Second/path"), QString("NC"));
            QCOMPARE(setting("Dbu/Dbu").toDouble(), 0.0005);
        }
        QCOMPARE(QDir::current().canonicalPath(), folder.path());
        QCOMPARE(setting("Job_Path/path"), QString("mine"));
    }

    void runFolderHasTheSettingsOfTheUserRatherThanOfTheWorkingFolder()
    {
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write("user/oxconfig.ini", "[Dbu]\nDbu=0.0005\n"));
        QVERIFY(folder.write("oxconfig.ini", "[Dbu]\nDbu=0.25\n"));
        const RunFolder runFolder("", UserFolders::below(folder.filePath("user")));
        QCOMPARE(setting("Dbu/Dbu").toDouble(), 0.0005);
        QCOMPARE(setting("Job_Path/path"), platform::toHandedOver(folder.filePath("job")));
    }

    void runFolderWithoutSettingsOfTheUserHasTheJobFolder()
    {
        TemporaryWorkingFolder folder;
        const RunFolder runFolder(folder.filePath("j"), UserFolders::below(folder.filePath("none")));
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
