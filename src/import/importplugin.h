// What the import needs of the plug-in object that it works for.
#pragma once

#include <QString>
#include <QWidget>

#include <string>

class ImportPlugin
{
public:
    virtual ~ImportPlugin() = default;

    // Whether the plug-in object is still there. Whatever handles events may destroy it, and the operations
    // below need it.
    virtual bool isAlive() const = 0;

    // The parent of the import's dialogs and windows; may be null.
    virtual QWidget *dialogParent() const = 0;
    // The folder that holds the host's jobs, as the settings have it; may be empty or missing.
    virtual QString jobPath() const = 0;

    // Makes sure that `folder` exists.
    virtual void createFolder(const QString &folder) const = 0;
    // Unpacks the job archive `file`. `jobName` is its base name, and after a success the name of the job's
    // folder inside it. False after a failure, which the user has been told of.
    virtual bool unpack(const QString &file, QString &jobName) const = 0;
    // Tells the host that `file` has been taken in.
    virtual void announce(const QString &file) const = 0;
    // Runs a program without a window and waits until it has ended. Both texts are read in
    // the system's code page.
    virtual void runHidden(const std::string &program, const std::string &parameters) const = 0;
};
