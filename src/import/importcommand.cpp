#include "import/importcommand.h"

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
QString jobNameOf(const QString &path)
{
    const int begin = path.lastIndexOf('/') + 1;
    return path.mid(begin, path.lastIndexOf('.') - begin);
}

} // namespace

ImportCommand::ImportCommand(const ImportPlugin &plugin) : m_plugin(plugin) {}

void ImportCommand::run() const
{
    // The progress windows keep the user from asking now, but not other plug-ins.
    if (!BackgroundTurn::isFreeFor("the import"))
        return;
    const QStringList files = chooseFiles();
    for (const QString &file : files) {
        if (!m_plugin.isAlive())
            return;
        takeIn(file);
    }
}

// Empty when the dialog was cancelled.
QStringList ImportCommand::chooseFiles() const
{
    // The dialog stays with its parent, which may delete it while it is open.
    const QPointer<QFileDialog> dialog =
        new QFileDialog(m_plugin.dialogParent(), QString(), QString(), QString());
    dialog->setWindowTitle(tr("Import"));
    dialog->setNameFilter(tr("ODB++") + "(*.tgz);;" + "gds file(*.gds);;gerber274x(*.gerber)");
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setFileMode(QFileDialog::ExistingFiles);
    const QString jobPath = m_plugin.jobPath();
    if (jobPath.isEmpty()) {
        dialog->setDirectory("./");
    } else {
        qDebug() << jobPath;
        dialog->setDirectory(platform::toLocal(jobPath));
    }
    dialog->setViewMode(QFileDialog::Detail);
    if (dialog->exec() != QDialog::Accepted || !m_plugin.isAlive() || !dialog)
        return {};

    const QStringList files = dialog->selectedFiles();
    dialog->close();
    return files;
}

void ImportCommand::takeIn(const QString &file) const
{
    if (isJobArchive(file)) {
        QString name = jobNameOf(file);
        if (!m_plugin.unpack(file, name) || !m_plugin.isAlive())
            return;
        qDebug() << name;
    }
    m_plugin.announce(file);
}
