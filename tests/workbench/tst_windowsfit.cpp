// Nothing that is to be read or pressed is cut off: every window, in every language, on an ordinary screen
// and on one of 1024 by 600; the main window also on half of 1600 by 960, as at scale 2.
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/hostsettings.h"
#include "workbench/languages.h"
#include "workbench/layerpanel.h"
#include "workbench/logcollector.h"
#include "workbench/mainwindow.h"
#include "workbench/messagebar.h"
#include "workbench/settingsdialog.h"
#include "workbench/shortcutsdialog.h"
#include "workbench/view/boardview.h"
#include "workbench/view/printdialog.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QDockWidget>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPrinter>
#include <QScrollBar>
#include <QTabBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QtTest>

namespace {

const QSize ordinary(1240, 780), small(1024, 600), tiny(800, 480);
const int titleBar = 30;

QString plain(QString text)
{
    return text.remove('&');
}

int widthOf(const QWidget *widget, const QString &text)
{
    return widget->fontMetrics().boundingRect(text).width();
}

// Where there is so little room, hints and what an empty pane says may be longer than their places.
bool isTiny(const QWidget *widget)
{
    return widget->window()->height() < tiny.height();
}

bool isCut(const QLabel *label)
{
    if (label->text().isEmpty())
        return false;
    if (label->wordWrap() && label->alignment() == Qt::AlignCenter && isTiny(label))
        return false;
    if (label->wordWrap())
        return label->height() < label->heightForWidth(label->width());
    return label->width() < label->minimumSizeHint().width();
}

// What somebody has typed may be of any length.
bool isCut(const QLineEdit *line)
{
    return line->text().isEmpty() && !isTiny(line) && line->width() < widthOf(line, line->placeholderText());
}

// Where there are too many tabs, arrows appear at the bar's end.
bool isCut(const QTabBar *bar)
{
    for (const QToolButton *arrow : bar->findChildren<QToolButton *>()) {
        if (arrow->isVisible())
            return true;
    }
    return false;
}

bool isCut(const QWidget *widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        return isCut(label);
    if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
        return button->width() < widthOf(button, plain(button->text()));
    if (const auto *box = qobject_cast<const QComboBox *>(widget))
        return box->width() < widthOf(box, box->currentText());
    if (const auto *line = qobject_cast<const QLineEdit *>(widget))
        return isCut(line);
    if (const auto *bar = qobject_cast<const QTabBar *>(widget))
        return isCut(bar);
    return false;
}

QString describe(const QWidget *widget)
{
    QString text = widget->property("text").toString();
    if (text.isEmpty())
        text = widget->property("placeholderText").toString();
    return QString("%1 %2 \"%3\"").arg(widget->metaObject()->className(), widget->objectName(), text);
}

// A pane behind the one whose tab is chosen.
bool isCovered(const QWidget *widget)
{
    for (; widget; widget = widget->parentWidget()) {
        if (qobject_cast<const QDockWidget *>(widget))
            return widget->visibleRegion().isEmpty();
    }
    return false;
}

// What of `window` is cut off or lies outside of it.
QStringList cutOff(const QWidget &window)
{
    QStringList found;
    for (const QWidget *widget : window.findChildren<QWidget *>()) {
        if (!widget->isVisible() || widget->window() != &window || isCovered(widget))
            continue;
        const bool isPressed = qobject_cast<const QAbstractButton *>(widget) != nullptr;
        const QRect place(widget->mapTo(&window, QPoint(0, 0)), widget->size());
        if (isCut(widget) || (isPressed && !window.rect().contains(place)))
            found << describe(widget);
    }
    return found;
}

// Titles of columns that there is no room for.
QStringList cutHeaders(const QWidget &window)
{
    QStringList found;
    for (const QHeaderView *header : window.findChildren<QHeaderView *>()) {
        for (int section = 0; header->isVisible() && section < header->count(); ++section) {
            const QString title = header->model()->headerData(section, Qt::Horizontal).toString();
            if (header->sectionSize(section) < widthOf(header, title))
                found << title;
        }
    }
    return found;
}

QRect screenOf(const QSize &size)
{
    return {QPoint(0, 0), size - QSize(0, titleBar)};
}

} // namespace

