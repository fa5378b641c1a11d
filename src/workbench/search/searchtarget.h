// What a search has found: features by their records in the job's files, and components.
#pragma once

#include <QString>

#include <cstdint>
#include <string>
#include <vector>

struct SearchTarget
{
    struct Features
    {
        std::string step;
        std::string layer; // both in lower case
        std::vector<std::uint32_t> records;
    };
    struct Part
    {
        std::string step;
        std::string layer;
        std::uint32_t index = 0; // on its side
    };

    std::vector<Features> features;
    std::vector<Part> parts;
    std::size_t count = 0; // of all places in the job, of which no more than mostRecords a layer are kept

    static constexpr std::size_t mostRecords = 5000;
};
