#include "workbench/view/graphicview.h"

#include "cam/model/flatten.h"
#include "workbench/view/boardview.h"
#include "workbench/view/filescenes.h"

#include <QDragEnterEvent>
#include <QMimeData>
#include <QUrl>
#include <QVBoxLayout>

#include <glog/logging.h>

namespace {

const int lookInterval = 30;            // ms
const double outlineTolerance = 1000.0; // nanometres

QStringList layerFilesIn(const QMimeData *data)
{
    QStringList files;
    for (const QUrl &url : data->urls()) {
        if (url.isLocalFile() && isLayerFile(url.toLocalFile()))
            files << url.toLocalFile();
    }
    return files;
}

} // namespace

GraphicView::GraphicView(QWidget *parent) : QWidget(parent), m_view(new BoardView)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
    setFocusProxy(m_view);
    setAcceptDrops(true);
    m_view->addOverlay(&m_texts);
    m_view->addOverlay(&m_names);
    m_view->addOverlay(&m_differences);
    m_view->addOverlay(&m_found);
    m_view->addOverlay(&m_inspection);
    m_view->addOverlay(&m_figures);
    m_view->addOverlay(&m_measuring);
    connect(m_view, &BoardView::pointed, this, &GraphicView::pointed);
    connect(m_view, &BoardView::escaped, this, &GraphicView::clearMarks);
    connect(m_view, &BoardView::clicked, this, &GraphicView::press);
    connect(m_view, &BoardView::moved, this, [this](const cam::Point &place) {
        if (!m_measuring.isOn())
            return;
        m_measuring.moveTo(place, reach());
        m_view->update();
    });
    connect(&m_store, &SceneStore::progressed, this, [this] { m_view->setProgress(m_store.progress()); });
    connect(&m_store, &SceneStore::changed, this, [this] {
        m_view->setProgress(m_store.progress());
        if (!m_rows.isEmpty())
            showScenes();
    });
    connect(&m_store, &SceneStore::fileFailed, this, &GraphicView::fileFailed);
    connect(&m_store, &SceneStore::fileRead, this,
            [this](const QString &path, const QStringList &parts, const QStringList &remarks) {
                emit fileRead(path, parts);
                if (!remarks.isEmpty())
                    emit fileRemarked(remarks.join('\n'));
            });
    connect(&m_store, &SceneStore::failed, this, [this](const QString &name, const QString &reason) {
        LOG(ERROR) << "the layer " << name.toStdString() << " cannot be shown: " << reason.toStdString();
        m_failure = tr("%1 cannot be shown.\n%2").arg(name, reason);
    });
    connect(&m_factsTimer, &QTimer::timeout, this, &GraphicView::lookAtFacts);
}

GraphicView::~GraphicView() = default;

void GraphicView::openStep(const QString &job, const QString &step)
{
    m_source = std::make_shared<StepSource>(job, step);
    m_store.setStep(job, step, m_source);
    m_inspection.setSource(m_source);
    m_job = job;
    m_step = step;
    clearFound();
    m_hasBoard = false;
    m_rows.clear();
    emit sourceChanged();
}

void GraphicView::showRows(const QVector<ViewRow> &rows)
{
    m_rows = rows;
    m_failure.clear();
    m_store.want(rows);
    showScenes();
}

void GraphicView::showText(const QString &text)
{
    m_store.stopLayers();
    clearFound();
    if (m_source) {
        m_source.reset();
        m_inspection.setSource(m_source);
        emit sourceChanged();
    }
    m_rows.clear();
    m_hasBoard = false;
    m_text = text;
    m_view->showText(text);
}

