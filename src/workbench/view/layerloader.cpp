#include "workbench/view/layerloader.h"

#include <glog/logging.h>

#include <chrono>

namespace {

const int lookInterval = 40; // ms

// Ends an export that nobody waits for any more.
struct Cancelled
{
};

std::filesystem::path localPath(const QString &path)
{
    return std::filesystem::u8path(path.toStdString());
}

} // namespace

LayerLoader::LayerLoader(QObject *parent) : QObject(parent)
{
    connect(&m_timer, &QTimer::timeout, this, &LayerLoader::look);
}

LayerLoader::~LayerLoader()
{
    stop();
}

void LayerLoader::load(const QString &job, const QString &step, const QString &layer,
                       const cam::ExportOptions &options)
{
    stop();
    m_work.reset(new Work);
    cam::ExportRequest &request = m_work->request;
    request.job = localPath(job);
    request.step = step.toStdString();
    request.layer = layer.toStdString();
    request.options = options;
    request.options.file = localPath(m_folder.filePath("layer.gds"));
    request.options.profileOnTop = true;
    request.options.report = [work = m_work.get()](double share) {
        if (work->cancel)
            throw Cancelled();
        work->percent = 100.0 * share;
    };
    request.note = [layer = request.layer](const cam::ExportNote &note) {
        LOG(WARNING) << "the layer " << layer << ": " << note.text;
    };
    m_work->task = std::async(std::launch::async, run, m_work.get());
    m_timer.start(lookInterval);
    emit progressed(0.0);
}

void LayerLoader::stop()
{
    m_timer.stop();
    if (!m_work)
        return;
    m_work->cancel = true; // the next report ends the export
    m_work->task.wait();
    m_work.reset();
}

void LayerLoader::run(Work *work)
{
    try {
        cam::exportLayer(work->request);
        work->drawing = readGds(QString::fromStdString(work->request.options.file.u8string()));
    } catch (const std::exception &error) {
        work->error = QString::fromStdString(error.what());
    } catch (const Cancelled &) { // nobody asks for the result
    }
}

void LayerLoader::look()
{
    if (m_work->task.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
        emit progressed(m_work->percent);
        return;
    }
    m_timer.stop();
    const std::unique_ptr<Work> work = std::move(m_work);
    if (!work->error.isEmpty())
        emit failed(work->error);
    else
        emit loaded(work->drawing);
}
