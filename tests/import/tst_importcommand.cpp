// The Import command, driven through its file dialog.

#include "tests/archive/archivebuilder.h"
#include "tests/support/fileprocessaccess.h"
#include "tests/support/modalresponder.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

namespace {

// The messages that the plug-in sends, with what their payload was at that moment.
struct Sent
{
    qint32 type;
    QString receiver;
    QString path;
};

} // namespace

class tst_ImportCommand : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void theDialogIsBuiltAsItIs();
    void theDialogStartsInTheJobFolder();
    void theDialogStartsInTheWorkingFolderWithoutOne();
    void cancelChangesNothing();
    void aFileIsSentOnAsItIs_data();
    void aFileIsSentOnAsItIs();
    void anArchiveIsUnpackedAndItsOwnPathSent_data();
    void anArchiveIsUnpackedAndItsOwnPathSent();
    void severalFilesAreTakenInOrder();
    void aFailedArchiveIsSkippedWithoutAMessage();
    void theNameOfAJobEndsAtTheLastDot();
    void everyCallMakesADialogOfItsOwn();
    void aRequestOfAnotherPluginRunsTheCommand();
    void theActionRunsTheCommand();

private:
    // Answers the next dialog by typing `names` into its field and pressing Return.
    void choose(const QStringList &names)
    {
        m_user->expect([names](QWidget *window) {
            auto *dialog = qobject_cast<QFileDialog *>(window);
            QVERIFY(dialog);
            auto *field = dialog->findChild<QLineEdit *>("fileNameEdit");
            QVERIFY(field);
            QStringList quoted;
            for (const QString &name : names)
                quoted << "\"" + name + "\"";
            field->setText(names.size() == 1 ? names[0] : quoted.join(" "));
            QTest::keyClick(field, Qt::Key_Return);
        });
    }
    QString put(const QString &name, const QByteArray &bytes)
    {
        m_folder->write(name, bytes);
        return m_folder->filePath(name);
    }
    QStringList sentPaths() const
    {
        QStringList paths;
        for (const Sent &sent : m_sent)
            paths << sent.path;
        return paths;
    }
    static QByteArray job(const QByteArray &name)
    {
        return gzip(TarBuilder().folder(name + "/").file(name + "/x", "x").bytes());
    }

    std::unique_ptr<TemporaryWorkingFolder> m_folder;
    std::unique_ptr<FileProcess> m_plugin;
    std::unique_ptr<QWidget> m_parent;
    std::unique_ptr<ModalResponder> m_user;
    std::vector<Sent> m_sent;
};

void tst_ImportCommand::init()
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    m_folder = std::make_unique<TemporaryWorkingFolder>();
    m_plugin = std::make_unique<FileProcess>();
    m_parent = std::make_unique<QWidget>();
    m_user = std::make_unique<ModalResponder>();
    FileProcessAccess::setImportParent(*m_plugin, m_parent.get());
    m_sent.clear();
    connect(m_plugin.get(), &FileProcess::sendMsgToManager, this, [this](const PluginMetaData &data) {
        m_sent.push_back({data.msgType, data.toPlugin, *static_cast<QString *>(data.payload)});
    });
}

void tst_ImportCommand::cleanup()
{
    QCOMPARE(m_user->pending(), 0);
    m_user.reset();
    m_parent.reset();
    m_plugin.reset();
    m_folder.reset();
}

void tst_ImportCommand::theDialogIsBuiltAsItIs()
{
    m_user->expect([this](QWidget *window) {
        auto *dialog = qobject_cast<QFileDialog *>(window);
        QVERIFY(dialog);
        QCOMPARE(dialog->parentWidget(), m_parent.get());
        QCOMPARE(dialog->windowTitle(), QString("Import"));
        QCOMPARE(dialog->nameFilters(),
                 (QStringList{"ODB++(*.tgz)", "gds file(*.gds)", "gerber274x(*.gerber)"}));
        QCOMPARE(dialog->selectedNameFilter(), QString("ODB++(*.tgz)"));
        QCOMPARE(dialog->fileMode(), QFileDialog::ExistingFiles);
        QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptOpen);
        QCOMPARE(dialog->viewMode(), QFileDialog::Detail);
        QVERIFY(dialog->isModal());
        auto *filters = dialog->findChild<QComboBox *>("fileTypeCombo");
        QVERIFY(filters);
        QCOMPARE(filters->count(), 3);
        QVERIFY(dialog->findChild<QTreeView *>("treeView")->isVisible());
        dialog->reject();
    });
    m_plugin->on_ImportACT_clicked();
}

void tst_ImportCommand::theDialogStartsInTheJobFolder()
{
    QVERIFY(QDir().mkpath("my jobs"));
    FileProcessAccess::config(*m_plugin).jobPath = m_folder->filePath("my jobs").replace("/", "\\");
    m_user->expect([this](QWidget *window) {
        auto *dialog = qobject_cast<QFileDialog *>(window);
        QCOMPARE(dialog->directory().canonicalPath(), m_folder->filePath("my jobs"));
        dialog->reject();
    });
    m_plugin->on_ImportACT_clicked();
}

