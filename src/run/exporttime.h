// The numbers that an export run shows: the progress while a layer is exported and its time afterwards.
#pragma once

#include <QString>

#include <climits>

namespace export_time {

// `progress` truncated for the progress dialog; 0 for what is no number or does not fit.
inline int shownProgress(double progress)
{
    return progress > INT_MIN && progress < INT_MAX ? int(progress) : 0;
}

// Whole seconds of a time in milliseconds: 999 is 0, 1000 is 1.
inline qint64 wholeSeconds(qint64 milliseconds)
{
    return milliseconds / 1000;
}

// The text of a Time cell, such as "12s".
inline QString timeText(double seconds)
{
    return QString::number(seconds, 'g', 6) + "s";
}

} // namespace export_time
