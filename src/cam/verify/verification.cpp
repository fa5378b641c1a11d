#include "cam/verify/verification.h"

#include "cam/base/error.h"
#include "cam/verify/difference.h"
#include "cam/verify/filepicture.h"
#include "cam/verify/sourcepicture.h"

#include <memory>

namespace cam {

namespace {

using verify::ArcCorners;

} // namespace

Comparison verifyFile(const LayerImage &image, const ExportOptions &options,
                      const std::filesystem::path &file, const VerifyControl &control)
{
    std::unique_ptr<verify::Picture> written, source;
    try {
        written = verify::readPicture(file);
        source = std::make_unique<verify::SourcePicture>(
            image, options, verify::isGds(file) ? ArcCorners::Even : ArcCorners::Compass);
    } catch (const Error &error) {
        Comparison result;
        result.reason = error.what();
        return result;
    }
    return verify::compare(*source, *written, control);
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
