// The pane of the jobs, and what is done with a job's folder.
#include "tests/support/modalresponder.h"
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/joblistpanel.h"
#include "workbench/logcollector.h"
#include "workbench/mainwindow.h"
#include "workbench/recentjobs.h"
#include "workbench/view/boardview.h"
#include "workbench/view/graphicview.h"
#include "workbench/windowmemory.h"

#include <QAction>
#include <QDesktopServices>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QStandardPaths>
#include <QTreeWidget>
#include <QtTest>

#include <memory>

class tst_JobsPane : public QObject
{
    Q_OBJECT

private:
    TemporaryWorkingFolder folder;
    LogCollector log;
    WindowMemory memory;
    int memories = 0; // each test has a new one
    std::unique_ptr<MainWindow> window;
    QTreeWidget *list = nullptr;

    void addJob(const QString &name, const QByteArray &info = {})
    {
        QVERIFY(folder.write("job/" + name + "/matrix/matrix", "STEP {\n    COL=1\n    NAME=PCB\n}\n"));
        if (!info.isEmpty())
            QVERIFY(folder.write("job/" + name + "/misc/info", info));
    }
    QTreeWidgetItem *item(const QString &name) const
    {
        const QList<QTreeWidgetItem *> found = list->findItems(name, Qt::MatchExactly);
        if (found.size() != 1)
            qFatal("%d jobs are called %s", int(found.size()), qPrintable(name));
        return found.first();
    }
    QPoint place(const QString &name) const { return list->visualItemRect(item(name)).center(); }
    QStringList highlighted() const
    {
        QStringList names;
        for (const QTreeWidgetItem *chosen : list->selectedItems())
            names << chosen->text(0);
        return names;
    }
    void doubleClick(const QString &name)
    {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, place(name));
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, place(name));
    }
    void makeWindow()
    {
        window.reset(new MainWindow(log));
        window->remember(memory);
        window->show();
        list = window->findChild<QTreeWidget *>("Jobs");
        focusList();
    }
    // Short cuts are those of the active window.
    void focusList()
    {
        window->activateWindow();
        if (!QTest::qWaitForWindowActive(window.get()))
            qFatal("the window does not become active");
        list->setFocus();
    }

