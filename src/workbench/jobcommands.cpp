#include "workbench/jobcommands.h"

#include "platform/trash.h"
#include "workbench/jobstore.h"

#include <QDesktopServices>
#include <QDir>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QUrl>

#include <glog/logging.h>

QString JobCommands::rename(const QString &job) const
{
    QString name = job;
    QString question = tr("New name of the job %1:").arg(job);
    while (true) {
        bool isGiven = false;
        name = QInputDialog::getText(m_window, tr("Rename job"), question, QLineEdit::Normal, name, &isGiven);
        if (!isGiven || name == job)
            return {};
        // Where letter case does not count, a name may change in nothing else.
        const bool sameButForCase = name.compare(job, Qt::CaseInsensitive) == 0;
        QString problem = sameButForCase ? QString() : jobNameProblem(m_root, name);
        if (problem.isEmpty() && !QDir().rename(folderOf(job), folderOf(name)))
            problem = tr("The system does not rename the folder. Another program may have files of it open.");
        if (problem.isEmpty()) {
            LOG(INFO) << "the job " << job.toStdString() << " is called " << name.toStdString() << " now";
            return name;
        }
        question = problem + "\n\n" + tr("New name of the job %1:").arg(job);
    }
}

bool JobCommands::remove(const QString &job) const
{
    const QString folder = QDir::toNativeSeparators(folderOf(job));
    QMessageBox box(QMessageBox::Question, tr("Remove job"),
                    tr("Move the job %1 to the wastebasket?").arg(job) + "\n\n" + folder,
                    QMessageBox::Yes | QMessageBox::No, m_window);
    box.setDefaultButton(QMessageBox::No);
    if (box.exec() != QMessageBox::Yes)
        return false;
    const QString failure = platform::moveToTrash(folderOf(job));
    if (failure.isEmpty()) {
        LOG(INFO) << "the job " << job.toStdString() << " is in the wastebasket";
        return true;
    }
    LOG(ERROR) << failure.toStdString();
    QMessageBox::warning(m_window, tr("Remove job"), failure);
    return false;
}

void JobCommands::show(const QString &job) const
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(folderOf(job)));
}
