#include "bench/export/measuring.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

namespace {

[[noreturn]] void become(const std::vector<std::string> &command, const std::string &libraries)
{
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    if (!libraries.empty())
        setenv("LD_LIBRARY_PATH", libraries.c_str(), 1);
    std::vector<char *> arguments;
    for (const std::string &word : command)
        arguments.push_back(const_cast<char *>(word.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments.front(), arguments.data());
    _exit(127);
}

} // namespace

Run run(const std::vector<std::string> &command, const std::string &libraries)
{
    Run result;
    const auto before = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0)
        become(command, libraries);
    if (child < 0)
        return result;
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    const auto after = std::chrono::steady_clock::now();
    result.seconds = std::chrono::duration<double>(after - before).count();
    const auto secondsOf = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    result.processor = secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime);
    result.megabytes = static_cast<double>(usage.ru_maxrss) * 1024.0 / 1e6;
    result.succeeded = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return result;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2.0;
}

} // namespace bench
