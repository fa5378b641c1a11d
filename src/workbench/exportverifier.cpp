#include "workbench/exportverifier.h"

#include "platform/thread.h"

#include <glog/logging.h>

#include <algorithm>
#include <iterator>

namespace {

// Ends a comparison that nobody waits for any more.
struct Cancelled
{
};

constexpr std::size_t mostPlaces = 200; // of a layer, in the list

LayerProof prove(const LayerResult &layer, const std::function<void(double)> &report)
{
    LayerProof proof;
    proof.layer = layer.layer;
    proof.request = layer.request;
    cam::ExportRequest request = layer.request;
    request.options.report = report;
    request.note = [](const cam::ExportNote &) {}; // the export has told them
    cam::VerifyControl control;
    control.report = report;
    control.wantsPolygons = true;
    control.mostPlaces = mostPlaces;
    try {
        const cam::LayerImage image = cam::readLayer(request);
        proof.placement = cam::exportTransform(request.options, image.datum);
        proof.found = cam::verifyFile(image, request.options, request.options.file, control);
    } catch (const std::exception &failure) {
        proof.found.reason = failure.what();
    }
    return proof;
}

} // namespace

ExportVerifier::ExportVerifier(QObject *parent) : QObject(parent) {}

ExportVerifier::~ExportVerifier()
{
    stop();
}

void ExportVerifier::start(const ExportResults &results)
{
    stop();
    QVector<LayerResult> layers;
    std::copy_if(results.layers.begin(), results.layers.end(), std::back_inserter(layers),
                 [](const LayerResult &result) { return result.isGood(); });
    m_count = layers.size();
    if (!layers.isEmpty())
        m_thread = std::thread([this, run = m_run, layers] { work(run, layers); });
}

void ExportVerifier::stop()
{
    ++m_run; // what has been found and not yet taken counts no more
    m_count = 0;
    m_proofs.clear();
    if (!m_thread.joinable())
        return;
    m_cancel = true;
    m_thread.join();
    m_cancel = false;
}

void ExportVerifier::work(int run, const QVector<LayerResult> &layers)
{
    const platform::BackgroundWork background;
    const auto report = [this](double) {
        if (m_cancel)
            throw Cancelled();
    };
    try {
        for (const LayerResult &layer : layers) {
            report(0.0);
            const LayerProof proof = prove(layer, report);
            QMetaObject::invokeMethod(
                this, [this, run, proof] { take(run, proof); }, Qt::QueuedConnection);
        }
    } catch (const Cancelled &) { // nobody asks for the rest
    }
}

void ExportVerifier::take(int run, const LayerProof &proof)
{
    if (run != m_run)
        return;
    m_proofs << proof;
    if (!proof.found.isProven())
        LOG(WARNING) << "the file of the layer " << proof.layer.toStdString() << " is not proven"
                     << (proof.found.reason.empty() ? "" : ": ") << proof.found.reason;
    emit changed();
    if (!isRunning())
        emit ended();
}

QStringList ExportVerifier::unproven() const
{
    QStringList layers;
    for (const LayerProof &proof : m_proofs) {
        if (!proof.found.isProven())
            layers << proof.layer;
    }
    return layers;
}

QString ExportVerifier::summary() const
{
    if (m_count == 0)
        return {};
    const QStringList layers = unproven();
    const int proven = m_proofs.size() - layers.size();
    QString text = isRunning() ? tr("Verifying: %1 of %2 layers compared.").arg(m_proofs.size()).arg(m_count)
                               : tr("%1 of %2 layers proven within 0.5 \u00b5m.").arg(proven).arg(m_count);
    if (!layers.isEmpty())
        text += ' ' + tr("Not proven: %1.").arg(layers.join(", "));
    return text;
}
