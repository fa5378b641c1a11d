// The workbench without a person: imports archives and exports all layers of the new jobs by pressing the
// toolbar's buttons and filling in the dialogs that open, and prints what became of it.
#pragma once

#include "workbench/batch/dialogdriver.h"
#include "workbench/commandline.h"

#include <QDateTime>
#include <QMap>
#include <QObject>

#include <functional>

class ExportDialog;
class MainWindow;
class QFileDialog;
class QMessageBox;

class BatchRun : public QObject
{
    Q_OBJECT

public:
    using Print = std::function<void(const QString &line)>;

    // `print` gets one line at a time.
    BatchRun(MainWindow &window, const CommandLine &options, Print print, QObject *parent = nullptr);

    // Does it all, within the running event loop. Returns the process's exit code: 0 when every archive was
    // imported and every layer was written to a file that is not empty.
    int run();

    // Only imports the archives; a person answers what the plug-in asks.
    void importAttended();

private:
    struct Written
    {
        int files = 0;
        qint64 bytes = 0;
    };

    bool importArchive(const QString &archive);
    bool exportJob(const QString &format);
    bool fillIn(ExportDialog &dialog, const QString &format);
    bool reportFiles(ExportDialog &dialog, const QString &format, const QString &folder,
                     const QMap<QString, QDateTime> &before);

    QAbstractButton *answer(QWidget *window);
    QAbstractButton *answerFileDialog(QFileDialog *dialog);
    QAbstractButton *answerMessageBox(QMessageBox *box);
    QAbstractButton *answerMenu(QWidget *menu);

    bool fail(const QString &reason);
    bool waitFor(const std::function<bool()> &condition);
    void takePicture(QWidget *window, const QString &name);

    MainWindow &m_window;
    CommandLine m_options;
    Print m_print;
    DialogDriver m_driver;
    QString m_archive; // what the open file dialog is to be given; empty when it is to be cancelled
    bool m_attended = false;
    bool m_refused = false; // a message box reported a failure, or a window did not close
    Written m_written;
    int m_failures = 0;
    int m_pictures = 0;
};
