// Reading the host's settings file as Qt writes it.
#include "cam/odb/settings.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QSettings>
#include <QtTest>

class tst_Settings : public QObject
{
    Q_OBJECT

private slots:
    // Whatever Qt writes and reads back is read the same here.
    void agreesWithQt_data()
    {
        QTest::addColumn<QString>("value");
        for (const char *value :
             {"", "jobs", "D:/jobs", "D:\\jobs\\new", "with blank", " lead and trail ", "semi;colon",
              "comma, list", "quote\"d", "per%cent", "equals=sign", "#hash", "[brackets]"})
            QTest::newRow(value) << QString(value);
        QTest::newRow("umlauts") << QString::fromUtf8("\u00dcbung/\u4e2d\u6587");
    }
    void agreesWithQt()
    {
        QFETCH(QString, value);
        TemporaryWorkingFolder folder;
        {
            QSettings settings("oxconfig.ini", QSettings::IniFormat);
            settings.setIniCodec("utf-8");
            settings.setValue("Other/path", "wrong");
            settings.setValue("Job_Path/path", value);
        }
        QCOMPARE(QString::fromStdString(cam::readSetting("Job_Path", "path")), value);
    }

    void plainTextOfAPersonIsReadAsQtDoes_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("plain") << QByteArray("path=D:/jobs");
        QTest::newRow("blanks") << QByteArray("  path =  D:/jobs  ");
        QTest::newRow("single backslashes") << QByteArray("path=D:\\jobs\\new");
        QTest::newRow("quoted") << QByteArray("path=\"a, b\"");
        QTest::newRow("list") << QByteArray("path=a, b");
        QTest::newRow("comment") << QByteArray("; path=x\npath=y");
        QTest::newRow("twice") << QByteArray("path=x\npath=y");
        QTest::newRow("empty") << QByteArray("path=");
        QTest::newRow("no key") << QByteArray("other=1");
    }
    void plainTextOfAPersonIsReadAsQtDoes()
    {
        QFETCH(QByteArray, line);
        TemporaryWorkingFolder folder;
        QVERIFY(folder.write("oxconfig.ini", "[Job_Path]\n" + line + "\n[Other]\npath=z\n"));
        QSettings settings("oxconfig.ini", QSettings::IniFormat);
        settings.setIniCodec("utf-8");
        QCOMPARE(QString::fromStdString(cam::readSetting("Job_Path", "path")),
                 settings.value("Job_Path/path").toString());
    }

    void missingFileIsEmpty()
    {
        TemporaryWorkingFolder folder;
        QCOMPARE(cam::readSetting("Job_Path", "path"), std::string());
    }
};

QTEST_APPLESS_MAIN(tst_Settings)
#include "tst_settings.moc"
