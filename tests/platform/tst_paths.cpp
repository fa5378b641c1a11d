// Paths at the border to the operating system.

#include "platform/paths.h"

#include <QtTest>

class tst_Paths : public QObject
{
    Q_OBJECT

private slots:
    void backslashesBecomeTheLocalSeparator_data();
    void backslashesBecomeTheLocalSeparator();
    void slashesAreHandedOverAsBackslashes();
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

QTEST_GUILESS_MAIN(tst_Paths)
#include "tst_paths.moc"
