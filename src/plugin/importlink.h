// The plug-in object as the import sees it.
#pragma once

#include "import/importplugin.h"

#include <QPointer>

class FileProcess;

class ImportLink : public ImportPlugin
{
public:
    explicit ImportLink(FileProcess *plugin);

    bool isAlive() const override;
    QWidget *dialogParent() const override;
    QString jobPath() const override;
    void createFolder(const QString &folder) const override;
    bool unpack(const QString &file, QString &jobName) const override;
    void announce(const QString &file) const override;
    void runHidden(const std::string &program, const std::string &parameters) const override;

private:
    const QPointer<FileProcess> m_plugin;
};
