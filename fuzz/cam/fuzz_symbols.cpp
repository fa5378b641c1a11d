// The name of a standard symbol, and the shape that it stands for.
#include "cam/base/error.h"
#include "cam/model/flatten.h"
#include "cam/model/standardsymbol.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace cam;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view name(reinterpret_cast<const char *>(data), size);
    for (const SymbolUnit unit : {SymbolUnit::Mils, SymbolUnit::Micrometres}) {
        try {
            const StandardSymbol symbol = parseStandardSymbol(name, unit);
            for (const double growth : {0.0, 20'000.0, -20'000.0}) {
                const Shape shape = shapeOf(symbol, growth);
                if (!(area(shape) >= -1e300)) // not a number
                    std::abort();
                extent(shape);
            }
        } catch (const SymbolError &) {
            // What an unknown name is answered with.
        }
    }
    return 0;
}
