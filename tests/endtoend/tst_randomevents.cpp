// Random events over all windows: keys, clicks, wheel, drags, drops, sizes, menus and dialogs. Whatever
// comes, nothing crashes, Qt has nothing to warn of, and the number of objects does not grow.
//
// RANDOM_EVENTS_SECONDS says how long (a few seconds otherwise), RANDOM_EVENTS_SEED repeats a run, and
// RANDOM_EVENTS_LOG names a file that gets a line for each event, for a run that never ends.
#include "pluginmanger/pluginhost.h"
#include "tests/export/wheel.h"
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/hostsettings.h"
#include "workbench/languages.h"
#include "workbench/logcollector.h"
#include "workbench/mainwindow.h"
#include "workbench/windowmemory.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDeadlineTimer>
#include <QDesktopServices>
#include <QDialog>
#include <QDirIterator>
#include <QMenu>
#include <QMimeData>
#include <QSizeGrip>
#include <QStandardPaths>
#include <QtTest>

#include <numeric>
#include <random>

namespace {

using Counts = QMap<QByteArray, int>; // of objects, by their class

void count(const QObject *object, Counts &counts)
{
    ++counts[object->metaObject()->className()];
    for (const QObject *child : object->children())
        count(child, counts);
}

int total(const Counts &counts)
{
    return std::accumulate(counts.cbegin(), counts.cend(), 0);
}

QString growth(const Counts &before, const Counts &after)
{
    QStringList lines{QString("%1 objects became %2:").arg(total(before)).arg(total(after))};
    for (auto it = after.cbegin(); it != after.cend(); ++it) {
        if (it.value() > before.value(it.key()) + 10)
            lines << QString("%1 %2, before %3")
                         .arg(QString(it.key()))
                         .arg(it.value())
                         .arg(before.value(it.key()));
    }
    return lines.join("\n");
}

} // namespace

class tst_RandomEvents : public QObject
{
    Q_OBJECT

private:
    TemporaryWorkingFolder folder;
    std::mt19937 m_random;
    QStringList m_last; // what was done, for whoever looks for a failure
    QFile m_log;        // closed unless it is asked for
    int m_done = 0;
    bool m_isRunning = false;
    QDeadlineTimer m_end; // of the run

    int below(int most) { return most <= 0 ? 0 : int(m_random() % unsigned(most)); }
    bool oneIn(int number) { return below(number) == 0; }

    void note(const QString &what)
    {
        ++m_done;
        m_last << what;
        if (m_log.isOpen()) {
            m_log.write(what.toUtf8() + '\n');
            m_log.flush();
        }
        if (m_last.size() > 30)
            m_last.removeFirst();
    }

    // The window that a person could use now.
    QWidget *activeWindow(MainWindow &window)
    {
        if (QWidget *popup = QApplication::activePopupWidget())
            return popup;
        if (QWidget *modal = QApplication::activeModalWidget())
            return modal;
        QVector<QWidget *> windows{&window, &window};
        for (QWidget *open : QApplication::topLevelWidgets()) {
            if (open->isVisible() && open->windowType() != Qt::ToolTip)
                windows << open;
        }
        return windows[below(windows.size())];
    }

    QWidget *someWidget(QWidget *window)
    {
        QVector<QWidget *> widgets{window};
        for (QWidget *widget : window->findChildren<QWidget *>()) {
            if (widget->isVisible() && widget->isEnabled() && widget->window() == window)
                widgets << widget;
        }
        return widgets[below(widgets.size())];
    }

    static bool leavesTheProgram(const QWidget *widget)
    {
        // On Windows a press on the grip is followed by a loop of the system's own, until the real mouse lets
        // go.
        if (qobject_cast<const QSizeGrip *>(widget))
            return true;
        // Not "Quit", and not the way into the system's other folders.
        const auto *button = qobject_cast<const QAbstractButton *>(widget);
        return button && (button->text() == "..." || button->objectName() == "PathButton");
    }

