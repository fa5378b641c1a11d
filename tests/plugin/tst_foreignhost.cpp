// The plug-in's module in a host that was compiled apart from it, by declarations of its own: what crosses
// the border, in both directions and field by field.

#include "tests/plugin/foreignhost.h"

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QLibrary>
#include <QLineEdit>
#include <QPluginLoader>
#include <QProgressDialog>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolBar>
#include <QtTest>

#include <memory>

using foreign_host::state;

namespace {

QString modulePath()
{
    const QDir folder(QCoreApplication::applicationDirPath() + "/foreignplugins");
    for (const QFileInfo &file : folder.entryInfoList(QDir::Files)) {
        if (QLibrary::isLibrary(file.fileName()))
            return file.absoluteFilePath();
    }
    return {};
}

// The open Export dialog, or null.
QWidget *findDialog()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->inherits("Export"))
            return window;
    }
    return nullptr;
}

} // namespace

class tst_ForeignHost : public QObject
{
    Q_OBJECT

public slots:
    // Connected by name, as hosts connect it.
    void take(PluginMetaData message)
    {
        m_sent.push_back(message);
        if (message.number == 10000403)
            m_reported = *static_cast<QList<std::string> *>(message.object);
    }

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase() { QDir::setCurrent(QCoreApplication::applicationDirPath()); } // out of m_folder
    void operationsAreInTheirSlots();
    void aSentMessageArrivesWhole();
    void requestsOfAnExportAreReadable();
    void theFolderOfTheJobsIsReadable();
    void theJobContextIsReadFieldByField();
    void layersAreReadFieldByField();
    void theProgressRecordIsShared();
    void theReportOfAnExportIsReadable();

private:
    QWidget *openDialog();

    QPluginLoader m_loader;
    QObject *m_object = nullptr;
    ForeignInterface *m_plugin = nullptr;
    std::vector<PluginMetaData> m_sent;
    QList<std::string> m_reported;
    QTemporaryDir m_folder;
};

void tst_ForeignHost::initTestCase()
{
    m_loader.setFileName(modulePath());
    m_object = m_loader.instance();
    QVERIFY2(m_object, qPrintable(m_loader.errorString()));
    m_plugin = static_cast<ForeignInterface *>(m_object->qt_metacast("PluginManager.FileProInterface"));
    QVERIFY(m_plugin);
    QVERIFY(connect(m_object, SIGNAL(sendMsgToManager(PluginMetaData)), this, SLOT(take(PluginMetaData))));
    QDir::setCurrent(m_folder.path()); // the settings file is looked for there
}

void tst_ForeignHost::init()
{
    m_sent.clear();
    m_reported.clear();
    state().senders.clear();
    state().messages.clear();
    state().layers.clear();
}

void tst_ForeignHost::cleanup()
{
    while (QWidget *dialog = findDialog())
        delete dialog;
}

QWidget *tst_ForeignHost::openDialog()
{
    ForeignJobContext context;
    context.step = "Pcb";
    context.folder = m_folder.path();
    context.job = "Job1";
    context.words = {"a", "b"};
    PluginMetaData message;
    message.number = 10000503;
    message.object = &context;
    m_plugin->takeMessage(message);
    if (!context.words.empty()) // they were exchanged with the dialog's
        return nullptr;
    return findDialog();
}

void tst_ForeignHost::operationsAreInTheirSlots()
{
    QToolBar bar;
    m_plugin->createTools();
    QVERIFY(bar.actions().isEmpty());
    m_plugin->fillToolBar(&bar);
    QStringList texts;
    for (const QAction *action : bar.actions())
        texts << action->text();
    QCOMPARE(texts, QStringList({"import", "export"}));

    const std::unique_ptr<QAction> importAction(m_plugin->makeImportAction(&bar));
    QCOMPARE(importAction->text(), QString("import"));
    const std::unique_ptr<QAction> exportAction(m_plugin->makeExportAction());
    QCOMPARE(exportAction->text(), QString("export"));
}

void tst_ForeignHost::aSentMessageArrivesWhole()
{
    PluginMetaData message;
    message.sender = "from";
    message.receiver = "to";
    message.number = -7;
    message.named["name"] = 8.5;
    message.object = this;
    m_plugin->sendMessage(message);
    QCOMPARE(m_sent.size(), size_t(1));
    QCOMPARE(m_sent[0].sender, QString("from"));
    QCOMPARE(m_sent[0].receiver, QString("to"));
    QCOMPARE(m_sent[0].number, -7);
    QCOMPARE(m_sent[0].named.value("name"), QVariant(8.5));
    QCOMPARE(m_sent[0].object, static_cast<void *>(this));
}

void tst_ForeignHost::requestsOfAnExportAreReadable()
{
    const std::unique_ptr<QAction> action(m_plugin->makeExportAction());
    action->trigger();
    QCOMPARE(state().messages.size(), size_t(2));
    QCOMPARE(state().messages[1].sender, QString());
    QCOMPARE(state().messages[1].receiver, QString("Graphic_View.dll"));
    QCOMPARE(state().messages[1].number, 10000402);
    QVERIFY(state().messages[1].named.isEmpty());
    QVERIFY(!state().messages[1].object);
    QCOMPARE(m_sent.size(), size_t(2));
    QCOMPARE(m_sent[1].receiver, QString("Graphic_JobList.dll"));
}

