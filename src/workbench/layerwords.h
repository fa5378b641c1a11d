// The words of a job's matrix, such as "SOLDER_MASK", in the interface's language.
#pragma once

#include <QString>

#include <string>

// A word that the format does not know stays as a person writes it: "SOME_WORD" is "some word".
QString layerWord(const std::string &word);
