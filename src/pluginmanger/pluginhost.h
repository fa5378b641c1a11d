// What a host does with the plug-in manager and its plug-ins never see: loading modules, and registering the
// host's own parts as receivers of messages.
//
//     PluginHost &host = PluginHost::instance();
//     host.addReceiver("ListBar_PNList", [](const PluginMetaData &data) { ... });
//     host.loadFolder(QCoreApplication::applicationDirPath() + "/plugins");
//     for (const LoadedPlugin &plugin : host.plugins())
//         toolbar->addAction(plugin.plugin->InitImportTool(window));
//
// Everything here belongs to the user-interface thread.
#pragma once

#include "plugin/interface/fileprointerface.h"
#include "plugin/interface/pluginmanager_export.h"

#include <QLibrary>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

struct LoadedPlugin
{
    QString name; // the module's name without its folder, ending or "lib" before it: "File_Process"
    QString file; // the module's absolute path
    QObject *object = nullptr;
    FileProInterface *plugin = nullptr; // the same object
};

class PLUGINMANGER_DECL PluginHost
{
public:
    using Receiver = std::function<void(const PluginMetaData &)>;

    static PluginHost &instance();

    // Loads every module of `folder`, in the order of the file names. A file that is no module, or a module
    // that is no plug-in of this host or cannot be loaded, is left out with a log line. Returns how many were
    // loaded.
    int loadFolder(const QString &folder);
    // Loads one module; loading a module twice changes nothing. Returns whether the plug-in is there, and
    // otherwise says in `error` why not.
    bool load(const QString &file, QString *error = nullptr);

    const QVector<LoadedPlugin> &plugins() const { return m_plugins; }

    // The module's exported function of the first of `symbols` that it has, or null. Compilers name a C++
    // function differently, so a caller passes one name for each.
    QFunctionPointer resolve(const LoadedPlugin &plugin, const QStringList &symbols) const;

    // Lets `receiver` take the messages addressed to `name`, in place of an earlier receiver of that name.
    // Names match without regard to letter case and to a ".dll" ending.
    void addReceiver(const QString &name, Receiver receiver);
    void removeReceiver(const QString &name);

    // Hands `data` to its receiver and returns when the receiver is done with it. A message without a
    // receiver is lost, with a log line; the result says which of the two happened.
    bool deliver(const PluginMetaData &data);

    // Destroys the plug-in objects, the last one loaded first. The caller has closed their windows before.
    // The modules' code stays mapped until the process ends: constant texts and meta-types of a module may
    // still be referred to.
    void destroyPlugins();
    // Destroys them likewise and loads them again, so that they read the settings anew. Returns the number of
    // those that are loaded then.
    int restartPlugins();

private:
    struct NamedReceiver
    {
        QString key;
        Receiver receiver;
    };

    PluginHost();
    Q_DISABLE_COPY(PluginHost)

    QVector<LoadedPlugin> m_plugins;
    QVector<NamedReceiver> m_receivers;
};
