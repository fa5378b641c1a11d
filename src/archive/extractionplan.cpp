#include "archive/extractionplan.h"

#include "archive/bitexception.h"
#include "archive/localpath.h"

#include <cstdlib>
#include <unordered_map>

namespace archive {

namespace {

[[noreturn]] void refuse(const Entry &entry, const std::string &reason)
{
    throw BitException("\"" + utf8(entry.path) + "\": " + reason);
}

std::wstring joined(const std::vector<std::wstring> &parts, std::size_t count)
{
    std::wstring path;
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0)
            path += L'/';
        path += parts[i];
    }
    return path;
}

class Planner
{
public:
    explicit Planner(NameRules rules) : m_rules(rules) {}

    ExtractionPlan plan(const std::vector<Entry> &entries)
    {
        for (const Entry &entry : entries)
            add(entry);
        for (const PendingLink &link : m_symbolicLinks)
            addSymbolicLink(link);
        dropReplacedFiles();
        return std::move(m_plan);
    }

private:
    enum class Kind { Folder, File, HardLink, SymbolicLink };
    struct Node
    {
        Kind kind;
        std::wstring path;  // in its first spelling
        std::size_t number; // place among the plan's files, folders
        bool replaced = false;
    };
    struct PendingLink
    {
        const Entry *entry;
        std::vector<std::wstring> parts;
    };

    void add(const Entry &entry)
    {
        const std::vector<std::wstring> parts = checkedPathParts(entry.path, m_rules);
        if (entry.kind == Entry::Kind::Unsupported)
            refuse(entry, entry.flaw);
        if (parts.empty()) {
            if (entry.kind != Entry::Kind::Folder)
                refuse(entry, "the entry has no name");
            return; // "./", the output folder itself
        }
        if (m_rules == NameRules::Posix && hasRawBytes(parts[0]))
            refuse(entry, "the name of the job's folder is no UTF-8");
        addFolders(entry, parts);
        const std::wstring path = joined(parts, parts.size());
        switch (entry.kind) {
        case Entry::Kind::Folder:
            addFolder(entry, path, entry.modified);
            break;
        case Entry::Kind::File:
            addFile(entry, path);
            break;
        case Entry::Kind::HardLink:
            addHardLink(entry, path);
            break;
        case Entry::Kind::SymbolicLink:
            if (Node *earlier = find(entry, path)) {
                if (earlier->kind != Kind::SymbolicLink)
                    refuse(entry, "a link takes the place of another entry of this path");
                refuse(entry, "the archive has two links of this path");
            }
            insert(path, Kind::SymbolicLink, 0);
            m_symbolicLinks.push_back({&entry, parts});
            break;
        case Entry::Kind::Unsupported:
            break;
        }
    }

    // Plans the folders above an entry.
    void addFolders(const Entry &entry, const std::vector<std::wstring> &parts)
    {
        if (parts.size() < 2)
            return;
        const std::wstring parent = joined(parts, parts.size() - 1);
        if (parent == m_lastParent)
            return; // entries of one folder mostly follow each other
        // A planned folder has all folders above it planned.
        std::size_t known = parts.size() - 1;
        while (known > 0 && !isPlannedFolder(entry, joined(parts, known)))
            --known;
        for (std::size_t count = known + 1; count < parts.size(); ++count)
            addFolder(entry, joined(parts, count), std::nullopt);
        m_lastParent = parent;
    }

    bool isPlannedFolder(const Entry &entry, const std::wstring &path)
    {
        const Node *node = find(entry, path);
        return node && node->kind == Kind::Folder;
    }

    void addFolder(const Entry &entry, const std::wstring &path, std::optional<std::uint64_t> modified)
    {
        Node *node = find(entry, path);
        if (!node) {
            insert(path, Kind::Folder, m_plan.folders.size());
            m_plan.folders.push_back({path, modified});
            return;
        }
        if (node->kind == Kind::SymbolicLink)
            refuse(entry, "it lies behind the link \"" + utf8(path) + "\" of the same archive");
        if (node->kind != Kind::Folder)
            refuse(entry, "\"" + utf8(path) + "\" is a file and a folder in this archive");
        if (modified)
            m_plan.folders[node->number].modified = modified;
    }

    void addFile(const Entry &entry, const std::wstring &path)
    {
        const ExtractionPlan::File file{entry.index, path, entry.size, entry.modified};
        if (Node *node = find(entry, path)) {
            if (node->kind != Kind::File)
                refuse(entry, "the path is already taken by a folder or a link of this archive");
            m_plan.files[node->number].path.clear(); // an earlier version
            node->number = m_plan.files.size();
            node->replaced = true;
        } else {
            insert(path, Kind::File, m_plan.files.size());
        }
        m_plan.files.push_back(file);
    }

