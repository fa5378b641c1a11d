#include "bench/export/panel.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace bench {

namespace fs = std::filesystem;

namespace {

// How many coordinate pairs follow the first word of a record; 0 for lines that are no records.
int pairCount(const std::string &line)
{
    const std::string word = line.substr(0, line.find(' '));
    if (word == "P" || word == "OB" || word == "OS" || word == "T")
        return 1;
    if (word == "L" || word == "OC")
        return 2;
    return word == "A" ? 3 : 0;
}

struct FeatureText
{
    std::vector<std::string> head;    // up to the first feature, without the count
    std::vector<std::string> records; // the features
    std::size_t count = 0;
    double width = 0.0, height = 0.0; // of what the coordinates span, in the file's unit
};

bool isFeature(const std::string &line)
{
    return line.size() > 1 && line[1] == ' ' && std::string("LPATBS").find(line[0]) != std::string::npos;
}

FeatureText read(const fs::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw std::runtime_error(file.string() + " cannot be read");
    FeatureText text;
    double low[2] = {1e300, 1e300}, high[2] = {-1e300, -1e300};
    for (std::string line; std::getline(stream, line);) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        text.count += isFeature(line) ? 1 : 0;
        if (text.count == 0) {
            if (line.compare(0, 2, "F ") != 0)
                text.head.push_back(line);
            continue;
        }
        text.records.push_back(line);
        std::istringstream words(line);
        std::string word;
        words >> word;
        for (int i = 0; i < 2 * pairCount(line); ++i) {
            double value = 0.0;
            words >> value;
            low[i % 2] = std::min(low[i % 2], value);
            high[i % 2] = std::max(high[i % 2], value);
        }
    }
    if (text.count == 0)
        throw std::runtime_error(file.string() + " has no features");
    text.width = high[0] - low[0];
    text.height = high[1] - low[1];
    return text;
}

// The record with its coordinates moved.
void appendMoved(std::string &out, const std::string &line, double dx, double dy)
{
    const int numbers = 2 * pairCount(line);
    if (numbers == 0) {
        out += line;
        out += '\n';
        return;
    }
    const char *at = line.c_str() + line.find(' ');
    const char *end = line.c_str() + line.size();
    out.append(line.c_str(), at);
    for (int i = 0; i < numbers; ++i) {
        double value = 0.0;
        const auto read = std::from_chars(at + 1, end, value);
        char buffer[40];
        const int length = std::snprintf(buffer, sizeof buffer, " %.9g", value + (i % 2 == 0 ? dx : dy));
        out.append(buffer, static_cast<std::size_t>(length));
        at = read.ptr;
    }
    out.append(at, end);
    out += '\n';
}

void write(const fs::path &file, const std::string &text)
{
    fs::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream << text;
    if (!stream)
        throw std::runtime_error(file.string() + " cannot be written");
}

std::string matrix(const std::vector<std::string> &steps, const std::string &layer)
{
    std::string text;
    for (std::size_t i = 0; i < steps.size(); ++i)
        text += "STEP {\n    COL=" + std::to_string(i + 1) + "\n    NAME=" + steps[i] + "\n}\n\n";
    return text + "LAYER {\n    ROW=1\n    CONTEXT=BOARD\n    TYPE=SIGNAL\n    NAME=" + layer +
           "\n    POLARITY=POSITIVE\n}\n";
}

fs::path featuresOf(const LayerSource &source)
{
    return source.job / "steps" / source.step / "layers" / source.layer / "features";
}

std::size_t side(std::size_t copies)
{
    return static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(copies))));
}

void copySymbols(const LayerSource &source, const fs::path &target)
{
    for (const char *folder : {"symbols", "fonts"}) {
        if (fs::exists(source.job / folder))
            fs::copy(source.job / folder, target / folder, fs::copy_options::recursive);
    }
}

const char *unitLine(const FeatureText &text)
{
    for (const std::string &line : text.head) {
        if (line == "UNITS=MM" || line == "U MM")
            return "UNITS=MM\n";
    }
    return "UNITS=INCH\n";
}

} // namespace

std::size_t writeFlatPanel(const LayerSource &source, const fs::path &target, std::size_t featureCount)
{
    const FeatureText text = read(featuresOf(source));
    const std::size_t perSide = side((featureCount + text.count - 1) / text.count);
    fs::remove_all(target);
    const fs::path layer = target / "steps" / "panel" / "layers" / source.layer;
    fs::create_directories(layer);
    std::ofstream stream(layer / "features", std::ios::binary);
    for (const std::string &line : text.head)
        stream << line << '\n';
    std::string out;
    for (std::size_t copy = 0; copy < perSide * perSide; ++copy) {
        const double dx = 1.05 * text.width * static_cast<double>(copy % perSide);
        const double dy = 1.05 * text.height * static_cast<double>(copy / perSide);
        out.clear();
        for (const std::string &record : text.records)
            appendMoved(out, record, dx, dy);
        stream << out;
    }
    if (!stream)
        throw std::runtime_error(layer.string() + ": cannot be written");
    write(target / "matrix" / "matrix", matrix({"PANEL"}, source.layer));
    write(target / "steps" / "panel" / "stephdr", unitLine(text));
    copySymbols(source, target);
    return text.count * perSide * perSide;
}

std::size_t writeNestedPanel(const LayerSource &source, const fs::path &target, std::size_t featureCount)
{
    const FeatureText text = read(featuresOf(source));
    const std::size_t perSide = side((featureCount + text.count - 1) / text.count);
    fs::remove_all(target);
    const std::string unit = unitLine(text);
    write(target / "matrix" / "matrix", matrix({"BOARD", "PANEL"}, source.layer));
    write(target / "steps" / "board" / "stephdr", unit);
    write(target / "steps" / "panel" / "stephdr",
          unit + "\nSTEP-REPEAT {\n    NAME=BOARD\n    X=0\n    Y=0\n    DX=" +
              std::to_string(1.05 * text.width) + "\n    DY=" + std::to_string(1.05 * text.height) +
              "\n    NX=" + std::to_string(perSide) + "\n    NY=" + std::to_string(perSide) +
              "\n    ANGLE=0\n    MIRROR=NO\n}\n");
    const fs::path layer = target / "steps" / "board" / "layers" / source.layer;
    fs::create_directories(layer);
    fs::copy_file(featuresOf(source), layer / "features");
    write(target / "steps" / "panel" / "layers" / source.layer / "features", unit);
    copySymbols(source, target);
    return text.count * perSide * perSide;
}

void writePlane(const fs::path &target, std::size_t count)
{
    const std::size_t perSide = side(count);
    const std::string size = std::to_string(static_cast<double>(perSide) * 0.6 + 0.4);
    std::string text = "UNITS=MM\n$0 r400\nS P 0\nOB 0 0 I\nOS " + size + " 0\nOS " + size + " " + size +
                       "\nOS 0 " + size + "\nOE\nSE\n";
    for (std::size_t i = 0; i < count; ++i)
        text += "P " + std::to_string(0.5 + static_cast<double>(i % perSide) * 0.6) + " " +
                std::to_string(0.5 + static_cast<double>(i / perSide) * 0.6) + " 0 N 0 0\n";
    fs::remove_all(target);
    write(target / "matrix" / "matrix", matrix({"PCB"}, "plane"));
    write(target / "steps" / "pcb" / "stephdr", "UNITS=MM\n");
    write(target / "steps" / "pcb" / "layers" / "plane" / "features", text);
}

} // namespace bench
