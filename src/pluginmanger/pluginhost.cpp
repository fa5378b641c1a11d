#include "pluginmanger/pluginhost.h"

#include "pluginmanger/signalrelay.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QPluginLoader>

#include <glog/logging.h>

#include <algorithm>

namespace {

// What two names that mean the same receiver have in common.
QString receiverKey(const QString &name)
{
    QString key = name.toLower();
    if (key.endsWith(".dll"))
        key.chop(4);
    return key;
}

// "File_Process" of both "File_Process.dll" and "libFile_Process.so".
QString moduleName(const QString &file)
{
    QString name = QFileInfo(file).completeBaseName();
    if (name.startsWith("lib") && !file.endsWith(".dll", Qt::CaseInsensitive))
        name.remove(0, 3);
    return name;
}

SignalRelay *signalRelay()
{
    static SignalRelay relay;
    return &relay;
}

bool connectToManager(QObject *plugin)
{
    // Direct: the payload of a message lives only while the signal is emitted.
    return QObject::connect(plugin, SIGNAL(sendMsgToManager(PluginMetaData)), signalRelay(),
                            SLOT(route(PluginMetaData)), Qt::DirectConnection);
}

} // namespace

PluginHost &PluginHost::instance()
{
    static PluginHost host;
    return host;
}

PluginHost::PluginHost()
{
    // Before a module does it: what is registered first also outlives the modules.
    qRegisterMetaType<PluginMetaData>("PluginMetaData");
}

int PluginHost::loadFolder(const QString &folder)
{
    const QDir dir(folder);
    if (!dir.exists()) {
        LOG(ERROR) << "there is no plug-in folder " << folder.toStdString();
        return 0;
    }
    int loaded = 0;
    for (const QFileInfo &file : dir.entryInfoList(QDir::Files, QDir::Name)) {
        if (!QLibrary::isLibrary(file.fileName()))
            continue;
        QString error;
        if (load(file.absoluteFilePath(), &error))
            ++loaded;
        else
            LOG(ERROR) << "the plug-in " << file.absoluteFilePath().toStdString()
                       << " is not loaded: " << error.toStdString();
    }
    return loaded;
}

bool PluginHost::load(const QString &file, QString *error)
{
    const auto fail = [error](const QString &reason) {
        if (error)
            *error = reason;
        return false;
    };
    const QString path = QFileInfo(file).absoluteFilePath();
    const bool known = std::any_of(m_plugins.cbegin(), m_plugins.cend(),
                                   [&path](const LoadedPlugin &plugin) { return plugin.file == path; });
    if (known)
        return true;

    QPluginLoader loader(path);
    // Read before anything of the module runs: a module of another kind is not even loaded.
    const QString interfaceName = loader.metaData().value("IID").toString();
    if (interfaceName.isEmpty())
        return fail("it is no Qt plug-in of this platform and Qt version (" + loader.errorString() + ")");
    if (interfaceName != FileProInterface_iid)
        return fail("its interface is \"" + interfaceName + "\", expected \"" FileProInterface_iid "\"");

    loader.setLoadHints(QLibrary::PreventUnloadHint);
    QObject *object = loader.instance();
    if (!object)
        return fail(loader.errorString());
    auto *plugin = qobject_cast<FileProInterface *>(object);
    if (!plugin)
        return fail(QString("its object, a %1, does not implement the interface its metadata names")
                        .arg(object->metaObject()->className()));
    if (!connectToManager(object))
        return fail(QString("its object, a %1, has no signal sendMsgToManager(PluginMetaData)")
                        .arg(object->metaObject()->className()));

    m_plugins.append({moduleName(path), path, object, plugin});
    addReceiver(moduleName(path), [plugin](const PluginMetaData &data) { plugin->recMsgFromManager(data); });
    LOG(INFO) << "loaded the plug-in " << path.toStdString();
    return true;
}

QFunctionPointer PluginHost::resolve(const LoadedPlugin &plugin, const QStringList &symbols) const
{
    for (const QString &symbol : symbols) {
        if (QFunctionPointer function = QLibrary::resolve(plugin.file, symbol.toLatin1().constData()))
            return function;
    }
    return nullptr;
}

void PluginHost::addReceiver(const QString &name, Receiver receiver)
{
    removeReceiver(name);
    m_receivers.append({receiverKey(name), std::move(receiver)});
}

void PluginHost::removeReceiver(const QString &name)
{
    const QString key = receiverKey(name);
    m_receivers.erase(std::remove_if(m_receivers.begin(), m_receivers.end(),
                                     [&key](const NamedReceiver &known) { return known.key == key; }),
                      m_receivers.end());
}

bool PluginHost::deliver(const PluginMetaData &data)
{
    const QString key = receiverKey(data.toPlugin);
    const auto found = std::find_if(m_receivers.cbegin(), m_receivers.cend(),
                                    [&key](const NamedReceiver &known) { return known.key == key; });
    if (found == m_receivers.cend()) {
        LOG(WARNING) << "the message " << data.msgType << " to \"" << data.toPlugin.toStdString()
                     << "\" is lost: there is no such receiver";
        return false;
    }
    const Receiver receiver = found->receiver; // a copy: the receiver may remove itself during the delivery
    receiver(data);
    return true;
}

void PluginHost::destroyPlugins()
{
    while (!m_plugins.isEmpty()) {
        const LoadedPlugin plugin = m_plugins.takeLast();
        removeReceiver(plugin.name);
        delete plugin.object;
    }
}

int PluginHost::restartPlugins()
{
    QStringList files;
    for (const LoadedPlugin &plugin : m_plugins)
        files << plugin.file;
    destroyPlugins();
    for (const QString &file : files) {
        QString error;
        if (!load(file, &error))
            LOG(ERROR) << "the plug-in " << file.toStdString()
                       << " is not loaded again: " << error.toStdString();
    }
    return m_plugins.size();
}
