// Aperture macros of Gerber files: their text taken apart once, evaluated for each aperture that uses them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cam {

// A primitive of a macro with its parameters as numbers, in the file's unit and in degrees.
struct MacroPrimitive
{
    int code = 0;
    std::vector<double> parameters;
    std::size_t line = 0; // of the file
};

// An AM command.
class ApertureMacro
{
public:
    // `statements`: the blocks of the command without their "*", each with its line. Throws FormatError, with
    // `file`, for what is no primitive, variable definition or comment.
    ApertureMacro(const std::vector<std::pair<std::string, std::size_t>> &statements,
                  const std::string &file);

    // The primitives with $1, $2 ... set to `arguments`; variables that nothing defines are 0.
    std::vector<MacroPrimitive> evaluate(const std::vector<double> &arguments) const;

private:
    // An expression in reverse Polish order.
    struct Step
    {
        enum Kind : std::uint8_t { Number, Variable, Add, Subtract, Multiply, Divide, Negate } kind = Number;
        double number = 0.0;
        std::uint32_t variable = 0;
    };
    using Expression = std::vector<Step>;
    // A primitive, or the definition of a variable.
    struct Statement
    {
        int code = 0;
        std::uint32_t variable = 0; // that is defined; 0 for a primitive
        std::vector<Expression> values;
        std::size_t line = 0;
    };
    class Parser;

    double valueOf(const Expression &expression, const std::vector<double> &variables,
                   std::size_t line) const;

    std::string m_file;
    std::vector<Statement> m_statements;
};

} // namespace cam