private slots:
    void initTestCase()
    {
        QStandardPaths::setTestModeEnabled(true);
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        // The wastebasket of a test is its own.
        qputenv("XDG_DATA_HOME", folder.filePath("data").toLocal8Bit());
    }
    void init()
    {
        memory = WindowMemory(folder.filePath(QString("memory-%1.ini").arg(++memories)));
        addJob("alpha", "SAVE_APP=Panel Tool 7\nODB_SOURCE=alpha.brd\nSAVE_DATE=20240312.101500\n");
        addJob("beta", "ODB_SOURCE=beta.brd\nCREATION_DATE=20250102.030405\n");
        addJob("gamma");
    }
    void cleanup()
    {
        window.reset();
        QDir(folder.filePath("job")).removeRecursively();
    }

    void columnsSayWhatTheJobSays()
    {
        makeWindow();
        QCOMPARE(item("alpha")->text(1), QString("3/12/24"));
        QCOMPARE(item("alpha")->text(3), QString("Panel Tool 7"));
        QVERIFY(item("alpha")->toolTip(0).contains("alpha.brd"));
        QVERIFY(item("alpha")->toolTip(0).contains(QDir::toNativeSeparators(folder.filePath("job/alpha"))));
        QCOMPARE(item("beta")->text(1), QString("1/2/25"));
        QCOMPARE(item("beta")->text(3), QString("beta.brd"));
        QVERIFY(!item("gamma")->text(1).isEmpty()); // that of its folder
        QVERIFY(item("gamma")->text(3).isEmpty());
        QTRY_VERIFY(!item("gamma")->text(2).isEmpty());
        QTRY_COMPARE(item("alpha")->data(2, Qt::UserRole + 1).toInt(), 32 + 69);
    }

    // Dates are as long as the language has them: "12 Mar 2024".
    void thereIsRoomForTheDate()
    {
        for (const QLocale &locale : {QLocale(), QLocale::c(), QLocale(QLocale::Chinese)}) {
            const QLocale before;
            QLocale::setDefault(locale);
            makeWindow();
            QLocale::setDefault(before);
            QVERIFY2(list->columnWidth(1) > list->fontMetrics().boundingRect(item("alpha")->text(1)).width(),
                     qPrintable(item("alpha")->text(1)));
        }
    }

    void columnsAreSortedByWhatTheyAre()
    {
        makeWindow();
        addJob("delta", "SAVE_DATE=19991231.000000\n");
        window->refreshJobs();
        list->sortByColumn(1, Qt::AscendingOrder);
        QStringList names;
        for (int row = 0; row < 3; ++row)
            names << list->topLevelItem(row)->text(0);
        QCOMPARE(names, (QStringList{"delta", "alpha", "beta"}));
    }

    void doubleClickAndReturnOpen()
    {
        makeWindow();
        doubleClick("beta");
        QCOMPARE(window->openJobName(), QString("beta"));
        QCOMPARE(highlighted(), QStringList{"beta"});
        QTest::keyClick(list, Qt::Key_Down);
        QCOMPARE(window->openJobName(), QString("beta"));
        QTest::keyClick(list, Qt::Key_Return);
        QCOMPARE(window->openJobName(), QString("gamma"));
        QCOMPARE(highlighted(), QStringList{"gamma"});
    }

    void theHighlightIsTheOpenJob()
    {
        makeWindow();
        doubleClick("beta");
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, place("alpha"));
        QCOMPARE(window->openJobName(), QString("beta"));
        QCOMPARE(highlighted(), QStringList{"beta"});
        QTest::keyClick(list, Qt::Key_Down);
        QTest::keyClick(list, Qt::Key_Home);
        QCOMPARE(highlighted(), QStringList{"beta"});
        window->refreshJobs();
        QCOMPARE(highlighted(), QStringList{"beta"});
    }

    void jobIsRenamed()
    {
        makeWindow();
        doubleClick("beta");
        ModalResponder responder;
        const auto type = [](const QString &text) {
            return [text](QWidget *dialog) {
                auto *edit = dialog->findChild<QLineEdit *>();
                edit->selectAll();
                QTest::keyClicks(edit, text);
                QTest::keyClick(edit, Qt::Key_Return);
            };
        };
        QStringList said;
        responder.expect(type("alpha")); // which is taken
        responder.expect([&](QWidget *dialog) {
            said << dialog->findChild<QLabel *>()->text();
            type("a/b")(dialog);
        });
        responder.expect([&](QWidget *dialog) {
            said << dialog->findChild<QLabel *>()->text();
            type("BETA_2")(dialog);
        });
        QTest::keyClick(list, Qt::Key_F2);
        QCOMPARE(responder.pending(), 0);
        QVERIFY2(said[0].contains("There is a alpha already") && said[1].contains("\"/\""),
                 qPrintable(said.join("|")));
        QCOMPARE(window->jobNames(), (QStringList{"alpha", "BETA_2", "gamma"}));
        QCOMPARE(window->openJobName(), QString("BETA_2"));
        QCOMPARE(highlighted(), QStringList{"BETA_2"});
    }

    void jobGoesToTheWastebasketWhenTheUserSaysYes()
    {
        makeWindow();
        doubleClick("beta");
        ModalResponder responder;
        responder.expectMessageBox(QMessageBox::No);
        QTest::keyClick(list, Qt::Key_Delete);
        QVERIFY(responder.boxes[0].text.contains("beta"));
        QVERIFY(QFileInfo::exists(folder.filePath("job/beta/matrix/matrix")));
        focusList();
        responder.expectMessageBox(QMessageBox::Yes);
        responder.expectMessageBox(QMessageBox::Ok); // only where that fails
        QTest::keyClick(list, Qt::Key_Delete);
        if (QFileInfo::exists(folder.filePath("job/beta"))) // a system without a wastebasket
            QSKIP("this system does not move files to a wastebasket");
        QCOMPARE(responder.pending(), 1);
        QCOMPARE(window->jobNames(), (QStringList{"alpha", "gamma"}));
        QCOMPARE(window->openJobName(), QString());
        QVERIFY(memory.recentJobs().isEmpty());
    }

    // While the question is open nothing is read of the job, which may be moved.
    void aJobThatStaysIsReadOn_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("not removed") << int(Qt::Key_Delete);
        QTest::newRow("not renamed") << int(Qt::Key_F2);
    }
    void aJobThatStaysIsReadOn()
    {
        QFETCH(const int, key);
        QVERIFY(folder.write("job/beta/matrix/matrix",
                             "STEP {\n    COL=1\n    NAME=PCB\n}\nLAYER {\n    ROW=1\n    CONTEXT=BOARD\n"
                             "    TYPE=SIGNAL\n    NAME=TOP\n    POLARITY=POSITIVE\n}\n"));
        QVERIFY(folder.write("job/beta/steps/pcb/layers/top/features", "$0 r200\nP 1 1 0 P 0 0\n"));
        makeWindow();
        doubleClick("beta"); // no event is handled before the key: the layer is being read
        ModalResponder responder;
        responder.expect([](QWidget *dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
        QTest::keyClick(list, Qt::Key(key));
        QCOMPARE(responder.pending(), 0);
        QCOMPARE(window->openJobName(), QString("beta"));
        QTRY_VERIFY_WITH_TIMEOUT(window->isViewDrawn(), 20000);
        QCOMPARE(window->findChild<GraphicView *>()->board().title().toLower(), QString("top"));
    }

    void theMenuOfAJobActsOnIt()
    {
        makeWindow();
        doubleClick("beta");
        QContextMenuEvent event(QContextMenuEvent::Mouse, place("gamma"),
                                list->viewport()->mapToGlobal(place("gamma")));
        QApplication::sendEvent(list->viewport(), &event);
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        QCOMPARE(menu->actions().size(), 4);
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
        QCOMPARE(window->openJobName(), QString("gamma"));
    }

    void folderIsShownInTheFileManager()
    {
        makeWindow();
        doubleClick("beta");
        QDesktopServices::setUrlHandler("file", this, "takeUrl");
        shown.clear();
        for (QAction *action : window->findChild<JobListPanel *>()->jobActions()) {
            if (action->objectName() == "ShowJobFolder")
                action->trigger();
        }
        QDesktopServices::unsetUrlHandler("file");
        QCOMPARE(shown.toLocalFile(), folder.filePath("job/beta"));
    }

    void recentJobsAreInTheFileMenu()
    {
        makeWindow();
        doubleClick("gamma");
        doubleClick("alpha");
        doubleClick("beta");
        QVERIFY(QDir(folder.filePath("job/alpha")).removeRecursively());
        window->refreshJobs();
        auto *recent = window->findChild<RecentJobs *>();
        QTest::keyClick(window.get(), Qt::Key_F, Qt::AltModifier);
        auto *file = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(file && file->actions().contains(recent->menuAction()));
        file->setActiveAction(recent->menuAction());
        QTest::keyClick(file, Qt::Key_Right);
        QStringList names;
        for (const QAction *action : recent->actions())
            names << action->text();
        QCOMPARE(names, (QStringList{"&1  beta", "&2  gamma"}));
        recent->actions()[1]->trigger();
        QCOMPARE(window->openJobName(), QString("gamma"));
        file->close();
    }

    void widthsAreRemembered()
    {
        makeWindow();
        list->setColumnWidth(0, 222);
        QVERIFY(window->close());
        makeWindow();
        QCOMPARE(list->columnWidth(0), 222);
    }

public:
    QUrl shown;
    Q_INVOKABLE void takeUrl(const QUrl &url) { shown = url; }
};

QTEST_MAIN(tst_JobsPane)
#include "tst_jobspane.moc"
