// Definitions: macros are named after the number of the aperture that needs them first.
#include "cam/gerber/aperturetable.h"

namespace cam {

namespace {

constexpr int firstCode = 10;

} // namespace

int ApertureTable::code(const Aperture &aperture)
{
    const auto added = m_codes.emplace(aperture.shape, firstCode + static_cast<int>(m_apertures.size()));
    if (added.second)
        m_apertures.push_back(aperture);
    return added.first->second;
}

int ApertureTable::profileCode()
{
    m_profileCode = code(circleAperture(0.0));
    return m_profileCode;
}

void ApertureTable::write(GerberStream &stream) const
{
    for (std::size_t i = 0; i < m_apertures.size(); ++i) {
        const Aperture &aperture = m_apertures[i];
        const int code = firstCode + static_cast<int>(i);
        const std::string number = std::to_string(code);
        if (aperture.isMacro)
            stream.macro("MACRO" + number, aperture.shape);
        if (code == m_profileCode)
            stream.attribute("TA.AperFunction,Profile");
        stream.command("ADD" + number + (aperture.isMacro ? "MACRO" + number : aperture.shape));
        if (code == m_profileCode)
            stream.attribute("TD.AperFunction");
    }
}

} // namespace cam
