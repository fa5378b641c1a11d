// The host's plug-in manager as its plug-ins see it: it routes PluginMetaData records by receiver name.
// The library "pluginManger" implements it.
#pragma once

#include "plugin/interface/pluginmanager_export.h"
#include "plugin/interface/pluginmetadata.h"

#include <QObject>

class PLUGINMANGER_DECL QTpluginsManger4CAM : public QObject
{
    Q_OBJECT

public:
    static QTpluginsManger4CAM *instance();

    // Delivers `data` to the plug-in or object named in `data.toPlugin`, during the call. `sender` is the
    // widget that stands for the sending plug-in; a record whose receiver is unknown is lost.
    void recMegToPlugin(void *sender, PluginMetaData data);
};
