// Everything in a step that can be searched for: symbols, components, nets, attributes. Read once, in the
// background; the search itself is in memory.
#pragma once

#include "workbench/search/searchtarget.h"
#include "workbench/view/stepsource.h"

#include <QString>

#include <array>
#include <functional>
#include <memory>
#include <vector>

struct SearchEntry
{
    enum Kind { Component, Net, Symbol, Attribute };
    static constexpr int kindCount = 4;

    Kind kind = Symbol;
    QString name;
    QString detail; // beside the name; it is searched, too
    std::shared_ptr<const SearchTarget> target;
};

class SearchIndex
{
public:
    // Of the step of `source`, and of those nested in it. `report` takes the share that is done, 0 to 1, and
    // may throw to cancel. Throws cam::Error for a job that cannot be read; a file of it that cannot be read
    // goes to the log and is not searched.
    static std::shared_ptr<const SearchIndex> read(StepSource &source,
                                                   const std::function<void(double)> &report);

    struct Found
    {
        std::vector<const SearchEntry *> entries; // the first ones, the best first
        std::size_t count = 0;                    // of all
    };
    // What has `text` in it, without regard to case, by kind; everything for an empty text. With "*" or "?"
    // the whole name is to match. Those that are called so come first, then those that begin so.
    std::array<Found, SearchEntry::kindCount> find(const QString &text, std::size_t most) const;

    // Attributes have more different values than are kept.
    bool hasMoreAttributes() const { return m_hasMoreAttributes; }

private:
    friend class IndexReading;
    std::vector<SearchEntry> m_entries; // sorted by kind, then by name
    bool m_hasMoreAttributes = false;
};

// Names with numbers in them as people order them: R2 before R10.
bool comesBefore(const QString &a, const QString &b);
