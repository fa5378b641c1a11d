// Measures exports against programs that read and write the same file: GDSII against KLayout's strm2gds,
// Gerber against gerbv. Each measured run is a process of its own, from start to end; the programs alternate,
// and medians are printed. Then, how often the exports report, and how their time grows with the clearances
// of a plane.
//
//   exportbench compare WORK JOB STEP LAYER... [ROUNDS=n] [STRM2GDS=path]
//   exportbench export ROOT JOB STEP LAYER FILE      one export
//   exportbench progress JOB STEP LAYER FILE [negated]   how often one export reports
#include "bench/export/measuring.h"
#include "bench/export/panel.h"
#include "bench/export/responding.h"
#include "cam/export/exportrequest.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

int exportLayer(const std::vector<std::string> &words)
{
    cam::ExportRequest request;
    request.job = fs::path(words[0]) / words[1];
    request.step = words[2];
    request.layer = words[3];
    request.options.file = words[4];
    if (request.options.file.extension() != ".gds")
        request.format = cam::FileFormat::Gerber;
    cam::exportLayer(request);
    return 0;
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
    double emptyMegabytes = 0.0; // what an export of nothing holds: the program and its libraries
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
    std::vector<double> ourSeconds, peerSeconds, ourMemory, peerMemory, ourProcessor, peerProcessor;
    bool hasPeer = true; // gerbv 2.9 crashes when it writes what it has read from any step and repeat
    for (int round = 0; round < settings.rounds; ++round) {
        // Both write a new file, so that both are given memory in the same state for it.
        fs::remove(ours);
        fs::remove(theirs);
        const bench::Run mine = bench::run(export_);
        const bench::Run other = bench::run(peer, libraries);
        if (!mine.succeeded) {
            std::printf("%-28s %-6s the export failed\n", what.title.c_str(), isGds ? "GDSII" : "Gerber");
            return;
        }
        hasPeer = hasPeer && other.succeeded;
        ourSeconds.push_back(mine.seconds);
        ourMemory.push_back(mine.megabytes);
        ourProcessor.push_back(mine.processor);
        peerProcessor.push_back(other.processor);
        peerSeconds.push_back(other.seconds);
        peerMemory.push_back(other.megabytes);
    }
    const double seconds = bench::median(ourSeconds), theirSeconds = bench::median(peerSeconds);
    const double memory = bench::median(ourMemory);
    std::printf("%-28s %-6s %7.3f %7.1f %7.1f %6.2f %6.2f", what.title.c_str(), isGds ? "GDSII" : "Gerber",
                seconds, what.featuresMegabytes / seconds, memory, memory / what.featuresMegabytes,
                (memory - settings.emptyMegabytes) / what.featuresMegabytes);
    if (hasPeer)
        std::printf("  %8.3f %7.1f %7.1f %6.2f %6.2f\n", theirSeconds, megabytes(ours) / theirSeconds,
                    bench::median(peerMemory), seconds / theirSeconds,
                    bench::median(ourProcessor) / bench::median(peerProcessor));
    else
        std::printf("  the peer failed\n");
    std::fflush(stdout);
}

double emptyMegabytes(const Settings &settings)
{
    bench::writePlane(settings.work / "empty", 0);
    fs::resize_file(settings.work / "empty" / "steps" / "pcb" / "layers" / "plane" / "features", 0);
    return bench::run({settings.self, "export", settings.work.string(), "empty", "pcb", "plane",
                       (settings.work / "empty.gds").string()})
        .megabytes;
}

void printHead(const Settings &settings)
{
    std::printf(
        "Medians of %d alternating runs, each a process from start to end. MB are 1e6 bytes; /F is the most "
        "memory held\nas a multiple of the features file, own/F without the %.1f MB of an export of nothing. "
        "The peers read and write\nthe file that the export made: strm2gds for GDSII, gerbv -x rs274x for "
        "Gerber. The last column is the ratio of\nprocessor time.\n\n",
        settings.rounds, settings.emptyMegabytes);
    std::printf("%-28s %-6s %7s %7s %7s %6s %6s  %8s %7s %7s %6s %6s\n", "layer", "format", "s", "MB/s", "MB",
                "/F", "own/F", "peer s", "MB/s", "MB", "ratio", "cpu");
}