class tst_WindowsFit : public QObject
{
    Q_OBJECT

private:
    TemporaryWorkingFolder folder;
    LogCollector log;
    Languages languages;

    static void addLanguages()
    {
        QTest::addColumn<QString>("language");
        for (const Languages::Language &language : Languages::all())
            QTest::newRow(qPrintable(language.name)) << language.name;
    }
    // As large as it wants to be, on a screen of that size.
    static void place(QWidget &window, const QSize &screen)
    {
        window.show();
        window.resize(window.size().boundedTo(screenOf(screen).size()));
        QCoreApplication::processEvents();
    }
    static void checkDialog(QWidget &dialog)
    {
        for (const QSize &screen : {ordinary, small}) {
            place(dialog, screen);
            QVERIFY2(screenOf(screen).contains(dialog.rect()), qPrintable(dialog.windowTitle()));
            QCOMPARE(cutOff(dialog).join('\n'), QString());
            for (const QAbstractScrollArea *area : dialog.findChildren<QAbstractScrollArea *>())
                QCOMPARE(area->horizontalScrollBar()->maximum(), 0);
        }
    }

private slots:
    void initTestCase()
    {
        QFont font = QApplication::font();
        font.setPointSize(9); // as systems have it
        QApplication::setFont(font);
    }
    void cleanup()
    {
        languages.choose("en");
        QLocale::setDefault(QLocale::c());
    }

    void panesOfTheMainWindow_data() { addLanguages(); }
    void panesOfTheMainWindow()
    {
        QFETCH(QString, language);
        languages.choose(language);
        MainWindow window(log);
        window.show();
        window.findChild<MessageBar *>()->show(MessageBar::Kind::Failure, "1 of 2 layers were written", "/",
                                               true);
        for (const QSize &size : {ordinary, small, tiny}) {
            window.resize(screenOf(size).size());
            QCOMPARE(window.size(), screenOf(size).size());
            for (QDockWidget *dock : window.findChildren<QDockWidget *>()) {
                dock->show();
                dock->raise();
                QCoreApplication::processEvents();
                QVERIFY2(cutOff(window).isEmpty(), qPrintable(QString("%1 by %2: %3")
                                                                  .arg(window.width())
                                                                  .arg(window.height())
                                                                  .arg(cutOff(window).join('\n'))));
                if (size == ordinary)
                    QCOMPARE(cutHeaders(window).join('\n'), QString());
            }
        }
    }

    void settings_data() { addLanguages(); }
    void settings()
    {
        QFETCH(QString, language);
        languages.choose(language);
        HostSettings values;
        values.jobFolder = folder.filePath("a b");
        values.resize = 1234.567;
        SettingsDialog dialog(values);
        checkDialog(dialog);
    }

    void keyboard_data() { addLanguages(); }
    void keyboard()
    {
        QFETCH(QString, language);
        languages.choose(language);
        MainWindow window(log);
        window.addPlugins();
        ShortcutsDialog dialog(window);
        checkDialog(dialog);
        QTreeWidgetItemIterator row(dialog.findChild<QTreeWidget *>());
        for (; *row; ++row) {
            const QString command = (*row)->text(0);
            QVERIFY2(!command.isEmpty() && !command.contains('&') && !command.contains("..."),
                     qPrintable(command));
            QVERIFY2(!QRegularExpression("\\([A-Z]\\)").match(command).hasMatch(), qPrintable(command));
        }
    }

    void print_data() { addLanguages(); }
    void print()
    {
        QFETCH(QString, language);
        languages.choose(language);
        BoardView view;
        QPrinter printer;
        printer.setOutputFormat(QPrinter::PdfFormat);
        PrintDialog dialog(view, printer, "a_job: DRILL, TOP, GND, POWER and 1 more");
        checkDialog(dialog);
    }
};

QTEST_MAIN(tst_WindowsFit)
#include "tst_windowsfit.moc"
