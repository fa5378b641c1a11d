// What the host's plug-in manager needs of every plug-in. Declared by the host; the order of the operations
// is the order of the slots in the virtual table and therefore part of the interface.
#pragma once

#include "plugin/interface/pluginmetadata.h"

class PluginInterface
{
public:
    virtual ~PluginInterface() = default;

    virtual void recMsgFromManager(PluginMetaData data) = 0;
    virtual void sendMsgToManager(PluginMetaData data) = 0;
};
