#include "plugin/importlink.h"

#include "plugin/fileprocess.h"

ImportLink::ImportLink(FileProcess *plugin) : m_plugin(plugin) {}

bool ImportLink::isAlive() const
{
    return !m_plugin.isNull();
}

QWidget *ImportLink::dialogParent() const
{
    return m_plugin->m_importParent;
}

QString ImportLink::jobPath() const
{
    return m_plugin->m_config.jobPath;
}

void ImportLink::createFolder(const QString &folder) const
{
    m_plugin->CheckDir(folder);
}

bool ImportLink::unpack(const QString &file, QString &jobName) const
{
    m_plugin->m_filePath = file;
    return m_plugin->copyDirectory(file, jobName, true);
}

void ImportLink::announce(const QString &file) const
{
    m_plugin->m_filePath = file; // while an archive was unpacked, another import may have set it
    m_plugin->sendPath2Mangager();
}

void ImportLink::runHidden(const std::string &program, const std::string &parameters) const
{
    m_plugin->mysystem(program, parameters);
}
