#include "workbench/archivedrop.h"

#include "workbench/batch/batchrun.h"
#include "workbench/mainwindow.h"

#include <QApplication>
#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QTimer>
#include <QUrl>

#include <glog/logging.h>

namespace {

QStringList archivesIn(const QMimeData *data)
{
    QStringList archives;
    for (const QUrl &url : data->urls()) {
        if (url.isLocalFile() && QFileInfo(url.toLocalFile()).suffix().toLower() == "tgz")
            archives << url.toLocalFile();
    }
    return archives;
}

} // namespace

ArchiveDrop::ArchiveDrop(MainWindow &window) : QObject(&window), m_window(window)
{
    window.setAcceptDrops(true);
    window.installEventFilter(this);
}

bool ArchiveDrop::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::DragEnter && event->type() != QEvent::Drop)
        return QObject::eventFilter(watched, event);
    auto *drop = static_cast<QDropEvent *>(event); // a drag's entering is one, too
    const QStringList archives = archivesIn(drop->mimeData());
    if (archives.isEmpty() || QApplication::activeModalWidget())
        return QObject::eventFilter(watched, event);
    drop->acceptProposedAction();
    // The program that the files come from waits for the end of the drop, not for that of the import.
    if (event->type() == QEvent::Drop)
        QTimer::singleShot(0, this, [this, archives] { import(archives); });
    return true;
}

void ArchiveDrop::import(const QStringList &archives)
{
    if (m_isImporting || !m_window.importAction())
        return;
    m_isImporting = true;
    // A native file dialog has no widgets that could be filled in.
    const bool withoutNative = QApplication::testAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs, true);
    CommandLine options;
    options.archives = archives;
    {
        BatchRun run(m_window, options,
                     [](const QString &line) { LOG(INFO) << line.trimmed().toStdString(); });
        run.importAttended();
    }
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs, withoutNative);
    m_isImporting = false;
}
