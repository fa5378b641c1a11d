// The formats of an export. A format's text, as the Export dialog offers it, is also the ending of the files,
// and says in which format the CAM library writes them.
#pragma once

#include "run/orvexapi.h"

#include <QString>

namespace export_format {

const char gds[] = ".gds";
const char gerber[] = ".gerber";

// GDSII for ".gds" in any letter case, Gerber for every other text.
inline ORVEX::API::export_type typeOf(const QString &format)
{
    return format.toLower() == gds ? ORVEX::API::export_type::gds : ORVEX::API::export_type::gerber;
}

} // namespace export_format
