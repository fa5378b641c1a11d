// Every text that is shown goes through the translation, and nothing else does: names, formats, numbers.

#include "export/delegates/comboboxdelegate.h"
#include "export/delegates/rotatecomboxdelegete.h"
#include "tests/archive/archivebuilder.h"
#include "tests/export/opendialog.h"
#include "tests/support/everytext.h"
#include "tests/support/fileprocessaccess.h"
#include "tests/support/modalresponder.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QAction>
#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QProgressDialog>
#include <QToolBar>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

using recording_host::layer;
using recording_host::state;

namespace {

// What can be read on `widget` itself.
QStringList textsOn(const QWidget *widget)
{
    QStringList texts{widget->toolTip(), widget->whatsThis(), widget->statusTip()};
    if (widget->isWindow())
        texts << widget->windowTitle();
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        texts << label->text();
    if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
        texts << button->text();
    if (const auto *edit = qobject_cast<const QLineEdit *>(widget))
        texts << edit->text() << edit->placeholderText();
    if (const auto *box = qobject_cast<const QComboBox *>(widget)) {
        for (int i = 0; i < box->count(); ++i)
            texts << box->itemText(i);
    }
    if (const auto *table = qobject_cast<const QTableWidget *>(widget)) {
        for (int column = 0; column < table->columnCount(); ++column) {
            texts << table->horizontalHeaderItem(column)->text();
            for (int row = 0; row < table->rowCount(); ++row)
                texts << (table->item(row, column) ? table->item(row, column)->text() : QString());
        }
    }
    return texts;
}

// All different texts on `window` and what is in it, sorted.
QStringList textsIn(const QWidget *window)
{
    QStringList texts = textsOn(window);
    for (const QWidget *widget : window->findChildren<QWidget *>())
        texts << textsOn(widget);
    texts.removeAll(QString());
    texts.removeDuplicates();
    texts.sort();
    return texts;
}

QStringList sorted(QStringList texts)
{
    texts.sort();
    return texts;
}

} // namespace

class tst_Translations : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void actions();
    void exportDialog();
    void folderDialog();
    void pathWarning();
    void tableMenu();
    void progressDialog();
    void afterAnExport();
    void theTranslatedYesIsAYes();
    void delegates();
    void importDialog();
    void overwriteQuestion();
    void importError();
    void messagesAreNotTranslated();

private:
    std::unique_ptr<EveryText> m_language;
    std::unique_ptr<TemporaryWorkingFolder> m_folder;
};

void tst_Translations::init()
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    recording_host::reset();
    m_folder = std::make_unique<TemporaryWorkingFolder>();
    m_language = std::make_unique<EveryText>();
}

void tst_Translations::cleanup()
{
    m_language.reset();
    m_folder.reset();
}

void tst_Translations::actions()
{
    FileProcess plugin;
    QToolBar bar;
    plugin.CreateFileProTools();
    plugin.GetFileProActions(&bar);
    QCOMPARE(bar.actions().at(0)->text(), QString("<import>"));
    QCOMPARE(bar.actions().at(1)->text(), QString("<export>"));
    const std::unique_ptr<QAction> importAction(plugin.InitImportTool(nullptr));
    QCOMPARE(importAction->text(), QString("<import>"));
    const std::unique_ptr<QAction> exportAction(plugin.InitExportTool());
    QCOMPARE(exportAction->text(), QString("<export>"));
}

void tst_Translations::exportDialog()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "Top")});
    const QStringList translated{
        "<Path>",   "<Second Dir:>", "<OX>",      "<Format:>", "<Reference>", "<X>",     "<Y>",
        "<0>",      "<um>",          "<OK>",      "<cancel>",  "<Export>",    "<layer>", "<rotate>",
        "<Mirror>", "<X Scale>",     "<Y Scale>", "<Negate>",  "<Time>",      "<No>",    "<Yes>"};
    const QStringList asTheyAre{
        ".gds", ".gerber", "0", "90", "180", "270", "1", "Top", dialog.edit("PathLineEdit")->text()};
    QCOMPARE(textsIn(dialog.get()), sorted(translated + asTheyAre));
}

