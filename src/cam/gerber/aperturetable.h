// The apertures of one file, numbered from 10 in the order of their first use.
#pragma once

#include "cam/gerber/aperture.h"
#include "cam/gerber/gerberstream.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace cam {

class ApertureTable
{
public:
    // The number of `aperture`; a new one when it is not in the table yet.
    int code(const Aperture &aperture);
    // The aperture that draws the profile: a circle without size, which makes no image.
    int profileCode();

    bool isEmpty() const { return m_apertures.empty(); }
    void write(GerberStream &stream) const;

private:
    std::unordered_map<std::string, int>
        m_codes; // by shape; macros' bodies and standard shapes never look alike
    std::vector<Aperture> m_apertures;
    int m_profileCode = 0;
};

} // namespace cam
