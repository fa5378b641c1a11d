// The plug-in manager as plug-ins see it.
#include "plugin/interface/pluginmanager.h"

#include "pluginmanger/pluginhost.h"

QTpluginsManger4CAM *QTpluginsManger4CAM::instance()
{
    static QTpluginsManger4CAM manager;
    return &manager;
}

void QTpluginsManger4CAM::recMegToPlugin(void * /*sender*/, PluginMetaData data)
{
    PluginHost::instance().deliver(data);
}