    void addHardLink(const Entry &entry, const std::wstring &path)
    {
        const std::vector<std::wstring> parts = checkedPathParts(entry.linkTarget, m_rules);
        const std::wstring target = joined(parts, parts.size());
        const Node *node = parts.empty() ? nullptr : find(entry, target);
        if (!node || (node->kind != Kind::File && node->kind != Kind::HardLink))
            refuse(entry, "it is a hard link to \"" + utf8(entry.linkTarget) +
                              "\", which is no earlier file of this archive");
        if (target == path)
            return; // a file stored twice
        if (find(entry, path))
            refuse(entry, "a link takes the place of another entry of this path");
        insert(path, Kind::HardLink, 0);
        m_hardLinkTargets.push_back({&entry, target});
        m_plan.hardLinks.push_back({path, target, false});
    }

    // The target is walked part by part, so that no step depends on where another link leads.
    void addSymbolicLink(const PendingLink &link)
    {
        const Entry &entry = *link.entry;
        const std::wstring &text = entry.linkTarget;
        if (text.empty())
            refuse(entry, "it is a link without a target");
        const std::string shown = "it is a link to \"" + utf8(text) + "\", which ";
        if (text[0] == L'/' || text.find(L'\\') != std::wstring::npos ||
            (text.size() >= 2 && text[1] == L':'))
            refuse(entry, shown + "is no relative path");

        std::vector<std::wstring> at(link.parts.begin(), link.parts.end() - 1);
        std::vector<std::wstring> steps(1);
        for (const wchar_t c : text) {
            if (c == L'/')
                steps.emplace_back();
            else
                steps.back() += c;
        }
        for (const std::wstring &step : steps) {
            const Node *reached = at.empty() ? nullptr : find(entry, joined(at, at.size()));
            if (reached && reached->kind == Kind::SymbolicLink)
                refuse(entry, shown + "passes through another link");
            if (step.empty() || step == L".")
                continue;
            if (step == L"..") {
                if (at.size() <= 1)
                    refuse(entry, shown + "leads out of the job");
                at.pop_back();
            } else {
                checkedPathParts(step, m_rules);
                at.push_back(step);
            }
        }
        if (at.empty() || foldedName(at[0], m_rules) != foldedName(link.parts[0], m_rules) ||
            link.parts.size() < 2)
            refuse(entry, shown + "leads out of the job");
        const std::wstring end = joined(at, at.size());
        const Node *node = find(entry, end);
        m_plan.symbolicLinks.push_back(
            {joined(link.parts, link.parts.size()), text, node && node->kind == Kind::Folder});
        if (end == m_plan.symbolicLinks.back().path)
            refuse(entry, shown + "is the link itself");
    }

    void dropReplacedFiles()
    {
        for (const auto &[entry, target] : m_hardLinkTargets) {
            if (find(*entry, target)->replaced)
                refuse(*entry,
                       "it is a hard link to \"" + utf8(target) + "\", which the archive holds twice");
        }
        std::vector<ExtractionPlan::File> kept;
        kept.reserve(m_plan.files.size());
        for (ExtractionPlan::File &file : m_plan.files) {
            if (file.path.empty())
                continue;
            if (m_plan.totalSize + file.size < file.size)
                throw BitException("\"" + utf8(file.path) + "\": the sizes of the files are beyond counting");
            m_plan.totalSize += file.size;
            kept.push_back(std::move(file));
        }
        m_plan.files = std::move(kept);
    }

    Node *find(const Entry &entry, const std::wstring &path)
    {
        const auto it = m_nodes.find(foldedName(path, m_rules));
        if (it == m_nodes.end())
            return nullptr;
        if (it->second.path != path)
            refuse(entry, "the archive also has \"" + utf8(it->second.path) +
                              "\", which is the same name on this system");
        return &it->second;
    }

    void insert(const std::wstring &path, Kind kind, std::size_t number)
    {
        m_nodes.emplace(foldedName(path, m_rules), Node{kind, path, number});
    }

    NameRules m_rules;
    ExtractionPlan m_plan;
    std::unordered_map<std::wstring, Node> m_nodes; // by folded path
    std::wstring m_lastParent;
    std::vector<PendingLink> m_symbolicLinks;
    std::vector<std::pair<const Entry *, std::wstring>> m_hardLinkTargets;
};

} // namespace

ExtractionPlan planExtraction(const std::vector<Entry> &entries, NameRules rules)
{
    return Planner(rules).plan(entries);
}

} // namespace archive
