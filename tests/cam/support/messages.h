// Checks what an exception says.
#pragma once

#include <QString>

#include <exception>

// The message of the exception that `action` throws; empty when it throws none.
template <typename Action>
QString messageOf(const Action &action)
{
    try {
        action();
    } catch (const std::exception &failure) {
        return QString::fromStdString(failure.what());
    }
    return {};
}
