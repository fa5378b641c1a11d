// The program in another language, at once: what is on the screen, and what comes.
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/languages.h"
#include "workbench/layerpanel.h"
#include "workbench/logcollector.h"
#include "workbench/mainwindow.h"
#include "workbench/view/lengthunit.h"
#include "workbench/windowmemory.h"

#include <QAction>
#include <QDockWidget>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTableWidget>
#include <QTreeWidget>
#include <QtTest>

class tst_Languages : public QObject
{
    Q_OBJECT

private:
    TemporaryWorkingFolder folder;

private slots:
    void cleanup() { QLocale::setDefault(QLocale::c()); }

    void everyLanguageHasItsTexts()
    {
        for (const Languages::Language &language : Languages::all()) {
            if (language.name != "en")
                QVERIFY2(QFile::exists(":/translations/workbench_" + language.name + ".qm"),
                         qPrintable(language.name));
        }
    }

    void theMenuChangesTheOpenWindowAtOnce()
    {
        LogCollector log;
        WindowMemory memory(folder.filePath("memory.ini"));
        Languages languages;
        languages.choose("en");
        MainWindow window(log);
        window.remember(memory);
        window.offerLanguages(languages);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        auto *jobs = window.findChild<QDockWidget *>("JobsDock");
        auto *list = window.findChild<QTreeWidget *>("Jobs");
        QCOMPARE(jobs->windowTitle(), QString("Jobs"));
        QTRY_COMPARE(window.windowTitle(), QString("CAM Workbench"));

        auto *menu = window.findChild<QMenu *>("LanguageMenu");
        menu->popup(QPoint(0, 0));
        for (QAction *action : menu->actions()) {
            if (action->text() == "Deutsch")
                menu->setActiveAction(action);
        }
        QTest::keyClick(menu, Qt::Key_Return);
        QCOMPARE(languages.current(), QString("de"));
        QCOMPARE(memory.language(), QString("de"));
        QCOMPARE(jobs->windowTitle(), QString::fromUtf8("Aufträge"));
        QCOMPARE(list->headerItem()->text(2), QString::fromUtf8("Größe"));
        QCOMPARE(window.findChild<QAction *>("Settings")->text(), QString("&Einstellungen ..."));
        QTRY_COMPARE(menu->title(), QString("&Sprache (Language)"));
        QCOMPARE(QLocale().language(), QLocale::German);
        // Those of the plug-in are the host's to translate, and Qt has its own.
        QCOMPARE(QCoreApplication::translate("FileProcess", "import"), QString("Import"));
        QCOMPARE(QCoreApplication::translate("QPlatformTheme", "Cancel"), QString("Abbrechen"));

        languages.choose("zh_CN");
        QCOMPARE(jobs->windowTitle(), QString::fromUtf8("料号"));
        languages.choose("en");
        QCOMPARE(jobs->windowTitle(), QString("Jobs"));
        QCOMPARE(window.findChild<QAction *>("Settings")->text(), QString("&Settings ..."));
        QVERIFY(window.close());
    }

    void wordsOfTheMatrixAreTranslated()
    {
        Languages languages;
        languages.choose("en");
        LayerPanel panel;
        ORVEX::API::layer_info mask, plane, other;
        mask.name = "mask";
        mask.context = plane.context = "BOARD";
        mask.type = "SOLDER_MASK";
        plane.name = "plane";
        plane.type = "POWER_GROUND";
        plane.polarity = "NEGATIVE";
        other.name = "other";
        other.context = "MISC";
        other.type = "NEW_KIND";
        panel.showMatrix("job", {"pcb"}, {mask, plane, other});
        panel.show();
        const auto types = [&panel] {
            const auto *table = panel.findChild<QTableWidget *>();
            QStringList words;
            for (int row = 0; row < table->rowCount(); ++row)
                words << table->item(row, 1)->text();
            return words;
        };
        QCOMPARE(types(), (QStringList{"solder mask", "power ground, negative", "new kind, misc"}));
        languages.choose("de");
        QTRY_COMPARE(types(), (QStringList{QString::fromUtf8("Lötstoppmaske"), "Versorgung, negativ",
                                           "new kind, sonstiges"}));
        languages.choose("zh_CN");
        QTRY_COMPARE(types().first(), QString::fromUtf8("阻焊"));
        languages.choose("en");
        QTRY_COMPARE(types().first(), QString("solder mask"));
    }

    void numbersHaveTheMarksOfTheLanguage()
    {
        Languages languages;
        languages.choose("de");
        QCOMPARE(lengthText(1234.5678e6, LengthUnit::Millimetre), QString("1234,568 mm"));
        QCOMPARE(lengthText(-0.0001e6, LengthUnit::Millimetre), QString("0,000 mm"));
        QCOMPARE(placeText({25.4e6, -12.7e6}, LengthUnit::Inch), QString("x 1,00000  y -0,50000 in"));
        languages.choose("en");
        QCOMPARE(lengthText(1234.5678e6, LengthUnit::Millimetre), QString("1234.568 mm"));
    }

    void whatTheUserHasTypedStays()
    {
        Languages languages;
        languages.choose("en");
        QWidget window;
        QLineEdit typed("Cancel", &window);
        QPushButton button(QCoreApplication::translate("QPlatformTheme", "Cancel"), &window);
        typed.setPlaceholderText(QCoreApplication::translate("JobListPanel", "Filter jobs"));
        languages.choose("de");
        QCOMPARE(typed.text(), QString("Cancel"));
        QCOMPARE(button.text(), QString("Abbrechen"));
        QVERIFY(typed.placeholderText() != "Filter jobs");
    }

    void anUnknownLanguageIsTheSystems()
    {
        Languages languages;
        languages.choose("tlh");
        QCOMPARE(languages.current(), Languages::ofSystem());
    }
};

QTEST_MAIN(tst_Languages)
#include "tst_languages.moc"
