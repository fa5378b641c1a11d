// What the window remembers from one start to the next: its place, its panes, the last jobs and folders.
#pragma once

#include <QByteArray>
#include <QSettings>
#include <QStringList>

#include <memory>

class QMainWindow;

class WindowMemory
{
public:
    // One that remembers nothing.
    WindowMemory() = default;
    // Keeps everything in `file`, an INI file.
    explicit WindowMemory(const QString &file);

    void keepWindow(const QMainWindow &window);
    // Returns whether there was something to restore.
    bool restoreWindow(QMainWindow &window) const;

    // Folders of jobs, the one that was opened last first.
    QStringList recentJobs() const;
    void addRecentJob(const QString &folder);
    void removeRecentJob(const QString &folder);

    // Layer files, the one that was opened last first.
    QStringList recentFiles() const;
    void addRecentFile(const QString &path);

    QString importFolder() const { return text("importFolder"); }
    void setImportFolder(const QString &folder) { keep("importFolder", folder); }

    // A language's short name, such as "de"; empty: the system's.
    QString language() const { return text("language"); }
    void setLanguage(const QString &name) { keep("language", name); }

    QByteArray state(const QString &pane) const;
    void setState(const QString &pane, const QByteArray &state) { keep("panes/" + pane, state); }

private:
    QString text(const QString &key) const;
    void keep(const QString &key, const QVariant &value);

    std::unique_ptr<QSettings> m_settings;
};
