#include "ResultFile.h"

#include <charconv>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>

namespace orvel::phantom {

namespace {

std::vector<std::string> wordsOf(const std::string &line)
{
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

std::optional<double> numberFrom(const std::string &word)
{
    double value = 0.0;
    const char *end = word.data() + word.size();
    const auto got = std::from_chars(word.data(), end, value);
    if (got.ec != std::errc() || got.ptr != end) {
        return std::nullopt;
    }
    return value;
}

} // namespace

ResultFile readResultFile(const std::filesystem::path &path)
{
    const auto fail = [&path](const std::string &why) {
        return std::runtime_error(path.string() + ": " + why);
    };
    std::ifstream file(path, std::ios::binary);
    std::string line;
    if (!file || !std::getline(file, line)) {
        throw fail("cannot be read");
    }
    if (line != "# klyv result map V1.0") {
        throw fail("is no result map file");
    }
    while (std::getline(file, line) && !line.empty()) { // headers of the maps
    }
    ResultFile result;
    while (std::getline(file, line)) {
        std::vector<std::string> words = wordsOf(line);
        if (result.rows.empty() && !words.empty() && words.front() == "#") {
            result.columns.assign(words.begin() + 1, words.end());
            continue;
        }
        std::vector<double> row;
        for (const std::string &word : words) {
            const std::optional<double> number = numberFrom(word);
            if (!number) {
                throw fail("\"" + word + "\" is no number");
            }
            row.push_back(*number);
        }
        if (!result.rows.empty() && row.size() != result.rows.front().size()) {
            throw fail("pixel " + std::to_string(result.rows.size()) +
                       " has another number of columns");
        }
        result.rows.push_back(std::move(row));
    }
    if (result.rows.empty()) {
        throw fail("has no pixel");
    }
    if (result.columns.empty() ? result.rows.front().size() != 5
                               : result.columns.size() != result.rows.front().size()) {
        throw fail("the columns do not match their header");
    }
    return result;
}

std::vector<double> numbersIn(const std::string &text)
{
    std::string spaced = text;
    for (char &c : spaced) {
        if (c == ',') {
            c = ' ';
        }
    }
    std::vector<double> numbers;
    for (const std::string &word : wordsOf(spaced)) {
        if (const std::optional<double> number = numberFrom(word)) {
            numbers.push_back(*number);
        }
    }
    return numbers;
}

} // namespace orvel::phantom
