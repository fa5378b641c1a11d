#include "convert/picturecommand.h"

#include "cam/base/paths.h"
#include "cam/odb/job.h"
#include "cam/verify/painting.h"
#include "convert/jobsource.h"
#include "convert/plot.h"
#include "plugin/interface/layercolor.h"

#include <algorithm>

namespace convert {

namespace {

const QColor background(24, 28, 32);
constexpr double throughLayers = 0.7; // opacity of one of several

struct DrawnLayer
{
    QColor color;
    cam::LayerImage image;
    std::unique_ptr<cam::Painting> painting;
};

QColor colorOf(const cam::MatrixLayer &layer)
{
    ORVEX::API::layer_info info;
    info.context = layer.context;
    info.type = layer.type;
    info.polarity = layer.polarity;
    return layerColor(info);
}

// From the lowest to the highest; holes go through everything.
std::vector<cam::MatrixLayer> drawingOrder(const cam::Matrix &matrix, const LayerChoice &choice)
{
    std::vector<cam::MatrixLayer> layers;
    std::copy_if(matrix.layers.rbegin(), matrix.layers.rend(), std::back_inserter(layers),
                 [&choice](const cam::MatrixLayer &layer) { return choice.isMeant(layer); });
    std::stable_partition(layers.begin(), layers.end(),
                          [](const cam::MatrixLayer &layer) { return !layer.isDrilled(); });
    return layers;
}

} // namespace

ExitCode runPicture(const PictureArguments &arguments, Console &console, const std::atomic<bool> &cancelled)
{
    const auto stop = [&cancelled](double) {
        if (cancelled)
            throw Cancelled();
    };
    ExitCode code = Done;
    try {
        JobSource source(arguments.job);
        source.open(cancelled);
        const cam::Matrix matrix = cam::Job(source.folder()).matrix();
        cam::ExportRequest request;
        request.job = source.folder();
        request.step = chosenStep(matrix, arguments.step).toStdString();
        request.options.mirror = arguments.mirror;
        request.options.report = stop;
        const auto failed = [&](const QString &layer, const QString &error) {
            console.error(QString("%1/%2/%3: %4")
                              .arg(source.name(), QString::fromStdString(request.step), layer, error));
            code = SomethingFailed;
        };
        for (const QString &layer : arguments.layers.missingIn(matrix))
            failed(layer, "the job has no layer of that name");

        std::vector<std::unique_ptr<DrawnLayer>> layers;
        cam::GridBox extent;
        for (const cam::MatrixLayer &layer : drawingOrder(matrix, arguments.layers)) {
            request.layer = layer.name;
            request.note = [&](const cam::ExportNote &note) {
                console.warning(lowerCase(layer.name) + ": " + QString::fromStdString(note.text));
            };
            try {
                auto drawn = std::make_unique<DrawnLayer>();
                drawn->color = colorOf(layer);
                drawn->image = cam::readLayer(request);
                drawn->painting = std::make_unique<cam::Painting>(drawn->image, request.options);
                extent.add(drawn->painting->extent());
                layers.push_back(std::move(drawn));
            } catch (const std::exception &failure) {
                failed(lowerCase(layer.name), QString::fromStdString(failure.what()));
            }
        }
        if (layers.empty()) {
            console.error(arguments.job + ": there is no layer to draw");
            return SomethingFailed;
        }
        const std::unique_ptr<Plot> plot = makePlot(arguments.file, extent, arguments.size, background);
        int done = 0;
        for (const std::unique_ptr<DrawnLayer> &layer : layers) {
            plot->begin(layer->color, layers.size() == 1 ? 1.0 : throughLayers);
            layer->painting->forEachArea(
                std::int64_t(2.0 * plot->pixel()),
                [&plot](const std::vector<cam::GridRing> &rings) { plot->fill(rings); }, stop);
            plot->end();
            console.progress(++done, int(layers.size()));
        }
        plot->save();
    } catch (const Cancelled &) {
        return SomethingFailed;
    } catch (const std::exception &failure) {
        console.error(arguments.job + ": " + QString::fromStdString(failure.what()));
        return SomethingFailed;
    }
    return code;
}

} // namespace convert
