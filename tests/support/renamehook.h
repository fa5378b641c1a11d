// A say in every renaming that the process asks the system for, whoever asks.
#pragma once

#include <functional>
#include <string>

// While the object lives, `before` is called with both paths before each renaming. What it returns is the
// error that the renaming fails with (errno), 0 lets it happen. One at a time; `atomic` tells that nothing
// may be at the new path, which not every file system can check (EINVAL).
class RenameHook
{
public:
    using Before = std::function<int(const std::string &from, const std::string &to, bool atomic)>;

    explicit RenameHook(Before before);
    ~RenameHook();
    RenameHook(const RenameHook &) = delete;
    RenameHook &operator=(const RenameHook &) = delete;
};
