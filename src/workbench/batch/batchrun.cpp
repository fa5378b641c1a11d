#include "workbench/batch/batchrun.h"

#include "platform/paths.h"
#include "workbench/exportdialog.h"
#include "workbench/mainwindow.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileDialog>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>

namespace {

const int patience = 20000; // ms to wait for a window to open or close

// The file that a layer is exported to: in `folder`, with its name in lower case.
QString exportedFile(const QString &folder, const QString &layer, const QString &format)
{
    return folder + "/" + (layer + format).toLower();
}

// "1 file", "2 files".
QString counted(qint64 number, const char *what)
{
    return QString("%1 %2%3").arg(number).arg(what, number == 1 ? "" : "s");
}

QString seconds(const QElapsedTimer &timer)
{
    return QString::number(double(timer.elapsed()) / 1000.0, 'f', 1) + " s";
}

} // namespace

BatchRun::BatchRun(MainWindow &window, const CommandLine &options, Print print, QObject *parent)
    : QObject(parent), m_window(window), m_options(options), m_print(std::move(print))
{
    m_driver.setAnswer([this](QWidget *open) { return answer(open); });
    connect(&m_driver, &DialogDriver::stuck, this, [this](const QString &title) {
        m_refused = true;
        fail(QString("the window \"%1\" did not close").arg(title));
    });
}

int BatchRun::run()
{
    m_window.doNotVerify();
    if (!m_window.importAction() || !m_window.exportAction()) {
        fail("there is no plug-in that imports and exports");
        return 1;
    }
    for (const QString &archive : m_options.archives) {
        if (!importArchive(archive))
            continue;
        for (const QString &format : m_options.formats)
            exportJob(format);
    }
    m_print(QString("%1, %2, %3")
                .arg(counted(m_written.files, "file"), counted(m_written.bytes, "byte"),
                     m_failures == 0 ? QString("no failure") : counted(m_failures, "failure")));
    return m_failures == 0 && m_written.files > 0 ? 0 : 1;
}

void BatchRun::importAttended()
{
    m_attended = true;
    m_driver.setAttended(true);
    for (const QString &archive : m_options.archives)
        importArchive(archive);
}

bool BatchRun::importArchive(const QString &archive)
{
    m_print("import " + QDir::toNativeSeparators(archive));
    if (!QFileInfo(archive).isFile())
        return fail("there is no such file");

    bool arrived = false;
    QString job;
    const auto connection = connect(&m_window, &MainWindow::fileImported, this,
                                    [&arrived, &job](const QString &, const QString &opened) {
                                        arrived = true;
                                        job = opened;
                                    });
    QElapsedTimer timer;
    timer.start();
    m_archive = archive;
    m_refused = false;
    m_window.pressButton(m_window.importAction()); // returns when the import has ended
    m_archive.clear();
    disconnect(connection);

    if (!arrived)
        return m_refused ? false : fail("the plug-in took in nothing");
    if (QFileInfo(archive).suffix().toLower() != "tgz") {
        m_print("  a layer file: nothing to export");
        return false;
    }
    if (job.isEmpty())
        return fail("the archive holds no ODB++ job");
    m_print(
        QString("  job %1 in %2, %3").arg(job, QDir::toNativeSeparators(m_window.jobRoot()), seconds(timer)));
    waitFor([this] { return m_window.isViewDrawn(); });
    takePicture(&m_window, job + "-workbench");
    return true;
}

bool BatchRun::exportJob(const QString &format)
{
    const QString job = m_window.openJobName();
    if (!m_options.step.isEmpty() && !m_window.chooseStep(m_options.step))
        return fail(QString("the job %1 has no step \"%2\"").arg(job, m_options.step));
    m_print(QString("export %1 as %2").arg(job, format));
    m_window.pressButton(m_window.exportAction());
    waitFor([] { return ExportDialog::find().window() != nullptr; });
    ExportDialog dialog = ExportDialog::find();
    if (!dialog.problem().isEmpty())
        return fail(dialog.problem());

    bool done = fillIn(dialog, format);
    if (done) {
        const QString folder =
            QDir::cleanPath(platform::toLocal(dialog.path() + "/" + dialog.secondFolder() + "/" + job));
        QMap<QString, QDateTime> before;
        for (const QFileInfo &file : QDir(folder).entryInfoList(QDir::Files))
            before[file.fileName()] = file.lastModified();
        takePicture(dialog.window(), job + "-export-" + format.mid(1) + "-filled");
        m_refused = false;
        done = dialog.pressOk() || fail("the Export dialog's OK button is disabled");
        if (done) {
            waitFor([this] { return !m_window.exports().isRunning(); });
            takePicture(dialog.window(), job + "-export-" + format.mid(1) + "-done");
            done = reportFiles(dialog, format, folder, before) && !m_refused;
        }
    }
    dialog.pressCancel();
    if (!waitFor([] { return ExportDialog::find().window() == nullptr; }))
        return fail("the Export dialog did not close");
    return done;
}