    void key(QWidget *window)
    {
        static const int keys[] = {
            Qt::Key_Tab,   Qt::Key_Return, Qt::Key_Escape, Qt::Key_Up,     Qt::Key_Down,      Qt::Key_Left,
            Qt::Key_Right, Qt::Key_Space,  Qt::Key_Home,   Qt::Key_End,    Qt::Key_PageDown,  Qt::Key_F,
            Qt::Key_E,     Qt::Key_M,      Qt::Key_1,      Qt::Key_Period, Qt::Key_Backspace, Qt::Key_F1,
            Qt::Key_F5,    Qt::Key_Plus,   Qt::Key_Minus};
        QWidget *to = window->focusWidget() ? window->focusWidget() : window;
        const int code = keys[below(int(sizeof keys / sizeof *keys))];
        const QByteArray name = to->metaObject()->className();
        note(QString("key %1 to %2").arg(code, 0, 16).arg(QString(name)));
        if (leavesTheProgram(to))
            return;
        QTest::keyClick(to, Qt::Key(code), oneIn(8) ? Qt::ShiftModifier : Qt::NoModifier);
    }

    void click(QWidget *window)
    {
        QWidget *to = someWidget(window);
        if (leavesTheProgram(to))
            return;
        const QPoint place(below(to->width()), below(to->height()));
        note(QString("click on %1 %2").arg(QString(to->metaObject()->className()), to->objectName()));
        if (oneIn(6)) {
            QTest::mouseDClick(to, Qt::LeftButton, Qt::NoModifier, place);
        } else if (oneIn(8)) {
            QContextMenuEvent menu(QContextMenuEvent::Mouse, place, to->mapToGlobal(place));
            QApplication::sendEvent(to, &menu);
        } else {
            QTest::mouseClick(to, oneIn(10) ? Qt::MiddleButton : Qt::LeftButton, Qt::NoModifier, place);
        }
    }

    void drag(QWidget *window)
    {
        QWidget *to = someWidget(window);
        if (leavesTheProgram(to))
            return;
        note(QString("drag on %1").arg(QString(to->metaObject()->className())));
        QPoint place(below(to->width()), below(to->height()));
        const QPointer<QWidget> alive(to);
        QTest::mousePress(to, Qt::LeftButton, Qt::NoModifier, place);
        for (int i = 0; i < 3 && alive; ++i) {
            place += QPoint(below(80) - 40, below(80) - 40);
            QMouseEvent move(QEvent::MouseMove, place, to->mapToGlobal(place), Qt::NoButton, Qt::LeftButton,
                             Qt::NoModifier);
            QApplication::sendEvent(to, &move);
        }
        if (alive)
            QTest::mouseRelease(to, Qt::LeftButton, Qt::NoModifier, place);
    }

    void wheel(QWidget *window)
    {
        QWidget *to = someWidget(window);
        note(QString("wheel on %1").arg(QString(to->metaObject()->className())));
        turnWheel(to, QPoint(below(to->width()), below(to->height())), oneIn(2) ? 1 : -1);
    }

    void command(MainWindow &window)
    {
        if (QApplication::activeModalWidget() || QApplication::activePopupWidget())
            return;
        QVector<QAction *> actions;
        for (QAction *action : window.findChildren<QAction *>()) {
            const bool quits = action->shortcut() == QKeySequence(Qt::CTRL + Qt::Key_Q);
            const auto *owner = qobject_cast<const QWidget *>(action->parent());
            const bool isOfClosedWindow = owner && owner->window()->isHidden() && !owner->inherits("QMenu");
            if (action->isEnabled() && !action->menu() && !action->isSeparator() && !quits &&
                !isOfClosedWindow)
                actions << action;
        }
        QAction *action = actions[below(actions.size())];
        note("command " + action->text());
        // From the event loop: a dialog that it opens gets its share of events.
        const QPointer<QAction> alive(action);
        QTimer::singleShot(0, &window, [alive] {
            if (alive)
                alive->trigger();
        });
    }

