// The Import command: lets the user choose files, unpacks the job archives among them, and tells the host
// about every file that was taken in.
#pragma once

#include "import/importplugin.h"

#include <QCoreApplication>
#include <QStringList>

class ImportCommand
{
    Q_DECLARE_TR_FUNCTIONS(FileProcess) // the texts are the plug-in object's, for the translators

public:
    explicit ImportCommand(const ImportPlugin &plugin);

    // Returns when every chosen file has been dealt with. While an import or an export is under way, it does
    // nothing but write so to the log.
    void run() const;

private:
    QStringList chooseFiles() const;
    void takeIn(const QString &file) const;

    const ImportPlugin &m_plugin;
};
