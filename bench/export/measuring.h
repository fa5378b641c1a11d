// Programs, run and measured.
#pragma once

#include <string>
#include <vector>

namespace bench {

struct Run
{
    double seconds = 0.0;   // from start to end, as a person waits for it
    double processor = 0.0; // seconds of processor time, the system's included
    double megabytes = 0.0; // the most memory it held, in units of 1e6 bytes
    bool succeeded = false;
};

// Runs `command` (the program's path first) to its end, its output discarded. `libraries`: a folder in which
// it finds its libraries, if it does not know itself.
Run run(const std::vector<std::string> &command, const std::string &libraries = {});

double median(std::vector<double> values);

} // namespace bench
