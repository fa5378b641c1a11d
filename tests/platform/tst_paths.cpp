// Paths at the border to the operating system.

#include "platform/paths.h"

#include <QtTest>

#include <chrono>
#include <filesystem>

class tst_Paths : public QObject
{
    Q_OBJECT

private slots:
    void backslashesBecomeTheLocalSeparator_data();
    void backslashesBecomeTheLocalSeparator();
    void slashesAreHandedOverAsBackslashes();
    void touchedFolderIsTheLastChanged();
    void missingFolderIsNotTouched();
};

void tst_Paths::backslashesBecomeTheLocalSeparator_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("elsewhere"); // what every system but Windows gets
    QTest::newRow("backslashes") << "C:\\jobs\\a\\b"
                                 << "C:/jobs/a/b";
    QTest::newRow("mixed") << "d:/out//job1\\top.gds"
                           << "d:/out//job1/top.gds";
    QTest::newRow("relative root") << ".\\job\\"
                                   << "./job/";
    QTest::newRow("no separator") << "name"
                                  << "name";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("other alphabets") << QString::fromUtf8("板\\层") << QString::fromUtf8("板/层");
}

void tst_Paths::backslashesBecomeTheLocalSeparator()
{
    QFETCH(QString, path);
    QFETCH(QString, elsewhere);
#ifdef Q_OS_WIN
    elsewhere = path;
#endif
    QCOMPARE(platform::toLocal(path), elsewhere);
    QCOMPARE(platform::toLocal(path.toStdWString()), elsewhere.toStdWString());
}

void tst_Paths::slashesAreHandedOverAsBackslashes()
{
    QCOMPARE(platform::toHandedOver("C:/jobs\\a/b"), QString("C:\\jobs\\a\\b"));
    QCOMPARE(platform::toHandedOver("/home/me/jobs"), QString("\\home\\me\\jobs"));
    QCOMPARE(platform::toHandedOver(""), QString());
}

void tst_Paths::touchedFolderIsTheLastChanged()
{
#ifdef Q_OS_WIN
    QSKIP("Windows does not ask for it: names that differ only in case are one folder there.");
#endif
    QTemporaryDir folder;
    const auto older = QDateTime::currentDateTime().addSecs(-2);
    const QString touched = folder.filePath(QString::fromUtf8("\u677f"));
    QVERIFY(QDir().mkpath(touched));
    std::filesystem::last_write_time(std::filesystem::u8path(touched.toStdString()),
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
    QVERIFY(QFileInfo(touched).lastModified() < older);
    platform::touchFolder(touched);
    QVERIFY(QFileInfo(touched).lastModified() > older);
}

void tst_Paths::missingFolderIsNotTouched()
{
    QTemporaryDir folder;
    platform::touchFolder(folder.filePath("missing"));
    QVERIFY(!QFileInfo::exists(folder.filePath("missing")));
}

QTEST_GUILESS_MAIN(tst_Paths)
#include "tst_paths.moc"
