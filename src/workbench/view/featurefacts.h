// What the job's files say about one feature besides its shape: its text, its net, its attributes. Read in
// the background, for one feature at a time.
#pragma once

#include "workbench/view/stepsource.h"

#include <QStringList>

#include <atomic>
#include <future>
#include <list>

class FeatureFacts
{
public:
    FeatureFacts() = default;
    // Ends the reading.
    ~FeatureFacts();

    // Forgets what was asked before. `step` and `layer` in lower case.
    void ask(const std::shared_ptr<StepSource> &source, const std::string &step, const std::string &layer,
             cam::FeatureSource feature);
    void forget();
    bool isReading() const { return !m_tasks.empty(); }
    // Takes what has been read. True when lines() are others now.
    bool look();
    // A fact a line; empty while they are read.
    const QStringList &lines() const { return m_lines; }

private:
    struct Task
    {
        std::atomic<bool> cancel{false};
        std::future<QStringList> result;
    };

    std::list<Task> m_tasks; // the last one is asked for, the others end soon
    QStringList m_lines;
};

// "name = value", or the name alone.
QString attributeText(const cam::Attribute &attribute);
// Of a job's file: UTF-8, or Latin-1 where it is none.
QString fileText(std::string_view text);
