#include "plugin/fileprocess.h"

#include "export/export.h"
#include "import/importcommand.h"
#include "import/jobimport.h"
#include "platform/module.h"
#include "platform/shell.h"
#include "plugin/importlink.h"
#include "plugin/interface/exportjobinfo.h"
#include "version.h"

#include <QAction>
#include <QIcon>
#include <QToolBar>

// The version that tools find in the module's file. Nothing in the program reads it, so only its external
// linkage keeps the compiler from leaving it out.
extern const char fileProcessVersion[];
const char fileProcessVersion[] = FILE_PROCESS_MODULE_VERSION;

namespace {

QAction *newAction(const char *iconPath, const QString &text)
{
    return new QAction(QIcon(iconPath), text, nullptr);
}

} // namespace

FileProcess::FileProcess()
{
    // The meta-type below and open dialogs outlive this object; their code must not go with it.
    platform::keepModuleLoaded();
    qRegisterMetaType<PluginMetaData>("PluginMetaData");
    qRegisterMetaType<PluginMetaData>("PluginMetaData&");
}

FileProcess::FileProcess(QWidget * /*unused*/) {}

void FileProcess::CreateFileProTools()
{
    m_importAction = newAction("://File_Process//Resources//import.png", tr("import"));
    m_exportAction = newAction("://File_Process//Resources//export.png", tr("export"));
    m_actions << m_importAction << m_exportAction;
}

QAction *FileProcess::InitImportTool(QWidget *parent)
{
    m_importParent = parent;
    const QPointer<FileProcess> self(this);
    readCfgFile();
    QAction *action = newAction("://File_Process//Resources//import.png", tr("import"));
    if (!self) // a receiver of the job folder has destroyed this object
        return action;
    m_importAction = action;
    connect(m_importAction, SIGNAL(triggered(bool)), this, SLOT(on_ImportACT_clicked()));
    connect(this, SIGNAL(ImportSignal()), this, SLOT(on_ImportACT_clicked()));
    return m_importAction;
}

QAction *FileProcess::InitExportTool()
{
    m_exportAction = newAction("://File_Process//Resources//export.png", tr("export"));
    connect(m_exportAction, SIGNAL(triggered(bool)), this, SLOT(on_ExportACT_clicked()));
    connect(this, SIGNAL(ExportSignal()), this, SLOT(on_ExportACT_clicked()));
    return m_exportAction;
}

void FileProcess::GetFileProActions(QToolBar *bar)
{
    for (QAction *action : qAsConst(m_actions))
        bar->addAction(action);
    connect(m_exportAction, SIGNAL(triggered(bool)), this, SLOT(on_ExportACT_clicked()));
}

void FileProcess::setParentWidget(QWidget *widget)
{
    m_parentWidget = widget;
}

void FileProcess::on_ImportACT_clicked()
{
    ImportCommand(ImportLink(this)).run();
}

bool FileProcess::copyDirectory(QString source, QString &name, bool)
{
    return JobImport(ImportLink(this), source).run(name);
}

void FileProcess::InitExportInterface(QObject *context)
{
    auto *dialog = new Export(nullptr);
    m_exportDlg = dialog;
    dialog->setExportConfig(m_config);
    dialog->setJobInfo(reinterpret_cast<ExportJobInfo *>(context));
    dialog->setNewProfileList(m_newProfileList);
    connect(dialog, SIGNAL(on_send_exprot_xml_to_fileprocess(PluginMetaData)), this,
            SLOT(on_send_exprot_xml(PluginMetaData)));
    dialog->show();
}

void FileProcess::exportNewProfile(QObject *list)
{
    if (!list)
        return;
    m_newProfileList.swap(*reinterpret_cast<QList<std::string> *>(list));
    if (m_exportDlg)
        m_exportDlg->setNewProfileList(m_newProfileList);
}

void FileProcess::mysystem(const std::string &file, const std::string &parameters)
{
    platform::shellExecuteAndWait(platform::wideFromSystemCodePage(file),
                                  platform::wideFromSystemCodePage(parameters), platform::ShowState::Hidden);
}
