// The host's own parts as the plug-ins know them: the graphics view and the job list, which give the job
// context for an export, and the layer list, which takes in what a plug-in imported.
#pragma once

#include "plugin/interface/exportjobinfo.h"
#include "plugin/interface/pluginmetadata.h"

#include <QObject>
#include <QStringList>

class HostMessages : public QObject
{
    Q_OBJECT

public:
    explicit HostMessages(QObject *parent = nullptr);
    ~HostMessages() override;

    // What the next request for the job context is answered with; an empty job name means that no job is
    // open.
    void setJobContext(const ExportJobInfo &context) { m_context = context; }

signals:
    // The job context is about to be given away, and an export to begin.
    void contextRequested();
    // The plug-in says in which folder the jobs are; it may be empty.
    void jobFolderAnnounced(const QString &folder);
    // The plug-in has taken in this file.
    void fileImported(const QString &path);
    // An export of these layers to `folder` begins.
    void exportReported(const QString &folder, const QStringList &layers);
    // An export was asked for, but no job is open.
    void exportRefused();

private:
    void takeContextRequest(const QString &receiver, const PluginMetaData &data);
    void takeListMessage(const PluginMetaData &data);
    void answerContextRequest(const QString &sender);

    ExportJobInfo m_context;
    bool m_answerPending = false;
};
