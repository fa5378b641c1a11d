// A plug-in that answers every message to the receiver named in the message's parameter "answerTo", and whose
// exported function says how often it was called.
#include "plugin/interface/fileprointerface.h"

#include <QObject>

class Echo : public QObject, public FileProInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID FileProInterface_iid)
    Q_INTERFACES(FileProInterface)

public:
    ~Echo() override
    {
        PluginMetaData farewell;
        farewell.toPlugin = "Obituary";
        emit sendMsgToManager(farewell);
    }

    void recMsgFromManager(PluginMetaData data) override
    {
        PluginMetaData answer = data;
        answer.fromPlugin = "Echo";
        answer.toPlugin = data.params.value("answerTo").toString();
        emit sendMsgToManager(answer);
    }
    void CreateFileProTools() override {}
    QAction *InitImportTool(QWidget *) override { return nullptr; }
    QAction *InitExportTool() override { return nullptr; }
    void GetFileProActions(QToolBar *) override {}

signals:
    void sendMsgToManager(PluginMetaData data) override;
};

extern "C" Q_DECL_EXPORT int echoVersion()
{
    return 7;
}

#include "echomodule.moc"
