#include "workbench/parentwidget.h"

#include "pluginmanger/pluginhost.h"

namespace {

// void FileProcess::setParentWidget(QWidget *), as 64-bit compilers name it.
const char itaniumName[] = "_ZN11FileProcess15setParentWidgetEP7QWidget"; // GCC, Clang, MinGW-w64
const char msvcName[] = "?setParentWidget@FileProcess@@QEAAXPEAVQWidget@@@Z";

} // namespace

bool setPluginParentWidget(const LoadedPlugin &plugin, QWidget *widget)
{
    void *object = plugin.object->qt_metacast("FileProcess");
    const QFunctionPointer function = PluginHost::instance().resolve(plugin, {itaniumName, msvcName});
    if (!object || !function)
        return false;
    // On every 64-bit platform an operation takes its object like a first argument.
    using Operation = void (*)(void *object, QWidget *widget);
    reinterpret_cast<Operation>(function)(object, widget);
    return true;
}
