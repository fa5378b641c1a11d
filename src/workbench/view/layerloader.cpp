#include "workbench/view/layerloader.h"

#include "run/orvexapi.h"

#include <QDir>
#include <QFile>

#include <chrono>
#include <future>

namespace {

const int lookInterval = 40;       // ms
const double databaseUnit = 0.001; // um

} // namespace

LayerLoader::LayerLoader(QObject *parent) : QObject(parent)
{
    connect(&m_timer, &QTimer::timeout, this, &LayerLoader::look);
}

LayerLoader::~LayerLoader()
{
    stop();
}

void LayerLoader::load(const QString &job, const QString &step, const QString &layer)
{
    stop();
    m_work.reset(new Work);
    m_work->job = job.toStdString();
    m_work->step = step.toStdString();
    m_work->layer = layer.toStdString();
    QFile::remove(m_folder.filePath("layer.gds"));
    m_work->file = QDir::toNativeSeparators(m_folder.filePath("layer.gds")).toStdString();
    m_work->task = std::async(std::launch::async, run, m_work.get());
    m_timer.start(lookInterval);
    emit progressed(0.0);
}

void LayerLoader::stop()
{
    m_timer.stop();
    if (!m_work)
        return;
    {
        std::lock_guard<std::mutex> lock(m_work->mutex);
        m_work->cancel = true; // the next progress report ends the export
    }
    m_work->task.wait();
    m_work.reset();
}

void LayerLoader::run(Work *work)
{
    try {
        work->exported =
            ORVEX::API::layer_export(work->job, work->step, work->layer, ORVEX::API::export_type::gds,
                                     work->file, work, databaseUnit, 0.0, false, false, false, false, 0, 0, 0,
                                     0, 0, 0, true, 0.0, "X", true, 1.0, 1.0, true, 2, 6, 1, 0, {}, 1);
        if (work->exported || QFile::exists(QString::fromStdString(work->file)))
            work->drawing = readGds(QString::fromStdString(work->file));
        else
            work->error = "The CAM library cannot export this layer; the log says why.";
    } catch (const std::exception &error) {
        work->error = QString::fromStdString(error.what());
    } catch (const char *reason) { // how a cancel ends the export
        work->error = reason;
    }
}

void LayerLoader::look()
{
    if (m_work->task.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
        double percent = 0.0;
        {
            std::lock_guard<std::mutex> lock(m_work->mutex);
            percent = m_work->value;
        }
        emit progressed(percent);
        return;
    }
    m_timer.stop();
    const std::unique_ptr<Work> work = std::move(m_work);
    if (!work->error.isEmpty())
        emit failed(work->error);
    else
        emit loaded(work->drawing, work->exported);
}