bool BatchRun::fillIn(ExportDialog &dialog, const QString &format)
{
    m_refused = false;
    if (!m_options.outputFolder.isEmpty()) {
        QDir().mkpath(m_options.outputFolder);
        dialog.enterPath(m_options.outputFolder);
    }
    if (!dialog.chooseFormat(format))
        return fail("the Export dialog does not offer " + format);
    dialog.openTableMenu(); // the driver chooses "Select all layer"
    if (dialog.rowCount() == 0)
        return fail("the Export dialog offers no layer");
    for (int row = 0; row < dialog.rowCount(); ++row) {
        if (!dialog.isChecked(row))
            return fail(QString("the layer %1 could not be chosen").arg(dialog.layer(row)));
    }
    return !m_refused;
}

bool BatchRun::reportFiles(ExportDialog &dialog, const QString &format, const QString &folder,
                           const QMap<QString, QDateTime> &before)
{
    bool complete = true;
    for (int row = 0; row < dialog.rowCount(); ++row) {
        const QString layer = dialog.layer(row);
        const QFileInfo file(exportedFile(folder, layer, format));
        const QString path = QDir::toNativeSeparators(file.filePath());
        const bool isNew = file.isFile() && (!before.contains(file.fileName()) ||
                                             before[file.fileName()] != file.lastModified());
        if (!isNew || file.size() == 0) {
            ExportResults results = m_window.exports().results();
            const LayerResult *result = results.find(layer);
            const QString reason = result && !result->reason.isEmpty() ? ": " + result->reason : QString();
            complete = fail(
                QString("%1  %2  %3%4").arg(layer, path, isNew ? "is empty" : "was not written", reason));
            continue;
        }
        ++m_written.files;
        m_written.bytes += file.size();
        m_print(QString("  %1  %2  %3 bytes  %4").arg(layer, path).arg(file.size()).arg(dialog.time(row)));
    }
    return complete;
}

QAbstractButton *BatchRun::answer(QWidget *window)
{
    if (m_attended && !(qobject_cast<QFileDialog *>(window) && !m_archive.isEmpty()))
        return nullptr;
    if (auto *box = qobject_cast<QMessageBox *>(window))
        return answerMessageBox(box);
    if (auto *dialog = qobject_cast<QFileDialog *>(window))
        return answerFileDialog(dialog);
    if (window->inherits("QMenu"))
        return answerMenu(window);
    m_refused = true;
    fail(QString("an unknown window opened: \"%1\"").arg(window->windowTitle()));
    window->close();
    return nullptr;
}

QAbstractButton *BatchRun::answerFileDialog(QFileDialog *dialog)
{
    auto *name = dialog->findChild<QLineEdit *>("fileNameEdit");
    auto *buttons = dialog->findChild<QDialogButtonBox *>("buttonBox");
    if (m_archive.isEmpty() || !name || !buttons) {
        m_refused = true;
        fail(QString("the file dialog \"%1\" cannot be filled in").arg(dialog->windowTitle()));
        QMetaObject::invokeMethod(dialog, "reject", Qt::QueuedConnection);
        return nullptr;
    }
    name->setText(m_archive);
    m_archive.clear(); // once: when the dialog refuses it and stays open, it is cancelled
    return buttons->button(QDialogButtonBox::Open);
}

QAbstractButton *BatchRun::answerMessageBox(QMessageBox *box)
{
    const bool isQuestion = box->standardButtons() == (QMessageBox::Yes | QMessageBox::No);
    if (isQuestion) {
        const bool yes = m_options.overwrite;
        m_print(QString("  %1 - %2").arg(box->text(), yes ? "Yes" : "No"));
        return box->button(yes ? QMessageBox::Yes : QMessageBox::No);
    }
    m_refused = true;
    fail(QString("%1: %2").arg(box->windowTitle(), box->text()));
    return box->buttons().value(0);
}

QAbstractButton *BatchRun::answerMenu(QWidget *window)
{
    auto *menu = static_cast<QMenu *>(window);
    for (QAction *action : menu->actions()) {
        if (action->text() != "Select all layer")
            continue;
        menu->setActiveAction(action);
        QKeyEvent choose(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QApplication::sendEvent(menu, &choose);
        return nullptr;
    }
    m_refused = true;
    fail("the layer table's menu has no command \"Select all layer\"");
    menu->close();
    return nullptr;
}

bool BatchRun::fail(const QString &reason)
{
    ++m_failures;
    m_print("  FAILED: " + reason);
    return false;
}

bool BatchRun::waitFor(const std::function<bool()> &condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > patience)
            return false;
        QEventLoop loop;
        QTimer::singleShot(10, &loop, &QEventLoop::quit);
        if (loop.exec() != 0)
            return false; // the program is about to end
    }
    return true;
}

void BatchRun::takePicture(QWidget *window, const QString &name)
{
    if (m_options.screenshotFolder.isEmpty())
        return;
    QApplication::processEvents(); // let the window show what has just changed
    QDir().mkpath(m_options.screenshotFolder);
    const QString file = QString("%1/%2-%3.png")
                             .arg(m_options.screenshotFolder)
                             .arg(++m_pictures, 2, 10, QChar('0'))
                             .arg(name);
    if (window->grab().save(file))
        m_print("  picture " + QDir::toNativeSeparators(file));
    else
        fail("cannot write " + file);
}