void tst_Translations::folderDialog()
{
    OpenDialog dialog;
    ModalResponder user;
    QString title;
    QStringList filters;
    user.expect([&](QWidget *window) {
        title = window->windowTitle();
        filters = qobject_cast<QFileDialog *>(window)->nameFilters();
        qobject_cast<QDialog *>(window)->reject();
    });
    dialog.button("PathButton")->click();
    QCOMPARE(title, QString("<Export>"));
    QCOMPARE(filters, QStringList("all(*.*)"));
}

void tst_Translations::pathWarning()
{
    OpenDialog dialog;
    QLineEdit *path = dialog.edit("PathLineEdit");
    path->setFocus();
    path->setText("no such folder");
    ModalResponder user;
    user.expectMessageBox(QMessageBox::Ok);
    QTest::keyClick(path, Qt::Key_Return);
    QCOMPARE(user.boxes.size(), size_t(1));
    QCOMPARE(user.boxes[0].title, QString("<Warning>"));
    QCOMPARE(user.boxes[0].text, QString("<The path you selected is not exist>"));
}

void tst_Translations::tableMenu()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    ModalResponder user;
    QStringList entries;
    user.expect([&entries](QWidget *window) {
        for (const QAction *action : window->actions())
            entries << action->text();
        window->close();
    });
    dialog->on_PNListTable_customContextMenuRequest(QPoint());
    QCOMPARE(entries, QStringList({"<Clear layer(Make the selected item unselected)>", "<Select all layer>",
                                   "<Board Layer>", "<Set parameters to selected layer>"}));
}

void tst_Translations::progressDialog()
{
    struct ShowWatch : QObject
    {
        bool eventFilter(QObject *object, QEvent *event) override
        {
            const auto *progress = qobject_cast<QProgressDialog *>(object);
            if (progress && event->type() == QEvent::Show)
                shown << progress->windowTitle() + " " + progress->labelText();
            if (shown.size() > 1)
                isShownAgain = true;
            return false;
        }
        QStringList shown;
        std::atomic<bool> isShownAgain{false};
    };
    OpenDialog dialog({layer("BOARD", "SIGNAL", "Top")});
    dialog.setChecked({0});
    ShowWatch watch;
    qApp->installEventFilter(&watch);
    QStringList asked;
    m_language->onText = [&asked](const QString &text) { asked << text; };
    // The dialog is shown again for the layer with its first value; a layer that is written before anybody
    // looks at the value has none.
    state().onExport = [&watch](const recording_host::ExportCall &call) {
        call.progress->set_value(1.0);
        for (int i = 0; i < 500 && !watch.isShownAgain; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return true;
    };
    dialog.button("OKButton")->click();
    QVERIFY(!watch.shown.isEmpty());
    QCOMPARE(watch.shown.first(), QString("<Please wait> <Processing>"));
    QCOMPARE(watch.shown.last(), QString("<Please wait> <layer :>top"));
    QVERIFY(asked.contains("Cancel"));
}

void tst_Translations::afterAnExport()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "Top")});
    const QStringList before = textsIn(dialog.get());
    dialog.setChecked({0});
    dialog.button("OKButton")->click();
    QStringList added = textsIn(dialog.get());
    for (const QString &text : before)
        added.removeAll(text);
    added.removeAll("true");   // the check column's value, which is drawn as a box
    QCOMPARE(added.size(), 1); // the Time cell
    QVERIFY2(QRegExp("[0-9]+s").exactMatch(added[0]), qPrintable(added[0]));
}

void tst_Translations::theTranslatedYesIsAYes()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "Top")});
    dialog.setChecked({0});
    dialog.combo(0, layer_column::Mirror)->setCurrentText("<Yes>");
    dialog.combo(0, layer_column::Negate)->setCurrentText("<Yes>");
    dialog.button("OKButton")->click();
    QCOMPARE(state().exports.size(), size_t(1));
    QVERIFY(state().exports[0].isMirror);
    QVERIFY(state().exports[0].isNegative);
}

