#include "workbench/windowmemory.h"

#include <QMainWindow>

namespace {

const int stateVersion = 1; // of the panes and tool bars; another one's state is not restored
const int jobsToRemember = 10;
const int filesToRemember = 15;

} // namespace

WindowMemory::WindowMemory(const QString &file) : m_settings(new QSettings(file, QSettings::IniFormat))
{
    m_settings->setIniCodec("utf-8");
}

void WindowMemory::keepWindow(const QMainWindow &window)
{
    keep("window/geometry", window.saveGeometry());
    keep("window/state", window.saveState(stateVersion));
}

bool WindowMemory::restoreWindow(QMainWindow &window) const
{
    if (!m_settings || !window.restoreGeometry(m_settings->value("window/geometry").toByteArray()))
        return false;
    return window.restoreState(m_settings->value("window/state").toByteArray(), stateVersion);
}

QStringList WindowMemory::recentJobs() const
{
    return m_settings ? m_settings->value("recentJobs").toStringList() : QStringList();
}

void WindowMemory::addRecentJob(const QString &folder)
{
    QStringList jobs = recentJobs();
    jobs.removeAll(folder);
    jobs.prepend(folder);
    keep("recentJobs", QStringList(jobs.mid(0, jobsToRemember)));
}

void WindowMemory::removeRecentJob(const QString &folder)
{
    QStringList jobs = recentJobs();
    jobs.removeAll(folder);
    keep("recentJobs", jobs);
}

QStringList WindowMemory::recentFiles() const
{
    return m_settings ? m_settings->value("recentFiles").toStringList() : QStringList();
}

void WindowMemory::addRecentFile(const QString &path)
{
    QStringList files = recentFiles();
    files.removeAll(path);
    files.prepend(path);
    keep("recentFiles", QStringList(files.mid(0, filesToRemember)));
}

QByteArray WindowMemory::state(const QString &pane) const
{
    return m_settings ? m_settings->value("panes/" + pane).toByteArray() : QByteArray();
}

QString WindowMemory::text(const QString &key) const
{
    return m_settings ? m_settings->value(key).toString() : QString();
}

void WindowMemory::keep(const QString &key, const QVariant &value)
{
    if (m_settings)
        m_settings->setValue(key, value);
}