    void drop(MainWindow &window)
    {
        QMimeData data;
        QList<QUrl> urls;
        for (const char *name :
             {"nothing.tgz", "picture.png", "mask.gerber", "broken.gds", "holes.drl", "large.gbr"}) {
            if (oneIn(3))
                urls << QUrl::fromLocalFile(folder.filePath(name));
        }
        data.setUrls(urls);
        note("drop");
        const QPoint place(below(window.width()), below(window.height()));
        QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &enter);
        if (!enter.isAccepted())
            return;
        QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &drop);
    }

    // The sample job under both names, where it is not there (any more): a person may remove and rename jobs,
    // and without any there is little to do.
    bool makeJobs()
    {
        for (const char *name : {"job/beacon", "job/another"}) {
            if (QFileInfo::exists(folder.filePath(name)))
                continue;
            QDirIterator files(SAMPLE_JOBS "/beacon", QDir::Files, QDirIterator::Subdirectories);
            while (files.hasNext()) {
                const QString target = folder.filePath(
                    name + ("/" + QDir(SAMPLE_JOBS "/beacon").relativeFilePath(files.next())));
                if (!QDir().mkpath(QFileInfo(target).path()) || !QFile::copy(files.filePath(), target))
                    return false;
            }
        }
        return true;
    }

    void act(MainWindow &window)
    {
        if (m_done % 500 == 0)
            makeJobs();
        QWidget *active = activeWindow(window);
        switch (below(16)) {
        case 0:
        case 1:
        case 2:
        case 3:
            return key(active);
        case 4:
        case 5:
        case 6:
        case 7:
        case 8:
            return click(active);
        case 9:
            return drag(active);
        case 10:
        case 11:
            return wheel(active);
        case 12:
            return command(window);
        case 13:
            note("size");
            window.resize(600 + below(900), 400 + below(600));
            return;
        case 14:
            return oneIn(4) ? drop(window) : key(active);
        default:
            // What stays open is closed at times, or nothing else would ever be seen.
            if (auto *dialog = qobject_cast<QDialog *>(active)) {
                note("reject " + dialog->windowTitle());
                dialog->reject();
            } else if (active != &window) {
                note("close");
                active->close();
            }
        }
    }

    // What is open above all others. Returns whether there was anything.
    static bool closeOne()
    {
        QWidget *open = QApplication::activePopupWidget();
        if (!open)
            open = QApplication::activeModalWidget();
        if (open)
            open->close();
        return open;
    }

    // The next event is due before this one is made: it may open a dialog, whose own loop goes on with it. A
    // timer would not fire again within its own slot. When the time is over only closing is left, which leads
    // out of all such loops.
    void goOn(MainWindow &window)
    {
        QTimer::singleShot(5, &window, [this, &window] {
            if (!m_isRunning)
                return;
            goOn(window);
            if (m_end.hasExpired())
                closeOne();
            else
                act(window);
        });
    }

    void run(MainWindow &window, int milliseconds)
    {
        m_isRunning = true;
        m_end.setRemainingTime(milliseconds);
        goOn(window);
        QTest::qWait(milliseconds);
        m_isRunning = false;
        for (int i = 0; i < 100 && closeOne(); ++i)
            QTest::qWait(20);
    }

