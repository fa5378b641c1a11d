// The text of an eda/data file; the same text also as a components file, as definitions of attributes and as
// a features file whose features are listed.
#include "cam/base/error.h"
#include "cam/odb/stepparts.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char *>(data), size);
    cam::AttributeTypes types;
    try {
        types.add(text, "input");
    } catch (const cam::Error &) {
    }
    try {
        cam::LineReader lines(text);
        const cam::EdaData eda = cam::readEdaData(lines, "input", cam::LengthUnit::Millimetre, types);
        eda.netOf("top", 0);
        for (const cam::Package &package : eda.packages) {
            for (std::size_t i = 0; i < package.outline.size(); ++i)
                cam::extent(package.outline[i]);
        }
    } catch (const cam::Error &) {
    }
    try {
        cam::LineReader lines(text);
        for (const cam::Component &component :
             cam::readComponents(lines, "input", cam::LengthUnit::Inch, types))
            cam::placement(component, false);
    } catch (const cam::Error &) {
    }
    cam::LineReader lines(text);
    cam::listFeatures(lines, [&types](const cam::ListedFeature &feature, const cam::AttributeTable &table) {
        table.read(feature.attributeField, types);
        return true;
    });
    return 0;
}
