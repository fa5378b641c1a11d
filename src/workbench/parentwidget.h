// Hands a plug-in the widget that stands for it as the sender of direct messages. No interface class has this
// operation: a host reaches it only through the name under which the module exports
// FileProcess::setParentWidget.
#pragma once

class QWidget;
struct LoadedPlugin;

// Returns whether the module exports the operation, which has then been called.
bool setPluginParentWidget(const LoadedPlugin &plugin, QWidget *widget);
