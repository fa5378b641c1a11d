// The library's exceptions. Each message names what was being read, where, and what was expected there.
#pragma once

#include <stdexcept>
#include <string>

namespace cam {

class Error : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// A file of a job says something that the format does not allow.
class FormatError : public Error
{
public:
    // `line` counts from 1; 0 stands for the file as a whole.
    FormatError(const std::string &file, std::size_t line, const std::string &expected)
        : Error(file + (line ? ":" + std::to_string(line) : std::string()) + ": expected " + expected)
    {
    }
};

// A symbol name that is none of the standard ones, or has parameters that make no shape.
class SymbolError : public Error
{
public:
    using Error::Error;
};

} // namespace cam