private slots:
    void initTestCase()
    {
        QStandardPaths::setTestModeEnabled(true);
        qputenv("XDG_DATA_HOME", folder.filePath("data").toLocal8Bit()); // the wastebasket
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        // Windows' own drag and drop runs until the real mouse lets go, which nobody holds.
        if (QGuiApplication::platformName() == "windows")
            QApplication::setStartDragDistance(1000000);
        QDesktopServices::setUrlHandler("file", this, "takeUrl");
        QVERIFY(makeJobs());
        QVERIFY(folder.write("nothing.tgz", "no archive") && folder.write("broken.gds", "no stream") &&
                folder.write("mask.gerber", "%FSLAX46Y46*%\n%MOMM*%\n%ADD10C,1*%\nD10*\nX0Y0D03*\nM02*\n") &&
                folder.write("holes.drl", "M48\nMETRIC,TZ\nT1C1.0\n%\nT1\nX1000Y2000\nM30\n"));
        QByteArray large = "%FSLAX46Y46*%\n%MOMM*%\n%ADD10C,1*%\nD10*\n"; // is read for a while
        for (int i = 0; i < 100000; ++i)
            large +=
                "X" + QByteArray::number(i % 400) + "000000Y" + QByteArray::number(i / 400) + "000000D03*\n";
        QVERIFY(folder.write("large.gbr", large + "M02*\n"));
        HostSettings settings;
        settings.jobFolder = folder.filePath("job");
        settings.outputFolder = folder.filePath("export");
        settings.exportDatabase = folder.filePath("exports.sqlite");
        QVERIFY(hostsettings::write(settings));
    }
    void cleanupTestCase()
    {
        PluginHost::instance().destroyPlugins();
        QDesktopServices::unsetUrlHandler("file");
    }

    void nothingCrashesWarnsOrGrows()
    {
        const unsigned seed = qEnvironmentVariableIsSet("RANDOM_EVENTS_SEED")
                                  ? unsigned(qEnvironmentVariableIntValue("RANDOM_EVENTS_SEED"))
                                  : 20261122u;
        const int asked = qEnvironmentVariableIntValue("RANDOM_EVENTS_SECONDS");
        const int milliseconds = 1000 * (asked > 0 ? asked : 6);
        m_random.seed(seed);
        m_log.setFileName(QFile::decodeName(qgetenv("RANDOM_EVENTS_LOG")));
        if (!m_log.fileName().isEmpty())
            QVERIFY(m_log.open(QIODevice::WriteOnly));

        QStringList warnings;
        Counts before, after;
        act(milliseconds, warnings, before, after);
        qInfo("%d events by the seed %u; %s", m_done, seed, qPrintable(growth(before, after)));
        QVERIFY2(warnings.isEmpty(), qPrintable(warnings.join("\n") + "\nafter\n" + m_last.join("\n")));
        QVERIFY2(total(after) < 2 * total(before) + 500, qPrintable(growth(before, after)));
    }

public:
    Q_INVOKABLE void takeUrl(const QUrl & /*url*/) {} // no file manager opens

private:
    // `warnings` gets Qt's, `before` and `after` are the objects after a third of the time and in
    // the end.
    void act(int milliseconds, QStringList &warnings, Counts &before, Counts &after)
    {
        LogCollector log; // takes what Qt says
        connect(&log, &LogCollector::logged, this, [&warnings, this](const LogRecord &record) {
            // A window manager (Windows) may not grant the size that is asked for; Wine's shell lacks some of
            // the icons that a file dialog asks for, and Wine's printer cannot be opened, which is said.
            const bool isPlatforms = record.text.contains("setGeometry: Unable to set geometry") ||
                                     record.text.startsWith("QPixmap::fromWinHICON") ||
                                     record.text == "QPainter::begin(): Returned false";
            if (record.level >= LogRecord::Warning && record.source.isEmpty() && !isPlatforms)
                warnings << record.text + "  <- " + m_last.value(m_last.size() - 1);
        });
        WindowMemory memory(folder.filePath("memory.ini"));
        Languages languages;
        languages.choose("en");
        MainWindow window(log);
        window.keepToScreen();
        window.remember(memory);
        window.offerLanguages(languages);
        window.show();
        QCOMPARE(PluginHost::instance().loadFolder(QCoreApplication::applicationDirPath() + "/plugins"), 1);
        window.addPlugins();
        window.openJob("beacon");

        run(window, milliseconds / 3);
        count(&window, before);
        run(window, milliseconds - milliseconds / 3);
        count(&window, after);
        for (QWidget *open : QApplication::topLevelWidgets()) {
            if (open != &window && !open->parentWidget())
                open->close();
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        window.close();
    }
};

QTEST_MAIN(tst_RandomEvents)
#include "tst_randomevents.moc"
