#include "import/unzipprogress.h"

#include "archive/archive.h"
#include "import/cleanup.h"
#include "platform/gbktext.h"
#include "platform/paths.h"
#include "platform/shell.h"
#include "platform/thread.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QString>

#include <glog/logging.h>

#include <chrono>
#include <iostream>
#include <thread>

using namespace archive;

std::wstring UnzipProgress::sourcePath;
std::wstring UnzipProgress::tarName;
std::wstring UnzipProgress::unzipedFilePath;
std::string UnzipProgress::removeCmd;
std::wstring UnzipProgress::mergeFolder;

namespace {

// Failures of the import are logged under the export job's name and line, where those who read the logs look
// for them.
const char loggedFile[] = "Progress";
const int loggedLine = 139;

// In the place of a clean-up that is not run: the user interface must look at the failure before the job
// ends.
const std::chrono::milliseconds noCleanUpTime(250);

std::wstring withoutEnding(const std::wstring &path)
{
    return path.substr(0, path.rfind(L'.'));
}

// The name of the last item of a gzip file.
std::wstring memberName(const Bit7zLibrary &library, const std::wstring &file)
{
    const BitArchiveInfo info(library, file, BitFormat::GZip);
    info.archiveProperties();
    std::wstring name;
    for (const BitArchiveItem &item : info.items()) {
        name = item.name();
        std::wcout << name << std::endl;
    }
    return name;
}

// The job's folder as named inside the archive. Archivers that store no entry for it begin with something in
// it.
std::wstring jobFolderName(const Bit7zLibrary &library, const std::wstring &file)
{
    const BitArchiveInfo info(library, file, BitFormat::Tar);
    const std::vector<BitArchiveItem> items = info.items();
    for (const BitArchiveItem &item : items) {
        const std::wstring folder = item.topFolder();
        if (!folder.empty())
            return folder;
    }
    return items.empty() ? std::wstring() : items.front().name();
}

// A member that was stored without its ".tar" gets it. `tarPath` as the plug-in writes paths.
void nameTar(const std::wstring &tarPath)
{
    const QString tarStem = QString::fromStdWString(withoutEnding(tarPath));
    qDebug() << tarStem;
    const QString localTar = platform::toLocal(QString::fromStdWString(tarPath));
    if (!QFileInfo::exists(localTar))
        QFile::rename(platform::toLocal(tarStem), localTar);
}

// Why the clean-up command of a failure must not be run; empty when it may. A name from inside the archive
// gets into no command that would act on what it falls apart into: only the archive's own name, which the
// user has seen, may.
QString cleanUpDanger()
{
    const auto text = [](const std::wstring &path) { return QString::fromStdWString(path); };
    const QString tar = text(UnzipProgress::tarName);
    const QString own = QFileInfo(platform::toLocal(text(UnzipProgress::sourcePath))).completeBaseName();
    if (tar != own && text(withoutEnding(UnzipProgress::tarName)) != own && cleanup::fallsApart(tar))
        return "the tar's name falls apart in it, and comes from inside the archive";
    return cleanup::danger(UnzipProgress::removeCmd);
}

void markFailed(ORVEX::COMMON::progress_value<void> *progress)
{
    try {
        progress->set_value(-1.0);
    } catch (...) {
        // A requested cancel throws here too, after storing the same value.
    }
}

} // namespace

UnzipProgress::UnzipProgress() = default;
UnzipProgress::~UnzipProgress() = default;

void UnzipProgress::do_process()
{
    start(this, &UnzipProgress::process);
}

bool UnzipProgress::isFinish()
{
    return hasEnded();
}

double UnzipProgress::get_value()
{
    return currentValue();
}

void UnzipProgress::process(ORVEX::COMMON::progress_value<void> *progress)
{
    const platform::BackgroundWork stepBack;
    const auto fail = [progress] {
        google::LogMessage(loggedFile, loggedLine, google::GLOG_ERROR).stream()
            << platform::gbk("解压文件异常！ 异常位置：") << loggedFile << " : " << loggedLine;
        markFailed(progress);
        // The quote at the end has no partner. The command is known by this text.
        removeCmd +=
            QString::fromStdWString(withoutEnding(unzipedFilePath + tarName)).toStdString() + "*.*\"";
        const QString danger = cleanUpDanger();
        if (danger.isEmpty()) {
            mysystem("cmd", removeCmd);
            return;
        }
        LOG(ERROR) << "the command to clean up was not run: " << danger.toStdString();
        std::this_thread::sleep_for(noCleanUpTime);
    };
    try {
        unpack(progress);
    } catch (const std::exception &error) {
        LOG(ERROR) << "the archive cannot be unpacked: " << error.what();
        fail();
    } catch (...) {
        fail();
    }
}

void UnzipProgress::unpack(ORVEX::COMMON::progress_value<void> *progress)
{
    const Bit7zLibrary library(L"7z.dll");
    const BitExtractor gzipExtractor(library, BitFormat::GZip);
    const BitExtractor tarExtractor(library, BitFormat::Tar);

    const std::wstring member = memberName(library, sourcePath);
    gzipExtractor.extract(sourcePath, unzipedFilePath);
    if (!member.empty())
        tarName = member;

    const std::wstring tarPath = unzipedFilePath + tarName;
    nameTar(tarPath);
    const std::wstring folderName = jobFolderName(library, tarPath);
    const BitExtractor::Unpacked unpacked = tarExtractor.extract(tarPath, unzipedFilePath, mergeFolder);
    if (!unpacked.isMerged)
        mergeFolder.clear();

    progress->set_value(100.0);
    const auto placed = unpacked.names.find(folderName);
    tarName = placed == unpacked.names.end() ? folderName : placed->second;
    removeCmd += "*.tar";
}

void UnzipProgress::mysystem(const std::string &file, const std::string &parameters)
{
    platform::shellExecuteAndWait(platform::wideFromThreadCodePage(file),
                                  platform::wideFromThreadCodePage(parameters), platform::ShowState::Shown);
}
