#include "cam/verify/verification.h"

#include "cam/base/error.h"
#include "cam/verify/difference.h"
#include "cam/verify/filepicture.h"
#include "cam/verify/sourcepicture.h"

#include <algorithm>

namespace cam {

namespace {

using verify::ArcCorners;

} // namespace

Comparison verifyFile(const LayerImage &image, const ExportOptions &options,
                      const std::filesystem::path &file, const VerifyControl &control)
{
    try {
        // The number that stands for a layer is its row in the job's matrix, as far as the format has
        // numbers.
        constexpr int mostLayers = 32767;
        const auto written =
            verify::readPicture(file, static_cast<std::uint16_t>(std::clamp(image.row, 0, mostLayers)));
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
    const auto before = verify::readPicture(first), after = verify::readPicture(second);
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
