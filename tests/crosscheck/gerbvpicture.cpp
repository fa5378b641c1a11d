// Loaded into gerbv: takes the place of cairo's function that packs a picture as PNG, which takes ten times
// as long as drawing it. Writes the picture as PGM, GERBV_PICTURE_FINER x GERBV_PICTURE_FINER pixels averaged
// to one.
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

// As cairo.h declares them.
extern "C" {
struct _cairo_surface;
using cairo_surface_t = _cairo_surface;
void cairo_surface_flush(cairo_surface_t *surface);
unsigned char *cairo_image_surface_get_data(cairo_surface_t *surface);
int cairo_image_surface_get_width(cairo_surface_t *surface);
int cairo_image_surface_get_height(cairo_surface_t *surface);
int cairo_image_surface_get_stride(cairo_surface_t *surface);
int cairo_surface_write_to_png(cairo_surface_t *surface, const char *file); // cairo_status_t
}

int cairo_surface_write_to_png(cairo_surface_t *surface, const char *file)
{
    constexpr int success = 0, writeError = 11; // CAIRO_STATUS_...
    constexpr std::size_t pixelBytes = 4, green = 1;
    const char *setting = std::getenv("GERBV_PICTURE_FINER");
    const int finer = setting != nullptr ? std::atoi(setting) : 0;
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> out(std::fopen(file, "wb"), std::fclose);
    cairo_surface_flush(surface);
    const unsigned char *data = cairo_image_surface_get_data(surface);
    if (finer <= 0 || out == nullptr || data == nullptr)
        return writeError;
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface));
    const auto width = static_cast<std::size_t>(cairo_image_surface_get_width(surface) / finer);
    const auto height = static_cast<std::size_t>(cairo_image_surface_get_height(surface) / finer);
    const auto side = static_cast<std::size_t>(finer);
    std::fprintf(out.get(), "P5\n%zu %zu\n255\n", width, height);
    std::vector<unsigned> sums(width);
    std::vector<unsigned char> row(width);
    for (std::size_t y = 0; y < height; ++y) {
        sums.assign(width, 0);
        for (std::size_t i = 0; i < side; ++i) {
            const unsigned char *from = data + (y * side + i) * stride + green;
            for (unsigned &sum : sums) {
                for (std::size_t j = 0; j < side; ++j, from += pixelBytes)
                    sum += *from;
            }
        }
        for (std::size_t x = 0; x < width; ++x)
            row[x] = static_cast<unsigned char>(sums[x] / (side * side));
        if (std::fwrite(row.data(), 1, width, out.get()) != width)
            return writeError;
    }
    return success;
}
