// The job context that another plug-in of the host sends with message 10000503. The sender owns it.
#pragma once

#include <QString>

#include <string>
#include <vector>

struct ExportJobInfo
{
    QString stepName;
    QString folderPath; // the job's folder, the default output folder
    QString jobName;
    std::vector<std::string> list; // exchanged with the dialog's; the dialog does not read it
};