void tst_Translations::delegates()
{
    const auto entries = [](const QAbstractItemDelegate &delegate) {
        QWidget parent;
        const auto *box =
            qobject_cast<QComboBox *>(delegate.createEditor(&parent, QStyleOptionViewItem(), QModelIndex()));
        QStringList texts;
        for (int i = 0; i < box->count(); ++i)
            texts << box->itemText(i);
        return texts;
    };
    QCOMPARE(entries(ComboBoxDelegate()), QStringList({"<Yes>", "<No>"}));
    QCOMPARE(entries(RotateComboxDelegete()), QStringList({"<0>", "<90>", "<180>", "<270>"}));
}

void tst_Translations::importDialog()
{
    FileProcess plugin;
    ModalResponder user;
    QString title;
    QStringList filters;
    user.expect([&](QWidget *window) {
        title = window->windowTitle();
        filters = qobject_cast<QFileDialog *>(window)->nameFilters();
        qobject_cast<QDialog *>(window)->reject();
    });
    plugin.on_ImportACT_clicked();
    QCOMPARE(title, QString("<Import>"));
    QCOMPARE(filters, QStringList({"<ODB++>(*.tgz)", "gds file(*.gds)", "gerber274x(*.gerber)"}));
}

void tst_Translations::overwriteQuestion()
{
    QVERIFY(m_folder->write("mail/ABC.tgz", gzip(TarBuilder().folder("ABC/").bytes())));
    QVERIFY(m_folder->write("job/ABC/matrix/matrix", "old"));
    FileProcess plugin;
    ModalResponder user;
    user.expectMessageBox(QMessageBox::No);
    QString name = "ABC";
    QVERIFY(FileProcessAccess::copyDirectory(plugin, m_folder->filePath("mail/ABC.tgz"), name));
    QCOMPARE(user.boxes.size(), size_t(1));
    QCOMPARE(user.boxes[0].title, QString("<Information>"));
    QCOMPARE(user.boxes[0].text,
             QString("<The job with the same name already exists, do you want to overwrite it?>"));
}

void tst_Translations::importError()
{
    QVERIFY(m_folder->write("mail/ABC.tgz", "this is no gzip file"));
    FileProcess plugin;
    ModalResponder user;
    user.expectMessageBox(QMessageBox::Yes);
    QString name = "ABC";
    QVERIFY(!FileProcessAccess::copyDirectory(plugin, m_folder->filePath("mail/ABC.tgz"), name));
    QCOMPARE(user.boxes.size(), size_t(1));
    QCOMPARE(user.boxes[0].title, QString("<Error>"));
    QCOMPARE(user.boxes[0].text, QString("<The job unzipped failed, please check your files!>"));
}

void tst_Translations::messagesAreNotTranslated()
{
    FileProcess plugin;
    QStringList sent;
    connect(&plugin, &FileProcess::sendMsgToManager, [&sent](const PluginMetaData &data) {
        sent << data.fromPlugin << data.toPlugin << data.params.keys();
    });
    plugin.on_ExportACT_clicked();
    delete plugin.InitImportTool(nullptr);
    FileProcessAccess::sendPath(plugin);
    OpenDialog dialog({layer("BOARD", "SIGNAL", "Top")});
    connect(dialog.get(), &Export::on_send_exprot_xml_to_fileprocess, [&sent](const PluginMetaData &data) {
        sent << data.fromPlugin << data.toPlugin << data.params.keys();
    });
    dialog.setChecked({0});
    dialog.button("OKButton")->click();
    QVERIFY(sent.contains("File_Process") && sent.contains("path"));
    QCOMPARE(sent.filter("<"), QStringList());
    QCOMPARE(state().exports.size(), size_t(1));
    QVERIFY(QString::fromStdString(state().exports[0].fileName).endsWith("/<ox>/job1\\top.gds"));
}

QTEST_MAIN(tst_Translations)
#include "tst_translations.moc"
