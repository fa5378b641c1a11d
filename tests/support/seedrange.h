// Which seeds a test of random cases tries.
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

// FIRST to LAST of FILE_PROCESS_SEEDS=FIRST-LAST, or the one of FILE_PROCESS_SEEDS=SEED; `usual` where that
// is not set.
inline std::vector<unsigned> seedsOr(std::vector<unsigned> usual)
{
    const QByteArray asked = qgetenv("FILE_PROCESS_SEEDS");
    if (asked.isEmpty())
        return usual;
    const QStringList range = QString::fromLocal8Bit(asked).split('-');
    std::vector<unsigned> seeds;
    for (unsigned seed = range.first().toUInt(); seed <= range.last().toUInt(); ++seed)
        seeds.push_back(seed);
    return seeds;
}
