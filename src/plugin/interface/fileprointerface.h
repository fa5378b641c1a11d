// The interface under which the host loads the plug-in that imports and exports files. Declared by the host;
// the order of the operations is part of the interface.
#pragma once

#include "plugin/interface/plugininterface.h"

#include <QtPlugin>

class QAction;
class QToolBar;
class QWidget;

class FileProInterface : public PluginInterface
{
public:
    virtual void CreateFileProTools() = 0;
    virtual QAction *InitImportTool(QWidget *parent) = 0;
    virtual QAction *InitExportTool() = 0;
    virtual void GetFileProActions(QToolBar *bar) = 0;
};

#define FileProInterface_iid "PluginManager.FileProInterface"
Q_DECLARE_INTERFACE(FileProInterface, FileProInterface_iid)
