// Takes the plug-ins' sendMsgToManager signals for the plug-in manager.
#pragma once

#include "pluginmanger/pluginhost.h"

class SignalRelay : public QObject
{
    Q_OBJECT

public slots:
    void route(PluginMetaData data) { PluginHost::instance().deliver(data); }
};
