#include "cam/verify/verification.h"

#include "cam/base/error.h"
#include "cam/gdsii/gdsreader.h"
#include "cam/gerber/gerberreader.h"
#include "cam/verify/difference.h"
#include "cam/verify/filepicture.h"
#include "cam/verify/sourcepicture.h"

#include <algorithm>
#include <fstream>
#include <memory>

namespace cam {

namespace {

using verify::ArcCorners;

enum class FileFormat { Gds, Gerber };

// What stands on it is the step's profile, beside the layer.
constexpr std::uint16_t profileDatatype = 1;

FileFormat formatOf(const std::filesystem::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw Error(file.u8string() + ": cannot be opened");
    char bytes[4] = {};
    stream.read(bytes, sizeof bytes);
    // The record HEADER: six bytes, type 0, data type 2.
    constexpr char header[4] = {0, 6, 0, 2};
    return std::equal(std::begin(header), std::end(header), bytes) ? FileFormat::Gds : FileFormat::Gerber;
}

std::unique_ptr<verify::Picture> pictureOf(const std::filesystem::path &file, FileFormat format)
{
    if (format == FileFormat::Gds)
        return std::make_unique<verify::GdsPicture>(readGdsFile(file), profileDatatype, true);
    return std::make_unique<verify::GerberPicture>(readGerberFile(file), ArcCorners::Compass);
}

} // namespace

Comparison verifyFile(const LayerImage &image, const ExportOptions &options,
                      const std::filesystem::path &file, const VerifyControl &control)
{
    std::unique_ptr<verify::Picture> written, source;
    try {
        const FileFormat format = formatOf(file);
        written = pictureOf(file, format);
        source = std::make_unique<verify::SourcePicture>(
            image, options, format == FileFormat::Gds ? ArcCorners::Even : ArcCorners::Compass);
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
    const auto before = pictureOf(first, formatOf(first)), after = pictureOf(second, formatOf(second));
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
