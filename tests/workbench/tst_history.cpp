// The exports of the past: rows of the record as runs, and what the pane does with them.
#include "cam/database/exportdatabase.h"
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/historypane.h"

#include <QDesktopServices>
#include <QLabel>
#include <QSignalSpy>
#include <QToolButton>
#include <QTreeWidget>
#include <QtTest>

class tst_History : public QObject
{
    Q_OBJECT

private:
    static void save(const QString &file, const char *job, const char *layer, const char *format,
                     double angle = 0.0)
    {
        cam::ExportRecord record;
        record.job = job;
        record.step = "pcb";
        record.layer = layer;
        record.format = format;
        record.file = std::string("/out/ox/") + job + "\\" + layer + "." + format;
        record.resize = 12500.0;
        record.isRotate = angle != 0.0;
        record.angle = angle;
        cam::saveExport(file.toStdString(), record);
    }

private slots:
    void rowsOfOneRunAreOneExport()
    {
        TemporaryWorkingFolder folder;
        const QString file = folder.filePath("exports.sqlite");
        save(file, "beacon", "bottom", "gds");
        save(file, "beacon", "top", "gds", 90.0);
        save(file, "beacon", "bottom", "gerber"); // another format,
        save(file, "other", "top", "gerber");     // another job,
        save(file, "other", "top", "gerber");     // and the same once more
        QString error;
        const QVector<PastExport> past = readHistory(file, error);
        QVERIFY2(error.isEmpty(), qPrintable(error));
        QCOMPARE(past.size(), 4);
        QCOMPARE(past[0].job, QString("other")); // the newest first
        const PastExport &oldest = past[3];
        QCOMPARE(oldest.layers.size(), 2);
        QCOMPARE(oldest.layers[0].layer, QString("bottom"));
        QCOMPARE(oldest.layers[1].change.angle, 90.0);
        QCOMPARE(oldest.layers[0].change.angle, 0.0);
        QCOMPARE(oldest.resize, 12500.0);
        QCOMPARE(oldest.format, QString(".gds"));
        QCOMPARE(oldest.folder, QString("/out/ox/beacon"));
        QVERIFY(qAbs(oldest.time.secsTo(QDateTime::currentDateTime())) < 60);
    }

    void missingRecordIsEmptyAndABrokenOneIsSaid()
    {
        TemporaryWorkingFolder folder;
        QString error;
        QVERIFY(readHistory(folder.filePath("none.sqlite"), error).isEmpty());
        QVERIFY(error.isEmpty());
        QVERIFY(!QFileInfo::exists(folder.filePath("none.sqlite")));
        QVERIFY(folder.write("broken.sqlite", QByteArray(5000, 'x')));
        QVERIFY(readHistory(folder.filePath("broken.sqlite"), error).isEmpty());
        QVERIFY2(error.contains("broken.sqlite"), qPrintable(error));
        HistoryPane pane;
        pane.show();
        pane.setRecord(folder.filePath("broken.sqlite"));
        QVERIFY(pane.findChild<QLabel *>()->text().contains("broken.sqlite"));
    }

    void verdictsAreKeptWithTheirExports()
    {
        TemporaryWorkingFolder folder;
        const QString file = folder.filePath("exports.sqlite");
        save(file, "beacon", "top", "gds"); // never verified
        save(file, "other", "top", "gds");
        save(file, "beacon", "bottom", "gds");
        save(file, "beacon", "top", "gds");
        cam::ExportRequest request;
        request.job = "/jobs/Beacon";
        request.step = "PCB";
        request.format = cam::FileFormat::Gds;
        HistoryPane pane;
        pane.resize(900, 300);
        pane.show();
        pane.setRecord(file);
        auto *list = pane.findChild<QTreeWidget *>();
        QCOMPARE(list->headerItem()->text(5), QString("Verified"));
        QCOMPARE(list->topLevelItem(0)->text(5), QString("not verified"));
        request.layer = "top";
        keepVerdict(file, request, true);
        pane.refresh();
        QCOMPARE(list->topLevelItem(0)->text(5), QString("1 of 2 proven"));
        QCOMPARE(list->topLevelItem(0)->child(0)->text(5), QString("not verified"));
        QCOMPARE(list->topLevelItem(0)->child(1)->text(5), QString("proven"));
        QCOMPARE(list->topLevelItem(1)->text(5), QString("not verified")); // another job's
        QCOMPARE(list->topLevelItem(2)->text(5), QString("not verified")); // an earlier one's
        request.layer = "bottom";
        keepVerdict(file, request, false);
        pane.refresh();
        QCOMPARE(list->topLevelItem(0)->text(5), QString("1 of 2 not proven"));
        keepVerdict(file, request, true); // verified again
        pane.refresh();
        QCOMPARE(list->topLevelItem(0)->text(5), QString("proven"));
        // The table of exports is as it was.
        save(file, "beacon", "top", "gerber");
        QString error;
        QCOMPARE(readHistory(file, error).size(), 4);
        QVERIFY(!readHistory(file, error)[0].layers[0].isProven);
        keepVerdict(folder.filePath("none.sqlite"), request, true);
        QVERIFY(!QFileInfo::exists(folder.filePath("none.sqlite")));
    }

    void thePaneOpensFoldersAndRepeats()
    {
        TemporaryWorkingFolder folder;
        const QString file = folder.filePath("exports.sqlite");
        save(file, "beacon", "bottom", "gds");
        save(file, "beacon", "top", "gds", 90.0);
        HistoryPane pane;
        pane.resize(900, 300);
        pane.show();
        pane.setRecord(file);
        auto *list = pane.findChild<QTreeWidget *>();
        QCOMPARE(list->topLevelItemCount(), 1);
        QVERIFY(list->topLevelItem(0)->text(6).contains("12.5"));
        for (const QToolButton *button : pane.findChildren<QToolButton *>())
            QVERIFY(!button->isEnabled());
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Down);
        QTest::keyClick(list, Qt::Key_Right); // opens the run
        QTest::keyClick(list, Qt::Key_Down);
        QTest::keyClick(list, Qt::Key_Down);
        QCOMPARE(list->currentItem()->text(0), QString("top"));
        QVERIFY(list->currentItem()->text(6).contains("90"));
        QVector<PastExport> repeated;
        connect(&pane, &HistoryPane::repeatAsked, &pane,
                [&repeated](const PastExport &past) { repeated << past; });
        QDesktopServices::setUrlHandler("file", this, "takeUrl");
        for (QToolButton *button : pane.findChildren<QToolButton *>())
            QTest::mouseClick(button, Qt::LeftButton);
        QDesktopServices::unsetUrlHandler("file");
        QCOMPARE(repeated.size(), 1);
        QCOMPARE(repeated[0].layers.size(), 2);
        QCOMPARE(shown.toLocalFile(), QString("/out/ox/beacon"));
    }

public:
    QUrl shown;
    Q_INVOKABLE void takeUrl(const QUrl &url) { shown = url; }
};

QTEST_MAIN(tst_History)
#include "tst_history.moc"
