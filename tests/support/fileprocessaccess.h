// The tests' way to the private side of FileProcess, for what no public operation shows.
#pragma once

#include "export/export.h"
#include "plugin/fileprocess.h"

struct FileProcessAccess
{
    static ExportConfig &config(FileProcess &plugin) { return plugin.m_config; }
    static QString &filePath(FileProcess &plugin) { return plugin.m_filePath; }
    static QList<std::string> &newProfileList(FileProcess &plugin) { return plugin.m_newProfileList; }
    static Export *exportDialog(FileProcess &plugin) { return plugin.m_exportDlg; }
    static void setImportParent(FileProcess &plugin, QWidget *parent) { plugin.m_importParent = parent; }

    static void checkDir(FileProcess &plugin, const QString &path) { plugin.CheckDir(path); }
    static void sendPath(FileProcess &plugin) { plugin.sendPath2Mangager(); }
    static bool copyDirectory(FileProcess &plugin, const QString &source, QString &name)
    {
        return plugin.copyDirectory(source, name, true);
    }
    static void mysystem(FileProcess &plugin, const std::string &file, const std::string &parameters)
    {
        plugin.mysystem(file, parameters);
    }
};