void tst_ForeignHost::theFolderOfTheJobsIsReadable()
{
    QFile settings("oxconfig.ini");
    QVERIFY(settings.open(QIODevice::WriteOnly) && settings.write("[Job_Path]\npath=jobs\n") > 0);
    settings.close();
    delete m_plugin->makeImportAction(nullptr);
    QVERIFY(settings.remove());
    QCOMPARE(m_sent.size(), size_t(1));
    QCOMPARE(m_sent[0].number, 10000404);
    QCOMPARE(m_sent[0].receiver, QString("ListBar_PNList"));
    QCOMPARE(*static_cast<QString *>(m_sent[0].object), QString("jobs"));
}

void tst_ForeignHost::theJobContextIsReadFieldByField()
{
    const QWidget *dialog = openDialog();
    QVERIFY(dialog);
    QCOMPARE(state().matrixJob, std::string("Job1"));
    QCOMPARE(dialog->findChild<QLineEdit *>("PathLineEdit")->text(), m_folder.path().replace('/', '\\'));
}

void tst_ForeignHost::layersAreReadFieldByField()
{
    state().layers = {{"BOARD", "SIGNAL", "top", "4", "POSITIVE", "6", "7", "8", "9", 10},
                      {"MISC", "GDS", "skipped", "4", "POSITIVE", "6", "7", "8", "9", 10},
                      {"BOARD", "SIGNAL", "bot", "POSITIVE", "5", "POSITIVE", "7", "8", "9", 10},
                      {"MISC", "SIGNAL", "notes", "4", "POSITIVE", "6", "7", "8", "9", 10}};
    const QWidget *dialog = openDialog();
    QVERIFY(dialog);
    const auto *table = dialog->findChild<QTableWidget *>("PNListTable");
    QCOMPARE(table->rowCount(), 3);
    const auto row = [table](int index) {
        const QColor colour = table->item(index, 1)->background().color();
        return table->item(index, 1)->text() + " " + colour.name();
    };
    QCOMPARE(row(0), "top " + QColor(255, 215, 0).name());
    QCOMPARE(row(1), "bot " + QColor(218, 165, 32).name()); // its fifth field is not "POSITIVE"
    QCOMPARE(row(2), "notes " + QColor(72, 209, 204).name());
}

void tst_ForeignHost::theProgressRecordIsShared()
{
    state().layers = {{"BOARD", "SIGNAL", "Top", "4", "POSITIVE", "6", "7", "8", "9", 10}};
    const QWidget *dialog = openDialog();
    QVERIFY(dialog);
    const auto *table = dialog->findChild<QTableWidget *>("PNListTable");
    table->item(0, 0)->setData(Qt::EditRole, true);
    int shown = -1;
    QTimer look;
    connect(&look, &QTimer::timeout, [&] {
        const auto *progress = dialog->findChild<QProgressDialog *>();
        if (!progress || progress->value() <= 0)
            return;
        look.stop();
        shown = progress->value();
        state().isSeen.release();
    });
    look.start(5);
    dialog->findChild<QPushButton *>("OKButton")->click();

    QCOMPARE(shown, 42); // what this host wrote into the record
    QCOMPARE(state().job, std::string("job1"));
    QCOMPARE(state().step, std::string("pcb"));
    QCOMPARE(state().layer, std::string("top"));
    QCOMPARE(state().type, 1);
    QCOMPARE(QString::fromStdString(state().file),
             QString(m_folder.path().replace('/', '\\') + "/ox/job1\\top.gds").toLower());
    QCOMPARE(state().title, std::string());
    QCOMPARE(state().text, std::string("Start calculating, please wait!"));
    QCOMPARE(state().percent, 0.0);
    QVERIFY(!state().isCancelled);
}

void tst_ForeignHost::theReportOfAnExportIsReadable()
{
    state().layers = {{"BOARD", "SIGNAL", "Top", "4", "POSITIVE", "6", "7", "8", "9", 10}};
    state().isSeen.release();
    const QWidget *dialog = openDialog();
    QVERIFY(dialog);
    dialog->findChild<QTableWidget *>("PNListTable")->item(0, 0)->setData(Qt::EditRole, true);
    dialog->findChild<QPushButton *>("OKButton")->click();
    QCOMPARE(m_sent.size(), size_t(1));
    QCOMPARE(m_sent[0].sender, QString("File_Process"));
    QCOMPARE(m_sent[0].receiver, QString("ListBar_PNList"));
    QCOMPARE(m_sent[0].number, 10000403);
    QCOMPARE(m_sent[0].named.keys(), QStringList("path"));
    QCOMPARE(m_sent[0].named["path"].toString(), m_folder.path().replace('/', '\\') + "/OX/Job1");
    QCOMPARE(m_reported, QList<std::string>{"Top"});
}

QTEST_MAIN(tst_ForeignHost)
#include "tst_foreignhost.moc"
