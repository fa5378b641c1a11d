// A plug-in of another host.
#include <QObject>
#include <QtPlugin>

class Stranger : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "Somebody.Else")
};

#include "strangermodule.moc"
