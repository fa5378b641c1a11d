#include "cam/verify/verification.h"

#include "cam/base/error.h"
#include "cam/verify/difference.h"
#include "cam/verify/filepicture.h"
#include "cam/verify/sourcepicture.h"

#include <algorithm>

namespace cam {

namespace {

using verify::ArcCorners;

// The share of a comparison counts from when its files have been read; reading them can be cancelled.
std::function<void(double)> readingReport(const VerifyControl &control)
{
    return [&control](double) { control.report(0.0); };
}

} // namespace

Comparison verifyFile(const LayerImage &image, const ExportOptions &options,
                      const std::filesystem::path &file, const VerifyControl &control)
{
    try {
        // The number that stands for a layer is its row in the job's matrix, as far as the format has
        // numbers.
        constexpr int mostLayers = 32767;
        const auto written = verify::readPicture(
            file, static_cast<std::uint16_t>(std::clamp(image.row, 0, mostLayers)), readingReport(control));
        verify::SourcePicture source(image, options,
                                     verify::isGds(file) ? ArcCorners::Even : ArcCorners::Compass);
        return verify::compare(source, *written, control);
    } catch (const Error &error) {
        Comparison result;
        result.reason = error.what();
        return result;
    }
}

Comparison compareFiles(const std::filesystem::path &first, const std::filesystem::path &second,
                        const VerifyControl &control)
{
    const auto before = verify::readPicture(first, std::nullopt, readingReport(control));
    const auto after = verify::readPicture(second, std::nullopt, readingReport(control));
    return verify::compare(*before, *after, control);
}

Comparison compareLayers(const LayerImage &first, const ExportOptions &firstOptions, const LayerImage &second,
                         const ExportOptions &secondOptions, const VerifyControl &control)
{
    verify::SourcePicture before(first, firstOptions, ArcCorners::Compass);
    verify::SourcePicture after(second, secondOptions, ArcCorners::Compass);
    return verify::compare(before, after, control);
}

} // namespace cam
