#include "workbench/exportwatch.h"

#include "workbench/exportdialog.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <functional>

namespace {

const int lookInterval = 100; // ms

QString fileOf(const cam::ExportRequest &request)
{
    return QString::fromStdString(request.options.file.u8string());
}

} // namespace

int ExportResults::count(LayerResult::State state) const
{
    return int(std::count_if(layers.cbegin(), layers.cend(),
                             [state](const LayerResult &result) { return result.state == state; }));
}

bool ExportResults::isComplete() const
{
    return !layers.isEmpty() &&
           std::all_of(layers.cbegin(), layers.cend(), std::mem_fn(&LayerResult::isGood));
}

QString ExportResults::folder() const
{
    for (const LayerResult &result : layers) {
        if (result.isGood())
            return QFileInfo(result.file).absolutePath();
    }
    return {};
}

QString ExportResults::summary() const
{
    using State = LayerResult::State;
    if (layers.isEmpty())
        return tr("Nothing was exported: no layer was chosen.");
    if (const int found = count(State::Found); found > 0)
        return tr("%n file(s) are compared with layers of %1.", nullptr, found).arg(job);
    const int written = count(State::Written) + count(State::Empty);
    QStringList parts{tr("%1 of %2 layers of %3 were written").arg(written).arg(layers.size()).arg(job)};
    const auto add = [&parts](int number, const QString &what) {
        if (number > 0)
            parts << what.arg(number);
    };
    add(count(State::Empty), tr("%1 of them empty"));
    add(count(State::Failed), tr("%1 failed"));
    add(count(State::Cancelled), tr("%1 cancelled"));
    add(count(State::Missing), tr("%1 not exported, the log says why"));
    return parts.join(tr(", ", "between parts of a sentence")) + tr(".", "at its end");
}

LayerResult *ExportResults::find(const QString &layer)
{
    for (LayerResult &result : layers) {
        if (result.layer.compare(layer, Qt::CaseInsensitive) == 0)
            return &result;
    }
    return nullptr;
}

ExportWatch::ExportWatch(QObject *parent) : QObject(parent)
{
    connect(&m_timer, &QTimer::timeout, this, &ExportWatch::look);
    ORVEX::HOST::observe_exports([this](const ORVEX::HOST::ExportOutcome &outcome) {
        QMetaObject::invokeMethod(
            this, [this, outcome] { take(outcome); }, Qt::QueuedConnection);
    });
}

ExportWatch::~ExportWatch()
{
    ORVEX::HOST::observe_exports({});
}

void ExportWatch::watchDialog()
{
    m_timer.start(lookInterval);
}

// A dialog that exports takes no OK.
void ExportWatch::look()
{
    const ExportDialog dialog = ExportDialog::find();
    const bool exports = dialog.window() && dialog.problem().isEmpty() && !dialog.canPressOk();
    if (exports && !m_isRunning)
        begin();
    else if (!exports && m_isRunning)
        end();
    if (!m_isRunning)
        emit looked();
    if (!dialog.window() && !m_isRunning)
        m_timer.stop();
}

void ExportWatch::begin()
{
    m_isRunning = true;
    m_results = ExportResults();
    const ExportDialog dialog = ExportDialog::find();
    for (int row = 0; dialog.window() && dialog.problem().isEmpty() && row < dialog.rowCount(); ++row) {
        if (!dialog.isChecked(row) || m_results.find(dialog.layer(row)))
            continue;
        LayerResult result;
        result.layer = dialog.layer(row);
        m_results.layers << result;
    }
    emit started();
}

void ExportWatch::take(const ORVEX::HOST::ExportOutcome &outcome)
{
    using State = ORVEX::HOST::ExportOutcome::State;
    if (!m_isRunning)
        begin();
    m_results.job = QString::fromStdString(outcome.job);
    const QString name = QString::fromStdString(outcome.request.layer);
    LayerResult *result = m_results.find(name);
    if (!result) {
        m_results.layers.append(LayerResult());
        result = &m_results.layers.last();
        result->layer = name;
    }
    result->file = fileOf(outcome.request);
    result->request = outcome.request;
    result->reason = QString::fromStdString(outcome.reason);
    result->notes.clear();
    for (const cam::ExportNote &note : outcome.notes)
        result->notes << QString::fromStdString(note.text);
    switch (outcome.state) {
    case State::Started:
        result->state = LayerResult::State::Running;
        break;
    case State::Written:
        result->state = outcome.isEmpty ? LayerResult::State::Empty : LayerResult::State::Written;
        result->bytes = QFileInfo(result->file).size();
        break;
    case State::Failed:
        result->state = LayerResult::State::Failed;
        break;
    case State::Cancelled:
        result->state = LayerResult::State::Cancelled;
        break;
    }
    emit changed();
    if (!m_timer.isActive())
        m_timer.start(lookInterval);
}

void ExportWatch::end()
{
    using State = LayerResult::State;
    // Layers are exported in the order of their names' bytes: those behind the last one that was begun were
    // not asked for any more, which is what a cancel does.
    std::string last;
    for (const LayerResult &result : m_results.layers) {
        if (result.state != State::Waiting)
            last = std::max(last, result.layer.toStdString());
    }
    for (LayerResult &result : m_results.layers) {
        if (result.state == State::Running)
            result.state = State::Cancelled;
        else if (result.state == State::Waiting)
            result.state =
                !last.empty() && result.layer.toStdString() > last ? State::Cancelled : State::Missing;
    }
    m_isRunning = false;
    emit ended();
}
