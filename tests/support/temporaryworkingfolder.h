// A temporary folder that is the process's working folder while the object lives: the plug-in's settings file
// and its fall-back job root are relative to it.
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

class TemporaryWorkingFolder
{
public:
    TemporaryWorkingFolder() : m_before(QDir::currentPath()) { QDir::setCurrent(m_folder.path()); }
    ~TemporaryWorkingFolder() { QDir::setCurrent(m_before); }

    QString path() const { return QDir(m_folder.path()).canonicalPath(); }
    QString filePath(const QString &name) const { return path() + "/" + name; }

    // Writes `bytes` to the file `name`, whose folders are made as needed.
    bool write(const QString &name, const QByteArray &bytes) const
    {
        const QString file = filePath(name);
        QDir().mkpath(QFileInfo(file).path());
        QFile out(file);
        return out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size();
    }

private:
    QString m_before;
    QTemporaryDir m_folder;
};
