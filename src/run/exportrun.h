// The export run of the Export dialog: from the OK button over one background job a layer to the times in the
// table. It lives on the stack and outlives a dialog that the host deletes meanwhile.
#pragma once

#include "run/backgroundturn.h"
#include "run/exportorder.h"
#include "run/exportrundialog.h"
#include "run/inputlock.h"

#include <QCoreApplication>
#include <QPointer>
#include <QProgressDialog>
#include <QWidget>

#include <memory>
#include <string>

class Progress;

class ExportRun
{
    Q_DECLARE_TR_FUNCTIONS(Export)

public:
    // `window` and `dialog` are the same object: the one for what every window has, and to see whether it is
    // still there; the other for what only the Export dialog has.
    ExportRun(QWidget *window, ExportRunDialog &dialog);
    // Undoes what the run has changed of the dialog, however it ended.
    ~ExportRun();
    ExportRun(const ExportRun &) = delete;
    ExportRun &operator=(const ExportRun &) = delete;

    // Locks the dialog, reads it, makes the output folder, reports the export to the host, and makes the
    // progress dialog. False when there is nothing to go on with: while an import or another export is
    // under way, or when the dialog was deleted meanwhile.
    bool begin();
    // Exports layer after layer, until the end or until the progress dialog is cancelled or its parent
    // deleted; handles events.
    void exportLayers();
    // Closes the progress dialog and shows the times.
    void end();

    // Null before begin() and after end(). Its parent is the dialog.
    QProgressDialog *progressDialog() const { return m_progressDialog; }

private:
    void makeOutputFolder() const;
    void report();
    void createProgressDialog();
    void setJobStatics(const std::string &layerName, const LayerExportParam &param) const;
    void setOutputFile(const std::string &layerName) const;
    double exportLayer(Progress &job) const;

    const BackgroundTurn m_turn;
    // The host may delete it whenever others get to run: its receivers, and all that events reach.
    const QPointer<QWidget> m_window;
    ExportRunDialog &m_dialog;
    std::unique_ptr<InputLock> m_inputLock;
    QPointer<QProgressDialog> m_progressDialog;
    ExportOrder m_order;
};
