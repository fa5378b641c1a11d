// Measures exports against programs that read and write the same file: GDSII against KLayout's strm2gds,
// Gerber against gerbv. Each measured run is a process of its own, from start to end; the programs alternate,
// and medians are printed.
//
//   exportbench compare WORK JOB STEP LAYER... [ROUNDS=n] [STRM2GDS=path]
//   exportbench export ROOT JOB STEP LAYER FILE      one export through the library's own call
#include "bench/export/measuring.h"
#include "bench/export/panel.h"
#include "host/cam/jobroot.h"
#include "run/orvexapi.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

int exportLayer(const std::vector<std::string> &words)
{
    ORVEX::HOST::set_job_root(words[0]);
    const std::string &file = words[4];
    const bool isGds = fs::path(file).extension() == ".gds";
    ORVEX::COMMON::progress_value<void> progress;
    const auto type = isGds ? ORVEX::API::export_type::gds : ORVEX::API::export_type::gerber;
    const bool written = ORVEX::API::layer_export(words[1], words[2], words[3], type, file, &progress, 0.001,
                                                  0.0, false, false, false, false, 0, 0, 0, 0, 0, 0, false,
                                                  0.0, "X", true, 1.0, 1.0, true, 2, 6, 1, 0, {}, 1);
    return written ? 0 : 1;
}

struct Case
{
    std::string title;
    fs::path root; // the job's parent folder
    std::string job, step, layer;
    double featuresMegabytes = 0.0;
};

struct Settings
{
    std::string self; // this program
    fs::path work;
    std::string strm2gds = "strm2gds";
    int rounds = 5;
};

double megabytes(const fs::path &file)
{
    return static_cast<double>(fs::file_size(file)) / 1e6;
}

// One line of the table: an export, and what another program takes to read and write its file.
void compare(const Case &what, const Settings &settings, bool isGds)
{
    const fs::path ours = settings.work / (isGds ? "ours.gds" : "ours.gerber");
    const fs::path theirs = settings.work / (isGds ? "theirs.gds" : "theirs.gerber");
    const std::vector<std::string> export_ = {settings.self, "export",   what.root.string(), what.job,
                                              what.step,     what.layer, ours.string()};
    const std::vector<std::string> peer =
        isGds ? std::vector<std::string>{settings.strm2gds, ours.string(), theirs.string()}
              : std::vector<std::string>{"gerbv", "-x", "rs274x", "-o", theirs.string(), ours.string()};
    const std::string libraries = isGds ? fs::path(settings.strm2gds).parent_path().string() : std::string();
    std::vector<double> ourSeconds, peerSeconds, ourMemory, peerMemory;
    for (int round = 0; round < settings.rounds; ++round) {
        const bench::Run mine = bench::run(export_);
        const bench::Run other = bench::run(peer, libraries);
        if (!mine.succeeded || !other.succeeded) {
            std::printf("%-28s %-6s %s failed\n", what.title.c_str(), isGds ? "GDSII" : "Gerber",
                        mine.succeeded ? peer.front().c_str() : "the export");
            return;
        }
        ourSeconds.push_back(mine.seconds);
        ourMemory.push_back(mine.megabytes);
        peerSeconds.push_back(other.seconds);
        peerMemory.push_back(other.megabytes);
    }
    const double seconds = bench::median(ourSeconds), theirSeconds = bench::median(peerSeconds);
    const double memory = bench::median(ourMemory);
    std::printf("%-28s %-6s %7.3f %7.1f %7.1f %6.2f  %8.3f %7.1f %7.1f %6.2f\n", what.title.c_str(),
                isGds ? "GDSII" : "Gerber", seconds, what.featuresMegabytes / seconds, memory,
                memory / what.featuresMegabytes, theirSeconds, megabytes(ours) / theirSeconds,
                bench::median(peerMemory), seconds / theirSeconds);
    std::fflush(stdout);
}

void printHead(const Settings &settings)
{
    std::printf(
        "Medians of %d alternating runs, each a process from start to end. MB are 1e6 bytes; /F is the most "
        "memory held\nas a multiple of the features file (programs alone take about 10 MB). The peers read "
        "and "
        "write the file that\nthe export made: strm2gds for GDSII, gerbv -x rs274x for Gerber.\n\n",
        settings.rounds);
    std::printf("%-28s %-6s %7s %7s %7s %6s  %8s %7s %7s %6s\n", "layer", "format", "s", "MB/s", "MB", "/F",
                "peer s", "MB/s", "MB", "ratio");
}

int compareAll(const std::vector<std::string> &words, const std::string &self)
{
    Settings settings;
    settings.self = self;
    settings.work = fs::absolute(words[0]);
    const fs::path job = fs::absolute(words[1]);
    const std::string step = words[2];
    std::vector<std::string> layers;
    for (std::size_t i = 3; i < words.size(); ++i) {
        if (words[i].rfind("ROUNDS=", 0) == 0)
            settings.rounds = std::stoi(words[i].substr(7));
        else if (words[i].rfind("STRM2GDS=", 0) == 0)
            settings.strm2gds = words[i].substr(9);
        else
            layers.push_back(words[i]);
    }
    fs::create_directories(settings.work);
    const auto featuresOf = [](const fs::path &folder, const std::string &step, const std::string &layer) {
        return folder / "steps" / step / "layers" / layer / "features";
    };
    std::vector<Case> cases;
    for (const std::string &layer : layers)
        cases.push_back({layer, job.parent_path(), job.filename().string(), step, layer,
                         megabytes(featuresOf(job, step, layer))});
    const bench::LayerSource source{job, step, layers.front()};
    const std::size_t count = bench::writeFlatPanel(source, settings.work / "panel", 1000000);
    cases.push_back({"panel of " + std::to_string(count), settings.work, "panel", "panel", layers.front(),
                     megabytes(featuresOf(settings.work / "panel", "panel", layers.front()))});
    bench::writeNestedPanel(source, settings.work / "nested", 1000000);
    cases.push_back({"the same, step and repeat", settings.work, "nested", "panel", layers.front(),
                     megabytes(featuresOf(job, step, layers.front()))});
    printHead(settings);
    for (const Case &what : cases) {
        compare(what, settings, true);
        compare(what, settings, false);
    }
    return 0;
}

} // namespace

int main(int count, char **values)
{
    const std::vector<std::string> words(values + 1, values + count);
    try {
        if (words.size() == 6 && words[0] == "export")
            return exportLayer({words.begin() + 1, words.end()});
        if (words.size() >= 5 && words[0] == "compare")
            return compareAll({words.begin() + 1, words.end()}, fs::canonical("/proc/self/exe").string());
    } catch (const std::exception &error) {
        std::fprintf(stderr, "exportbench: %s\n", error.what());
        return 1;
    }
    std::fprintf(stderr, "usage: exportbench compare WORK JOB STEP LAYER... [ROUNDS=n] [STRM2GDS=path]\n"
                         "       exportbench export ROOT JOB STEP LAYER FILE\n");
    return 2;
}