// Scenes that are there; those that are being read come later. A scene of an earlier change stays until then.
void GraphicView::showScenes()
{
    std::vector<drawing::ColoredScene> scenes;
    QVector<ViewRow> shown;
    bool isEmpty = true;
    for (const ViewRow &row : m_rows) {
        const std::shared_ptr<const drawing::Scene> scene = m_store.scene(row);
        if (!scene)
            continue;
        scenes.push_back({scene, row.color, row.opacity});
        isEmpty = isEmpty && scene->extent().isEmpty();
        if (m_store.isCurrent(row))
            shown << row;
        if (const auto *layer = dynamic_cast<const drawing::LayerScene *>(scene.get()); layer && !m_hasBoard)
            takeBoard(*layer);
    }
    std::vector<std::shared_ptr<const drawing::Scene>> measured;
    std::vector<FigureInspection::Layer> figures;
    std::vector<TextLabels::Layer> texts;
    std::vector<Inspection::Layer> inspected;
    std::vector<ComponentNames::Layer> named;
    std::vector<Differences::Layer> compared;
    for (auto row = m_rows.crbegin(); row != m_rows.crend(); ++row) {
        const std::shared_ptr<const drawing::Scene> scene = m_store.scene(*row);
        if (scene)
            measured.push_back(scene);
        if (const auto file = std::dynamic_pointer_cast<const drawing::FigureScene>(scene)) {
            figures.push_back({row->name, file});
            texts.push_back({file, row->color});
        }
        if (const auto layer = std::dynamic_pointer_cast<const drawing::LayerScene>(m_store.scene(*row))) {
            inspected.push_back({row->name, layer});
            if (const auto components = std::dynamic_pointer_cast<const ComponentScene>(layer))
                named.push_back({components, row->color});
            compared.push_back({row->name, layer});
        }
    }
    m_measuring.setScenes(measured);
    m_inspection.setLayers(inspected);
    m_figures.setLayers(figures);
    m_texts.setLayers(texts);
    m_names.setLayers(named);
    m_differences.setLayers(m_job, m_step,
                            m_areDifferencesSeen ? compared : std::vector<Differences::Layer>());
    const std::vector<drawing::ColoredScene> differing = m_differences.scenes();
    scenes.insert(scenes.end(), differing.begin(), differing.end());
    std::vector<std::shared_ptr<const drawing::LayerScene>> layers;
    layers.reserve(inspected.size());
    for (const Inspection::Layer &layer : inspected)
        layers.push_back(layer.scene);
    if (m_found.setLayers(layers))
        showMark();
    m_view->setProgress(m_store.progress());
    if (scenes.empty() && !m_failure.isEmpty())
        return m_view->showText(m_failure);
    // Until the first layer is there, what was shown stays.
    if (scenes.empty() && m_store.isBusy())
        return;
    m_view->setScenes(scenes);
    if (!m_hasBoard && !scenes.empty() && m_view->frame().isEmpty()) {
        cam::Box all;
        for (const drawing::ColoredScene &scene : scenes)
            all.add(scene.scene->extent());
        m_view->setFrame(all, true);
    }
    m_view->setTitle(titleOf(shown));
    m_view->setHint(!scenes.empty() && isEmpty ? tr("The layer is empty.")
                    : scenes.empty()           ? tr("No layer is shown: press an eye in the list of layers.")
                                               : QString());
    goOn();
}

// The frame of the step: that of its profile, so that nothing jumps when other layers are shown.
void GraphicView::takeBoard(const drawing::LayerScene &scene)
{
    const cam::LayerImage &image = scene.image();
    QVector<QPolygonF> profile;
    cam::Box frame;
    std::vector<cam::Point> corners;
    for (std::size_t i = 0; i < image.profile.size(); ++i) {
        corners.clear();
        cam::flatten(image.profile[i], outlineTolerance, corners);
        QPolygonF ring;
        for (const cam::Point corner : corners)
            ring << QPointF(corner.x, corner.y);
        if (!ring.isEmpty())
            ring << ring.first();
        profile << ring;
        frame.add(cam::extent(image.profile[i]));
    }
    if (frame.isEmpty())
        frame = scene.extent();
    m_hasBoard = true;
    m_view->setBoard(profile, image.datum);
    m_view->setFrame(frame, true);
}

QString GraphicView::titleOf(const QVector<ViewRow> &rows) const
{
    const int mostNames = 4;
    QStringList names;
    QString change;
    for (auto row = rows.crbegin(); row != rows.crend(); ++row) {
        names << row->name;
        change = row->change.isEmpty() ? change : row->change;
    }
    const int more = names.size() - mostNames;
    const QString text =
        more > 0 ? tr("%1 and %n more", nullptr, more).arg(QStringList(names.mid(0, mostNames)).join(", "))
                 : names.join(", ");
    return change.isEmpty() ? text : tr("%1, as exported: %2").arg(text, change);
}

bool GraphicView::isDrawn() const
{
    return !isReading() && m_view->isDrawn();
}

void GraphicView::fitBoard()
{
    m_view->fitFrame();
}

void GraphicView::fitAll()
{
    m_view->fitAll();
}

void GraphicView::showDifferences(const QVector<LayerProof> &proofs)
{
    m_differences.setProofs(proofs);
    if (!m_rows.isEmpty())
        showScenes();
}

