// The plug-in object: it gives the host its Import and Export actions, exchanges messages with the host's
// other plug-ins, and opens the Export dialog when the job context arrives.
//
// It runs on the host's user-interface thread and deletes nothing that it creates: actions, dialogs and
// windows are left to their Qt parents, to themselves, or to the host.
#pragma once

#include "export/exportconfig.h"
#include "plugin/interface/export_macro.h"
#include "plugin/interface/fileprointerface.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <string>

class Export;
class QAction;
class QToolBar;

class FILE_PROCESS_EXPORT FileProcess : public QObject, public FileProInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID FileProInterface_iid)
    Q_INTERFACES(FileProInterface)

public:
    // The one that the plug-in entry uses: registers PluginMetaData, so that the record can travel through
    // queued connections, and under its reference name too, so that a signal that carries it by value matches
    // on_send_exprot_xml.
    FileProcess();
    // `unused` becomes no parent; registers nothing.
    explicit FileProcess(QWidget *unused);

    void recMsgFromManager(PluginMetaData data) override;
    // Creates both actions and offers them to GetFileProActions; connects neither.
    void CreateFileProTools() override;
    // Reads the host's settings file and returns a new, connected Import action. `parent` becomes the parent
    // of the import's dialogs.
    QAction *InitImportTool(QWidget *parent) override;
    // Returns a new, connected Export action.
    QAction *InitExportTool() override;
    // Adds the actions of CreateFileProTools to `bar`; connects the Export action only.
    void GetFileProActions(QToolBar *bar) override;

    // `widget` is the sender of the records that go to the manager directly; set it before Export is used.
    void setParentWidget(QWidget *widget);

signals:
    // Hands a record to the host's manager, which must be connected directly: payloads live during the
    // emission.
    void sendMsgToManager(PluginMetaData data) override;
    void ImportSignal();
    void ExportSignal();

public slots:
    void on_ExportACT_clicked();
    void on_ImportACT_clicked();
    void on_send_exprot_xml(PluginMetaData &data);

private:
    friend class ImportLink;         // the import's way to what it needs of this object
    friend struct FileProcessAccess; // the tests' way to the private operations

    void InitExportInterface(QObject *context);
    void exportNewProfile(QObject *list);
    void sendPath2Mangager();

    void readCfgFile();
    void CheckDir(QString path);

    bool copyDirectory(QString source, QString &name, bool);
    void mysystem(const std::string &file, const std::string &parameters);

    QPointer<Export> m_exportDlg; // the dialog created last; it deletes itself when it is closed
    QString m_filePath;
    QPointer<QWidget> m_importParent;
    QPointer<QWidget> m_parentWidget;
    QAction *m_importAction = nullptr;
    QAction *m_exportAction = nullptr;
    QList<QAction *> m_actions;
    QList<std::string> m_newProfileList;
    ExportConfig m_config;
};
