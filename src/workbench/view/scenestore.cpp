#include "workbench/view/scenestore.h"

#include "cam/odb/job.h"
#include "platform/thread.h"
#include "workbench/view/componentscene.h"

#include <glog/logging.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace {

const int lookInterval = 30; // ms
const std::ptrdiff_t mostAtOnce = 2;
const double readingShare = 0.75; // of a layer's reading, the rest prepares its drawing
const double mostKept = 2e6;      // features of layers that are not shown: some hundred megabytes

std::filesystem::path localPath(const QString &path)
{
    return std::filesystem::u8path(path.toStdString());
}

bool sameChange(const cam::ExportOptions &a, const cam::ExportOptions &b)
{
    return a.resize == b.resize && a.negative == b.negative && a.mirror == b.mirror && a.angle == b.angle &&
           a.xScale == b.xScale && a.yScale == b.yScale;
}

double featuresOf(const cam::LayerImage &image)
{
    double count = 0.0;
    for (const cam::StepImage &step : image.steps)
        count += static_cast<double>(step.features.order.size()) +
                 static_cast<double>(step.features.contours.edgeCount()) / 2.0;
    return count;
}

void logNotes(const QString &layer, const cam::ReadingNotes &notes)
{
    for (const auto &[name, count] : notes.unsupported)
        LOG(WARNING) << "the layer " << layer.toStdString() << ": " << name << " cannot be drawn, " << count
                     << " times";
    for (const auto &[name, count] : notes.simplified)
        LOG(WARNING) << "the layer " << layer.toStdString() << ": " << name << ", " << count << " times";
}

} // namespace

SceneStore::SceneStore(QObject *parent)
    : QObject(parent), m_source(std::make_shared<StepSource>(QString(), QString()))
{
    connect(&m_timer, &QTimer::timeout, this, &SceneStore::look);
}

SceneStore::~SceneStore()
{
    stopAndWait();
}

void SceneStore::setStep(const QString &job, const QString &step, const std::shared_ptr<StepSource> &source)
{
    stopLayers();
    ++m_generation;
    m_job = job;
    m_step = step;
    m_source = source;
    for (auto at = m_entries.begin(); at != m_entries.end();)
        at = at->second.image || at->second.hasFailed ? m_entries.erase(at) : std::next(at);
}

QString SceneStore::keyOf(const ViewRow &row)
{
    return row.file.isEmpty() ? "layer " + row.name : QString("%1 %2").arg(row.part).arg(row.file);
}

std::shared_ptr<const drawing::Scene> SceneStore::scene(const ViewRow &row) const
{
    const auto known = m_entries.find(keyOf(row));
    return known == m_entries.end() ? nullptr : known->second.scene;
}

bool SceneStore::isCurrent(const ViewRow &row) const
{
    const auto known = m_entries.find(keyOf(row));
    return known != m_entries.end() && known->second.scene && sameChange(known->second.options, row.options);
}

void SceneStore::forgetFile(const QString &path)
{
    for (auto at = m_entries.begin(); at != m_entries.end();)
        at = at->second.file == path ? m_entries.erase(at) : std::next(at);
    m_files.erase(path);
    for (const auto &work : m_works)
        work->cancel = work->cancel || work->row.file == path;
}

bool SceneStore::isWanted(const QString &key, const cam::ExportOptions &options) const
{
    for (const ViewRow &row : m_wanted) {
        if (keyOf(row) == key && sameChange(row.options, options))
            return true;
    }
    return false;
}

void SceneStore::want(const QVector<ViewRow> &rows)
{
    m_wanted = rows;
    for (const auto &work : m_works)
        work->cancel = work->cancel || !isWanted(work->key, work->row.options);
    for (const ViewRow &row : rows) {
        const auto known = m_entries.find(keyOf(row));
        if (known != m_entries.end())
            known->second.used = ++m_uses;
    }
    startNext();
    if (isBusy())
        emit progressed();
}

void SceneStore::startNext()
{
    for (const ViewRow &row : m_wanted) {
        const auto atWork =
            std::count_if(m_works.begin(), m_works.end(), [](const auto &work) { return !work->cancel; });
        if (atWork >= mostAtOnce)
            return;
        const QString key = keyOf(row);
        const auto known = m_entries.find(key);
        if (known != m_entries.end() && sameChange(known->second.options, row.options) &&
            (known->second.scene || known->second.hasFailed || row.part == ViewRow::wholeFile))
            continue;
        bool isUnderWay = false;
        for (const auto &work : m_works)
            isUnderWay = isUnderWay || (work->key == key && !work->cancel);
        if (isUnderWay)
            continue;
        m_works.emplace_back(new Work);
        Work *const work = m_works.back().get();
        work->key = key;
        work->generation = m_generation;
        work->row = row;
        if (known != m_entries.end())
            work->image = known->second.image;
        const auto file = m_files.find(row.file);
        if (file != m_files.end())
            work->file = file->second;
        work->source = m_source;
        work->task = std::async(std::launch::async, run, work, m_job, m_step, std::ref(*m_source));
        m_timer.start(lookInterval);
    }
}

