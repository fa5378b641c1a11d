// The Import command: lets the user choose files, unpacks the job archives among them, and tells the job list
// about every file that was taken in.

#include "plugin/fileprocess.h"

#include "platform/paths.h"
#include "run/backgroundturn.h"

#include <QDebug>
#include <QFileDialog>
#include <QPointer>

namespace {

// The text after the last "." of the whole path; all of it when there is none.
QString suffixOf(const QString &path)
{
    return path.mid(path.lastIndexOf('.') + 1);
}

bool isJobArchive(const QString &path)
{
    return suffixOf(path).toLower() == "tgz";
}

// C:/jobs/a.b.tgz is the archive of the job a.b.
QString jobName(const QString &path)
{
    const int begin = path.lastIndexOf('/') + 1;
    return path.mid(begin, path.lastIndexOf('.') - begin);
}

} // namespace

void FileProcess::on_ImportACT_clicked()
{
    // The progress windows keep the user from asking now, but not other plug-ins.
    if (!BackgroundTurn::isFreeFor("the import"))
        return;
    // Whatever handles events below may destroy this object and its windows.
    const QPointer<FileProcess> self(this);
    const QPointer<QFileDialog> dialog = new QFileDialog(m_importParent, QString(), QString(), QString());
    dialog->setWindowTitle(tr("Import"));
    dialog->setNameFilter(tr("ODB++") + "(*.tgz);;" + "gds file(*.gds);;gerber274x(*.gerber)");
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setFileMode(QFileDialog::ExistingFiles);
    if (m_config.jobPath.isEmpty()) {
        dialog->setDirectory("./");
    } else {
        qDebug() << m_config.jobPath;
        dialog->setDirectory(platform::toLocal(m_config.jobPath));
    }
    dialog->setViewMode(QFileDialog::Detail);
    if (dialog->exec() != QDialog::Accepted || !self || !dialog)
        return;

    const QStringList files = dialog->selectedFiles();
    dialog->close();
    for (const QString &file : files) {
        m_filePath = file;
        if (!isJobArchive(file)) {
            sendPath2Mangager();
            if (!self)
                return;
            continue;
        }
        QString name = jobName(file);
        const bool isUnpacked = copyDirectory(file, name, true);
        if (!self)
            return;
        if (isUnpacked) {
            qDebug() << name;
            m_filePath = file; // another import may have come in between
            sendPath2Mangager();
            if (!self)
                return;
        }
    }
}
