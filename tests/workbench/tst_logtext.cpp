// Log lines in UTF-8, in GBK, and in both.
#include "workbench/logcollector.h"
#include "workbench/logtext.h"

#include <QSignalSpy>
#include <QtTest>

#include <thread>

class tst_LogText : public QObject
{
    Q_OBJECT

private slots:
    void everyEncodingIsReadable_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("ascii") << QByteArray("opened job 7") << QString("opened job 7");
        QTest::newRow("utf-8") << QByteArray("Gr\xc3\xb6\xc3\x9f"
                                             "e")
                               << QString::fromUtf8("Größe");
        QTest::newRow("gbk") << QByteArray("Import\xa3\xba\xc1\xcf\xba\xc5")
                             << QString::fromUtf8("Import：料号");
        QTest::newRow("gbk around a utf-8 path")
            << QByteArray("\xc2\xb7\xbe\xb6\xa3\xba\"/jobs/\xe6\x9d\xbf\"\xb2\xbb\xb4\xe6\xd4\xda")
            << QString::fromUtf8("路径：\"/jobs/板\"不存在");
        QTest::newRow("neither") << QByteArray("a\xff\xff") << QString("a") + QChar(0xfffd) + QChar(0xfffd);
        QTest::newRow("empty") << QByteArray() << QString();
    }
    void everyEncodingIsReadable()
    {
        QFETCH(QByteArray, bytes);
        QTEST(decodeLogText(bytes), "text");
    }

    void linesOfAllThreadsArriveInOrderWithLevelAndSource()
    {
        LogCollector collector;
        QVector<LogRecord> records;
        connect(&collector, &LogCollector::logged, this,
                [&records](const LogRecord &record) { records << record; });
        std::thread([] {
            google::LogMessage("engine.cpp", 12, google::GLOG_ERROR).stream() << "broken";
        }).join();
        google::LogMessage("engine.cpp", 13, google::GLOG_WARNING).stream() << "odd";
        qDebug() << "detail";
        QTRY_COMPARE(records.size(), 3);
        QCOMPARE(records[0].text, QString("broken"));
        QCOMPARE(records[0].source, QString("engine.cpp:12"));
        QCOMPARE(records[0].level, LogRecord::Error);
        QCOMPARE(records[1].level, LogRecord::Warning);
        QCOMPARE(records[2].text, QString("detail"));
        QCOMPARE(records[2].level, LogRecord::Debug);
    }

    void afterTheCollectorIsGoneLoggingGoesOn()
    {
        {
            LogCollector collector;
        }
        qDebug() << "nobody listens";
        google::LogMessage("engine.cpp", 14, google::GLOG_INFO).stream() << "nobody listens";
    }
};

QTEST_GUILESS_MAIN(tst_LogText)
#include "tst_logtext.moc"
