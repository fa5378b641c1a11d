// Random jobs: a panel of steps with every kind of feature, as an image that is the truth, and as the files
// of a job that the library's reader has to make the same of.
#pragma once

#include "cam/model/exportoptions.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <random>
#include <vector>

namespace testing {

struct RandomJob
{
    cam::LayerImage image; // the layer "top"; the exported step is the last one
    cam::ExportOptions options;
    unsigned seed = 0; // also of how the files are written
};

RandomJob randomJob(unsigned seed);

// A copy of everything that the pictures of the layer depend on.
cam::LayerImage copyOf(const cam::LayerImage &image);

// Hands out the job's files, named from its folder on, in inches or millimetres file by file.
void writeJob(const RandomJob &job,
              const std::function<void(const QString &file, const QByteArray &bytes)> &write);

// What the job is made of and how it is exported, in a line or two and the features as they stand in the
// files.
QString description(const RandomJob &job);

// Jobs that lack one thing each: a feature, a nested step, a transform. What a finding does not need is found
// with them.
std::vector<RandomJob> smallerJobs(const RandomJob &job);

} // namespace testing