void tst_ImportCommand::theDialogStartsInTheWorkingFolderWithoutOne()
{
    m_user->expect([this](QWidget *window) {
        auto *dialog = qobject_cast<QFileDialog *>(window);
        QCOMPARE(dialog->directory().canonicalPath(), m_folder->path());
        dialog->reject();
    });
    m_plugin->on_ImportACT_clicked();
}

void tst_ImportCommand::cancelChangesNothing()
{
    FileProcessAccess::filePath(*m_plugin) = "earlier";
    m_user->expect([](QWidget *window) {
        window->findChild<QDialogButtonBox *>("buttonBox")->button(QDialogButtonBox::Cancel)->click();
    });
    m_plugin->on_ImportACT_clicked();
    QVERIFY(m_sent.empty());
    QCOMPARE(FileProcessAccess::filePath(*m_plugin), QString("earlier"));
    QVERIFY(!QDir("job").exists());
}

void tst_ImportCommand::aFileIsSentOnAsItIs_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("GDSII") << "layer.gds";
    QTest::newRow("Gerber") << "layer.gerber";
    QTest::newRow("another gzip ending") << "x.tar.gz";
    QTest::newRow("typed by the user") << "notes.txt";
    QTest::newRow("no suffix in a folder with a dot") << "a.b/file";
    QTest::newRow("no suffix") << "tgz";
    QTest::newRow("archive inside the name") << "x.tgz.bak";
}

void tst_ImportCommand::aFileIsSentOnAsItIs()
{
    QFETCH(QString, name);
    const QString path = put(name, "whatever it holds");
    choose({path});
    m_plugin->on_ImportACT_clicked();
    QCOMPARE(sentPaths(), QStringList{path});
    QCOMPARE(m_sent[0].type, 10000401);
    QCOMPARE(m_sent[0].receiver, QString("ListBar_PNList"));
    QCOMPARE(FileProcessAccess::filePath(*m_plugin), path);
    QVERIFY(!QDir("job").exists());
}

void tst_ImportCommand::anArchiveIsUnpackedAndItsOwnPathSent_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("lower case") << "ABC.tgz";
    QTest::newRow("upper case") << "ABC.TGZ";
    QTest::newRow("mixed case") << "ABC.tGz";
}

void tst_ImportCommand::anArchiveIsUnpackedAndItsOwnPathSent()
{
    QFETCH(QString, name);
    const QString path = put(name, job("XYZ"));
    choose({path});
    m_plugin->on_ImportACT_clicked();
    QCOMPARE(sentPaths(), QStringList{path});
    QVERIFY(QFile::exists("job/ABC/x"));
}

void tst_ImportCommand::severalFilesAreTakenInOrder()
{
    const QStringList paths{put("mail/B.tgz", job("B")), put("mail/A.tgz", job("A")), put("mail/c.gds", "c")};
    choose(paths);
    m_plugin->on_ImportACT_clicked();
    QCOMPARE(sentPaths(), paths);
    QVERIFY(QFile::exists("job/A/x"));
    QVERIFY(QFile::exists("job/B/x"));
}

void tst_ImportCommand::aFailedArchiveIsSkippedWithoutAMessage()
{
    const QStringList paths{put("mail/1.tgz", job("1")), put("mail/2.tgz", "broken"),
                            put("mail/3.tgz", job("3"))};
    choose(paths);
    m_user->expectMessageBox(QMessageBox::Yes);
    m_plugin->on_ImportACT_clicked();
    QCOMPARE(m_user->boxes.size(), std::size_t(1));
    QCOMPARE(sentPaths(), (QStringList{paths[0], paths[2]}));
    QCOMPARE(FileProcessAccess::filePath(*m_plugin), paths[2]);
}

void tst_ImportCommand::theNameOfAJobEndsAtTheLastDot()
{
    choose({put("jobs.d/a.b.tgz", job("XYZ"))});
    m_plugin->on_ImportACT_clicked();
    QVERIFY(QFile::exists("job/a.b/x"));
}

void tst_ImportCommand::everyCallMakesADialogOfItsOwn()
{
    for (int call = 0; call < 2; ++call) {
        choose({put("x.gds", "x")});
        m_plugin->on_ImportACT_clicked();
    }
    const auto dialogs = m_parent->findChildren<QFileDialog *>();
    QCOMPARE(dialogs.size(), 2);
    for (QFileDialog *dialog : dialogs)
        QVERIFY(!dialog->isVisible());
}

void tst_ImportCommand::aRequestOfAnotherPluginRunsTheCommand()
{
    m_plugin->InitImportTool(m_parent.get());
    m_sent.clear();
    const QString path = put("x.gds", "x");
    choose({path});
    PluginMetaData request;
    request.msgType = 10000801;
    m_plugin->recMsgFromManager(request);
    QCOMPARE(sentPaths(), QStringList{path});
}

void tst_ImportCommand::theActionRunsTheCommand()
{
    QAction *action = m_plugin->InitImportTool(m_parent.get());
    m_sent.clear();
    const QString path = put("x.gds", "x");
    choose({path});
    action->trigger();
    QCOMPARE(sentPaths(), QStringList{path});
}

QTEST_MAIN(tst_ImportCommand)
#include "tst_importcommand.moc"