void SceneStore::stopLayers()
{
    const auto isLayer = [](const ViewRow &row) { return row.file.isEmpty(); };
    m_wanted.erase(std::remove_if(m_wanted.begin(), m_wanted.end(), isLayer), m_wanted.end());
    for (const auto &work : m_works)
        work->cancel = work->cancel || isLayer(work->row);
}

void SceneStore::stopAndWait()
{
    m_wanted.clear();
    for (const auto &work : m_works)
        work->cancel = true;
    for (const auto &work : m_works)
        work->task.wait();
}

bool SceneStore::isBusy() const
{
    return std::any_of(m_works.begin(), m_works.end(), [](const auto &work) { return !work->cancel; });
}

QString SceneStore::progress() const
{
    QStringList parts;
    for (const auto &work : m_works) {
        if (!work->cancel)
            parts << tr("Reading %1 ... %2 %").arg(work->row.name).arg(int(work->percent));
    }
    return parts.join('\n');
}

void SceneStore::readFile(Work &work, const std::function<void(double)> &report)
{
    if (!work.file)
        work.file = std::make_shared<const LayerFile>(work.row.file, report);
    if (work.row.part != ViewRow::wholeFile)
        work.scene = work.file->scene(work.row.part, [&report] { report(0.0); });
}

void SceneStore::run(Work *work, const QString &job, const QString &step, StepSource &source)
{
    const platform::BackgroundWork background;
    const auto report = [work](double share) {
        if (work->cancel)
            throw drawing::Cancelled();
        work->percent = 100.0 * share;
    };
    double builtFrom = 0.0;
    try {
        if (!work->row.file.isEmpty()) {
            readFile(*work, report);
            return;
        }
        if (!work->image) {
            builtFrom = readingShare;
            const cam::Job folder(localPath(job));
            cam::ReadingNotes notes;
            cam::LayerImage image =
                folder.readLayer(step.toStdString(), work->row.name.toStdString(), notes,
                                 [&report](double share) { report(readingShare * share); });
            logNotes(work->row.name, notes);
            if (image.type == "COMPONENT")
                addComponents(image, *source.read([&report, builtFrom] { report(builtFrom); }));
            work->image = std::make_shared<const cam::LayerImage>(std::move(image));
        }
        const auto reportRest = [&report, builtFrom](double share) {
            report(builtFrom + (1.0 - builtFrom) * share);
        };
        if (work->image->type == "COMPONENT")
            work->scene = std::make_shared<ComponentScene>(
                work->image, source.read([&report, builtFrom] { report(builtFrom); }), work->row.options,
                reportRest);
        else
            work->scene = std::make_shared<drawing::LayerScene>(work->image, work->row.options, reportRest);
    } catch (const std::exception &error) {
        work->error = QString::fromStdString(error.what());
    } catch (const drawing::Cancelled &) { // nobody asks for the result
    }
}

void SceneStore::look()
{
    std::vector<std::unique_ptr<Work>> finished;
    for (auto at = m_works.begin(); at != m_works.end();) {
        if ((*at)->task.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
            ++at;
            continue;
        }
        finished.push_back(std::move(*at));
        at = m_works.erase(at);
    }
    if (finished.empty()) {
        emit progressed();
        return;
    }
    for (const auto &work : finished)
        take(*work);
    startNext();
    if (m_works.empty())
        m_timer.stop();
    forgetUnused();
    emit changed();
}

void SceneStore::take(Work &work)
{
    const bool isLayer = work.row.file.isEmpty();
    if (work.row.part == ViewRow::wholeFile)
        return takeFile(work);
    if ((!work.scene && work.error.isEmpty()) || (isLayer && work.generation != m_generation))
        return;
    Entry &entry = m_entries[work.key];
    entry.image = work.image;
    entry.scene = work.scene;
    entry.file = work.row.file;
    entry.options = work.row.options;
    entry.hasFailed = !work.error.isEmpty();
    entry.size = work.image ? featuresOf(*work.image) : 0.0;
    entry.used = ++m_uses;
    if (entry.hasFailed && !work.cancel)
        emit failed(work.row.name, work.error);
}

void SceneStore::takeFile(const Work &work)
{
    if (work.cancel)
        return;
    Entry &entry = m_entries[work.key];
    entry.file = work.row.file;
    entry.hasFailed = !work.error.isEmpty();
    if (entry.hasFailed) {
        emit fileFailed(work.row.file, work.error);
        return;
    }
    m_files[work.row.file] = work.file;
    emit fileRead(work.row.file, work.file->parts(), work.file->remarks());
}

void SceneStore::forgetUnused()
{
    for (;;) {
        double kept = 0.0;
        auto oldest = m_entries.end();
        for (auto at = m_entries.begin(); at != m_entries.end(); ++at) {
            bool isShown = !at->second.image;
            for (const ViewRow &row : m_wanted)
                isShown = isShown || keyOf(row) == at->first;
            if (isShown)
                continue;
            kept += at->second.size;
            if (oldest == m_entries.end() || at->second.used < oldest->second.used)
                oldest = at;
        }
        if (kept <= mostKept)
            return;
        m_entries.erase(oldest);
    }
}
