// The message record that the host's plug-ins exchange. The host declares it; it is copied by value through
// the plug-in manager.
#pragma once

#include <QMap>
#include <QMetaType>
#include <QString>
#include <QVariant>

struct PluginMetaData
{
    QString fromPlugin; // name of the sending plug-in, may be empty
    QString toPlugin;   // name of the receiving plug-in, such as "Graphic_View.dll"
    qint32 msgType = 0; // the host's message number
    QMap<QString, QVariant> params;
    void *payload = nullptr; // the message's object, owned by the sender and valid during the delivery only
};

Q_DECLARE_METATYPE(PluginMetaData)
