// A file of a job that is stored as a zip archive of its own, with that file as its one member.
#pragma once

#include <string>
#include <string_view>

namespace cam {

// The text of the member `member`, whose name is compared without regard to case. `name` is for messages.
// Read are stored and deflated members. Everything that such an archive need not have, or that contradicts
// itself, is an Error with its reason: other members or names, folders, encryption, zip64, sizes or checks
// that do not hold, bytes that belong to nothing.
std::string unpackZip(std::string_view packed, std::string_view member, const std::string &name);

} // namespace cam
