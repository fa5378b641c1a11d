// A small parser of expressions, and the stack that evaluates them.
#include "cam/gerber/macro.h"

#include "cam/base/error.h"
#include "cam/base/numbers.h"

#include <cmath>

namespace cam {

namespace {

constexpr std::uint32_t mostVariables = 10000;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

} // namespace

// expression: term {("+" | "-") term}; term: factor {("x" | "X" | "/") factor};
// factor: ["+" | "-"] (number | "$" number | "(" expression ")")
class ApertureMacro::Parser
{
public:
    Parser(std::string_view text, std::size_t line, const std::string &file)
        : m_text(text), m_line(line), m_file(file)
    {
    }

    Statement statement()
    {
        Statement result;
        result.line = m_line;
        if (take('$')) {
            result.variable = variable();
            if (!take('='))
                fail("\"=\" after a macro's variable");
            result.values.push_back(expression());
        } else {
            result.code = code();
            while (take(','))
                result.values.push_back(expression());
        }
        if (m_at != m_text.size())
            fail("the end of a macro's statement at \"" + std::string(m_text.substr(m_at)) + "\"");
        return result;
    }

private:
    [[noreturn]] void fail(const std::string &expected) const { throw FormatError(m_file, m_line, expected); }

    bool take(char c)
    {
        if (m_at == m_text.size() || m_text[m_at] != c)
            return false;
        ++m_at;
        return true;
    }

    std::uint32_t digits(const char *what)
    {
        std::uint32_t value = 0;
        const std::size_t first = m_at;
        for (; m_at < m_text.size() && isDigit(m_text[m_at]); ++m_at) {
            value = value * 10 + static_cast<std::uint32_t>(m_text[m_at] - '0');
            if (value > mostVariables)
                fail(what);
        }
        if (m_at == first)
            fail(what);
        return value;
    }

    std::uint32_t variable()
    {
        const std::uint32_t number = digits("the number of a macro's variable, 1 to 10000");
        if (number == 0)
            fail("the number of a macro's variable, 1 to 10000");
        return number;
    }

    int code() { return static_cast<int>(digits("the code of a macro's primitive")); }

    Expression expression()
    {
        constexpr int deepest = 100;
        if (++m_depth > deepest)
            fail("an expression of at most 100 levels");
        Expression result;
        term(result);
        for (;;) {
            const bool adds = take('+');
            if (!adds && !take('-'))
                break;
            term(result);
            result.push_back({adds ? Step::Add : Step::Subtract, 0.0, 0});
        }
        --m_depth;
        return result;
    }

    void term(Expression &result)
    {
        factor(result);
        for (;;) {
            const bool multiplies = take('x') || take('X');
            if (!multiplies && !take('/'))
                return;
            factor(result);
            result.push_back({multiplies ? Step::Multiply : Step::Divide, 0.0, 0});
        }
    }

    void factor(Expression &result)
    {
        bool negates = false;
        for (;;) {
            if (take('-'))
                negates = !negates;
            else if (!take('+'))
                break;
        }
        if (take('(')) {
            const Expression inner = expression();
            result.insert(result.end(), inner.begin(), inner.end());
            if (!take(')'))
                fail("\")\" in a macro's expression");
        } else if (take('$')) {
            result.push_back({Step::Variable, 0.0, variable()});
        } else {
            result.push_back({Step::Number, number(), 0});
        }
        if (negates)
            result.push_back({Step::Negate, 0.0, 0});
    }

    double number()
    {
        const std::size_t first = m_at;
        while (m_at < m_text.size() && (isDigit(m_text[m_at]) || m_text[m_at] == '.'))
            ++m_at;
        const auto value = toNumber(m_text.substr(first, m_at - first));
        if (!value)
            fail("a number, a variable or a parenthesis in a macro's expression");
        return *value;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_line;
    const std::string &m_file;
    int m_depth = 0;
};

ApertureMacro::ApertureMacro(const std::vector<std::pair<std::string, std::size_t>> &statements,
                             const std::string &file)
    : m_file(file)
{
    for (const auto &[text, line] : statements) {
        const bool isComment = !text.empty() && text[0] == '0' && (text.size() == 1 || !isDigit(text[1]));
        if (isComment)
            continue;
        std::string dense; // blanks mean nothing
        for (const char c : text) {
            if (c != ' ' && c != '\t')
                dense += c;
        }
        if (!dense.empty())
            m_statements.push_back(Parser(dense, line, m_file).statement());
    }
}

std::vector<MacroPrimitive> ApertureMacro::evaluate(const std::vector<double> &arguments) const
{
    std::vector<double> variables{0.0}; // counted from 1
    variables.insert(variables.end(), arguments.begin(), arguments.end());
    std::vector<MacroPrimitive> primitives;
    for (const Statement &statement : m_statements) {
        if (statement.variable != 0) {
            const double value = valueOf(statement.values[0], variables, statement.line);
            if (statement.variable >= variables.size())
                variables.resize(statement.variable + 1, 0.0);
            variables[statement.variable] = value;
            continue;
        }
        MacroPrimitive primitive;
        primitive.code = statement.code;
        primitive.line = statement.line;
        for (const Expression &value : statement.values)
            primitive.parameters.push_back(valueOf(value, variables, statement.line));
        primitives.push_back(std::move(primitive));
    }
    return primitives;
}

double ApertureMacro::valueOf(const Expression &expression, const std::vector<double> &variables,
                              std::size_t line) const
{
    std::vector<double> stack;
    const auto pop = [&stack] {
        const double top = stack.back();
        stack.pop_back();
        return top;
    };
    for (const Step &step : expression) {
        if (step.kind == Step::Number) {
            stack.push_back(step.number);
            continue;
        }
        if (step.kind == Step::Variable) {
            stack.push_back(step.variable < variables.size() ? variables[step.variable] : 0.0);
            continue;
        }
        if (step.kind == Step::Negate) {
            stack.back() = -stack.back();
            continue;
        }
        const double right = pop(), left = pop();
        stack.push_back(step.kind == Step::Add        ? left + right
                        : step.kind == Step::Subtract ? left - right
                        : step.kind == Step::Multiply ? left * right
                                                      : left / right);
    }
    if (!std::isfinite(stack.back()))
        throw FormatError(m_file, line, "a macro's expression that has a value");
    return stack.back();
}

} // namespace cam