void printResponding(const std::vector<Case> &cases, const Settings &settings)
{
    std::printf(
        "\nThe longest time between two reports of progress (processor time, as all times here), and the "
        "largest step.\n\n%-28s %-6s %-8s %8s %8s %7s\n",
        "layer", "format", "", "s", "gap ms", "step %");
    for (const Case &what : cases) {
        for (const bool isNegative : {false, true}) {
            for (const bool isGds : {true, false}) {
                const fs::path file = settings.work / (isGds ? "ours.gds" : "ours.gerber");
                fs::remove(file); // or taking its place would be measured too
                const bench::Responding found =
                    bench::measureResponding(what.root / what.job, what.step, what.layer, file, isNegative);
                std::printf("%-28s %-6s %-8s %8.3f %8.1f %7.2f\n", what.title.c_str(),
                            isGds ? "GDSII" : "Gerber", isNegative ? "negated" : "", found.seconds,
                            found.longestGap * 1e3, found.largestStep);
                std::fflush(stdout);
            }
        }
    }
}

int printProgress(const std::vector<std::string> &words)
{
    const bench::Responding found =
        bench::measureResponding(words[0], words[1], words[2], words[3], words.size() == 5);
    std::printf("%.3f s, at most %.1f ms between two reports (before %.1f %%), steps of at most %.2f %%\n",
                found.seconds, found.longestGap * 1e3, found.gapBefore, found.largestStep);
    return 0;
}

void printGrowth(const Settings &settings)
{
    std::printf(
        "\nProcessor time for a plane with negative pads, and for each thousand of them.\n\n%-10s %10s %10s "
        "%10s %10s\n",
        "pads", "GDSII s", "ms/1000", "Gerber s", "ms/1000");
    for (const std::size_t count : {25'000, 50'000, 100'000, 200'000}) {
        bench::writePlane(settings.work / "plane", count);
        double seconds[2] = {};
        for (const bool isGds : {true, false}) {
            std::vector<double> runs;
            for (int round = 0; round < settings.rounds; ++round)
                runs.push_back(
                    bench::run({settings.self, "export", settings.work.string(), "plane", "pcb", "plane",
                                (settings.work / (isGds ? "ours.gds" : "ours.gerber")).string()})
                        .processor);
            seconds[isGds ? 0 : 1] = bench::median(runs);
        }
        std::printf("%-10zu %10.3f %10.2f %10.3f %10.2f\n", count, seconds[0],
                    seconds[0] * 1e6 / static_cast<double>(count), seconds[1],
                    seconds[1] * 1e6 / static_cast<double>(count));
        std::fflush(stdout);
    }
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
    settings.emptyMegabytes = emptyMegabytes(settings);
    printHead(settings);
    for (const Case &what : cases) {
        compare(what, settings, true);
        compare(what, settings, false);
    }
    printResponding(cases, settings);
    printGrowth(settings);
    return 0;
}

} // namespace

int main(int count, char **values)
{
    const std::vector<std::string> words(values + 1, values + count);
    try {
        if (words.size() == 6 && words[0] == "export")
            return exportLayer({words.begin() + 1, words.end()});
        if ((words.size() == 5 || (words.size() == 6 && words[5] == "negated")) && words[0] == "progress")
            return printProgress({words.begin() + 1, words.end()});
        if (words.size() >= 5 && words[0] == "compare")
            return compareAll({words.begin() + 1, words.end()}, fs::canonical("/proc/self/exe").string());
    } catch (const std::exception &error) {
        std::fprintf(stderr, "exportbench: %s\n", error.what());
        return 1;
    }
    std::fprintf(stderr, "usage: exportbench compare WORK JOB STEP LAYER... [ROUNDS=n] [STRM2GDS=path]\n"
                         "       exportbench export ROOT JOB STEP LAYER FILE\n"
                         "       exportbench progress JOB STEP LAYER FILE [negated]\n");
    return 2;
}
