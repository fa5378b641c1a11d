#include "platform/commandline.h"

#include "platform/paths.h"

#include <QFileInfo>
#include <QRegExp>
#include <QVector>

namespace platform {

namespace {

bool isSeparator(QChar c)
{
    return c == ' ' || c == '\t' || c == '\v' || c == '\f' || c == ',' || c == ';' || c == '=' ||
           c == QChar(0xA0);
}

struct Word
{
    QString text;
    bool isSwitch = false;
};

// `goesOn` tells whether something ends the command before the line does.
QVector<Word> split(const QString &line, bool &goesOn)
{
    QVector<Word> words;
    Word word;
    const auto endWord = [&] {
        if (!word.text.isEmpty())
            words << word;
        word = Word();
    };
    bool inQuotes = false;
    goesOn = false;
    for (int i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        if (c == '"') {
            inQuotes = !inQuotes;
            continue;
        }
        if (!inQuotes) {
            if (c == '&' || c == '|' || c == '<' || c == '>') {
                goesOn = true;
                break;
            }
            if (isSeparator(c)) {
                endWord();
                continue;
            }
            if (c == '/') {
                endWord();
                word.isSwitch = true;
            }
            if (c == '^') {
                if (++i < line.size())
                    word.text += line[i];
                continue;
            }
        }
        word.text += c;
    }
    endWord();
    return words;
}

// Goes back to the last star only: what an earlier one took cannot have been wrong.
bool matches(const QString &pattern, const QString &name)
{
    int p = 0, n = 0;
    int star = -1, starTook = 0; // the place of the last star, and up to where it has taken the name
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            starTook = n;
        } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == name[n])) {
            ++p;
            ++n;
        } else if (star >= 0) {
            p = star + 1;
            n = ++starTook;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

} // namespace

CommandLine parseCommandLine(const QString &parameters)
{
    CommandLine line;
    QVector<Word> words = split(parameters, line.goesOn);
    const auto take = [&words](const char *text) {
        if (words.isEmpty() || words.first().text.compare(QLatin1String(text), Qt::CaseInsensitive) != 0)
            return false;
        words.removeFirst();
        return true;
    };
    if (!take("/c"))
        return line;
    if (take("del"))
        line.command = CommandLine::Command::Delete;
    else if (take("rd") && take("/s") && take("/q"))
        line.command = CommandLine::Command::RemoveTree;
    for (const Word &word : words)
        (word.isSwitch ? line.switches : line.operands) << word.text;
    return line;
}

bool matchesWildcard(const QString &pattern, const QString &name)
{
    const QString foldedPattern = pattern.toCaseFolded();
    const QString foldedName = name.toCaseFolded();
    return matches(foldedPattern, foldedName) ||
           (foldedPattern.endsWith("*.*") &&
            matches(foldedPattern.left(foldedPattern.size() - 2), foldedName));
}

bool delAsks(const QString &operand)
{
    const QString local = toLocal(operand);
    const QString name = local.mid(local.lastIndexOf(QRegExp("[/\\\\]")) + 1);
    return name == "*" || name == "*.*" || QFileInfo(local).isDir();
}

} // namespace platform
