// A plug-in that has the interface's operations, but no signal that the manager could connect to.
#include "plugin/interface/fileprointerface.h"

#include <QObject>

class Mute : public QObject, public FileProInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID FileProInterface_iid)
    Q_INTERFACES(FileProInterface)

public:
    void recMsgFromManager(PluginMetaData) override {}
    void sendMsgToManager(PluginMetaData) override {}
    void CreateFileProTools() override {}
    QAction *InitImportTool(QWidget *) override { return nullptr; }
    QAction *InitExportTool() override { return nullptr; }
    void GetFileProActions(QToolBar *) override {}
};

#include "mutemodule.moc"
