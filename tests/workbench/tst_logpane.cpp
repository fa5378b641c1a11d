// The pane of the log: what it shows, and that it follows its end.
#include "tests/export/wheel.h"
#include "workbench/logpane.h"
#include "workbench/logreading.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTabBar>
#include <QToolButton>
#include <QtTest>

class tst_LogPane : public QObject
{
    Q_OBJECT

private:
    static LogRecord record(const QString &text, LogRecord::Level level = LogRecord::Information)
    {
        return {level, QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5)), "file.cpp:6", text};
    }
    static QString problemTab(const LogPane &pane) { return pane.findChild<QTabBar *>()->tabText(1); }

private slots:
    void linesHaveTimeLevelAndPlace()
    {
        LogPane pane;
        pane.append(record("hello"));
        QCOMPARE(pane.text(), QString("03:04:05.000  info     hello  [file.cpp:6]"));
    }

    void theEndStaysInSight()
    {
        LogPane pane;
        pane.resize(600, 150);
        pane.show();
        auto *text = pane.findChild<QPlainTextEdit *>("LogText");
        for (int i = 0; i < 100; ++i)
            pane.append(record(QString("line %1").arg(i)));
        QScrollBar *bar = text->verticalScrollBar();
        QVERIFY(bar->maximum() > 50);
        QCOMPARE(bar->value(), bar->maximum());
        // Who has scrolled up stays there,
        turnWheel(text->viewport(), 5);
        const int place = bar->value();
        QVERIFY(place < bar->maximum());
        pane.append(record("another line"));
        QCOMPARE(bar->value(), place);
        // and who has come back follows again.
        QTest::keyClick(text, Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(bar->value(), bar->maximum());
        pane.append(record("one more line"));
        QCOMPARE(bar->value(), bar->maximum());
    }

    void linesAreFilteredByLevelAndText()
    {
        LogPane pane;
        pane.show();
        pane.append(record("a debug line", LogRecord::Debug));
        pane.append(record("an information"));
        pane.append(record("a warning", LogRecord::Warning));
        pane.append(record("an error", LogRecord::Error));
        const auto count = [&pane] { return pane.text().isEmpty() ? 0 : pane.text().count('\n') + 1; };
        QCOMPARE(count(), 3);
        auto *level = pane.findChild<QComboBox *>("LogLevel");
        QTest::keyClick(level, Qt::Key_Up);
        QCOMPARE(count(), 4); // also those that came before the choice
        QTest::keyClick(level, Qt::Key_Down);
        QTest::keyClick(level, Qt::Key_Down);
        QCOMPARE(count(), 2);
        QTest::keyClick(level, Qt::Key_Home);
        QTest::keyClicks(pane.findChild<QLineEdit *>("LogFilter"), "INFORM");
        QCOMPARE(count(), 1);
        QVERIFY(pane.text().contains("an information"));
    }

    void problemsHaveAListOfTheirOwn()
    {
        LogPane pane;
        pane.show();
        QCOMPARE(problemTab(pane), QString("Problems"));
        pane.append(record("an information"));
        pane.append(record("a warning", LogRecord::Warning));
        pane.append(record("an error", LogRecord::Error));
        QCOMPARE(problemTab(pane), QString("Problems (2)"));
        const QString problems = pane.findChild<QPlainTextEdit *>("LogProblems")->toPlainText();
        QVERIFY(problems.contains("a warning") && problems.contains("an error") &&
                !problems.contains("inform"));
        QTest::mouseClick(pane.findChild<QToolButton *>("LogClear"), Qt::LeftButton);
        QCOMPARE(problemTab(pane), QString("Problems"));
        QVERIFY(pane.text().isEmpty());
    }

    void chineseLinesHaveAnEnglishReading_data()
    {
        QTest::addColumn<QString>("chinese");
        QTest::addColumn<QString>("english");
        const auto row = [](const char *name, const char *chinese, const char *english) {
            QTest::newRow(name) << QString::fromUtf8(chinese) << QString(english);
        };
        row("layers", "Export：获取配置层信息", "Export: asking for the layers");
        row("job", "Export：准备料号信息", "Export: preparing the job");
        row("list", "Export: 已获取导出层列表。料号：beacon；STEP：pcb",
            "Export: the list of layers to export is known. Job: beacon; step: pcb");
        row("path", "路径：\"/jobs\"不存在，将自动创建！",
            "path: \"/jobs\" does not exist and will be made!");
        row("import", "Import：料号路径以获取，即将开始导入",
            "Import: the job's path is known, the import is about to begin");
        row("unpacking", "解压文件异常！ 异常位置：a.cpp : 3", "unpacking failed! At: a.cpp : 3");
        row("a path alone", "cannot read /任务/x", "");
        row("English", "opened the job beacon", "");
    }
    void chineseLinesHaveAnEnglishReading()
    {
        QFETCH(QString, chinese);
        QFETCH(QString, english);
        QCOMPARE(englishReading(chinese), english);
        LogPane pane;
        pane.setLocale(QLocale(QLocale::English));
        pane.append(record(chinese));
        QCOMPARE(pane.text().contains("  |  " + english), !english.isEmpty());
        QVERIFY(pane.text().contains(chinese));
        LogPane inChinese;
        inChinese.setLocale(QLocale(QLocale::Chinese, QLocale::China));
        inChinese.append(record(chinese));
        QVERIFY(!inChinese.text().contains("  |  "));
    }

    // A new text in the plug-in's sources needs its reading.
    void everyChineseTextOfThePluginHasAReading()
    {
        int texts = 0;
        for (const char *name : {"plugin/hostmessages.cpp", "plugin/settings.cpp", "export/export.cpp",
                                 "import/unzipprogress.cpp"}) {
            QFile file(QString(PLUGIN_SOURCES "/") + name);
            QVERIFY2(file.open(QIODevice::ReadOnly), name);
            QRegularExpressionMatchIterator found =
                QRegularExpression("\"([^\"]*[\\x{4e00}-\\x{9fff}][^\"]*)\"")
                    .globalMatch(QString::fromUtf8(file.readAll()));
            while (found.hasNext()) {
                const QString text = found.next().captured(1);
                const QString reading = englishReading(text);
                QVERIFY2(!reading.isEmpty() && !reading.contains(QRegularExpression("[\\x{4e00}-\\x{9fff}]")),
                         qPrintable(text));
                ++texts;
            }
        }
        QVERIFY(texts >= 7);
    }
};

QTEST_MAIN(tst_LogPane)
#include "tst_logpane.moc"