void GraphicView::setDifferencesSeen(bool seen)
{
    m_areDifferencesSeen = seen;
    if (!m_rows.isEmpty())
        showScenes();
}

void GraphicView::goToDifference(const QString &layer, int place)
{
    m_differences.choose(layer, place);
    m_isGoing = true;
    goOn();
    m_view->update();
}

// Where the layer is still being read the way is taken up again when it is there.
void GraphicView::goOn()
{
    if (!m_isGoing || m_store.isBusy())
        return;
    if (const std::optional<cam::Box> box = m_differences.chosenBox()) {
        m_isGoing = false;
        m_view->showBox(*box);
    }
}

void GraphicView::setFromBelow(bool fromBelow)
{
    m_view->setMirrored(fromBelow);
}

void GraphicView::changeUnit()
{
    m_view->setUnit(nextUnit(m_view->unit()));
}

// ---- measuring and inspecting

// Eight pixels of the screen.
double GraphicView::reach() const
{
    return 8.0 * m_view->pixel() * m_view->devicePixelRatioF();
}

void GraphicView::press(const cam::Point &place)
{
    if (m_measuring.isOn())
        m_measuring.press(place, reach());
    else if (m_figures.press(place, reach() / 4.0))
        m_inspection.clear();
    else
        m_inspection.press(place, reach() / 4.0);
    if (m_inspection.isReading())
        m_factsTimer.start(lookInterval);
    m_view->update();
}

// ---- what a search has found

void GraphicView::mark(const std::shared_ptr<const SearchTarget> &target)
{
    m_inspection.clear();
    m_figures.clear();
    m_found.set(target, m_source->ready());
    showScenes();
    if (const QString layer = m_found.neededLayer(); !layer.isEmpty())
        emit layerNeeded(layer);
    emit marked(markText());
}

void GraphicView::stepMark(int direction)
{
    m_found.step(direction);
    showMark();
}

void GraphicView::clearFound()
{
    if (!m_found.clear())
        return;
    emit marked(QString());
    m_view->update();
}

// With some of the board around it.
void GraphicView::showMark()
{
    constexpr double least = 2e6;   // nanometres to each side of a place
    constexpr double around = 0.15; // of the box
    cam::Box box = m_found.box();
    if (box.isEmpty())
        return;
    const cam::Point center = (box.low + box.high) * 0.5, size = box.high - box.low;
    const cam::Point reach{std::max(size.x * (0.5 + around), least),
                           std::max(size.y * (0.5 + around), least)};
    box.add(center - reach);
    box.add(center + reach);
    m_view->showBox(box);
    emit marked(markText());
    m_view->update();
}

QString GraphicView::markText() const
{
    const int count = int(m_found.count());
    if (count == 0)
        return m_found.target() ? tr("Its layers are being read, or draw nothing of it.") : QString();
    if (m_found.current() >= 0)
        return tr("Place %1 of %2").arg(m_found.current() + 1).arg(count);
    return m_found.hasMore() ? tr("The first %n places are marked.", nullptr, count)
                             : tr("%n place(s) marked.", nullptr, count);
}

// ---- what is inspected

QStringList GraphicView::inspected() const
{
    const QStringList figure = m_figures.text(m_view->unit());
    return figure.isEmpty() ? m_inspection.text(m_view->unit()) : figure;
}

void GraphicView::lookAtFacts()
{
    if (m_inspection.look())
        m_view->update();
    if (!m_inspection.isReading())
        m_factsTimer.stop();
}

void GraphicView::setMeasuring(bool measuring)
{
    m_measuring.setOn(measuring);
    m_inspection.clear();
    m_figures.clear();
    setCursor(measuring ? Qt::CrossCursor : Qt::ArrowCursor);
    m_view->update();
}

void GraphicView::clearMarks()
{
    const bool hadFigure = m_figures.clear(), had = m_inspection.clear() || hadFigure || m_found.target();
    clearFound();
    if (!m_measuring.clear() && !had)
        emit measuringEnded();
    m_view->update();
}

// ---- files

void GraphicView::closeFile(const QString &path)
{
    m_store.forgetFile(path);
}

void GraphicView::dragEnterEvent(QDragEnterEvent *event)
{
    if (!layerFilesIn(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void GraphicView::dropEvent(QDropEvent *event)
{
    const QStringList files = layerFilesIn(event->mimeData());
    if (files.isEmpty())
        return;
    event->acceptProposedAction();
    emit filesDropped(files);
}
