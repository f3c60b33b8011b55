// write_cases FOLDER: writes the cases whose log and table come from the vocabulary, each into a
// folder of its own below FOLDER. The reference makes the tables.

#include "reference/naive.h"
#include "reference/naive_json.h"
#include "reference/samples.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace eventsviewer::reference {

namespace {

void write(const std::filesystem::path& path, const std::string& content)
{
    std::ofstream file(path, std::ios::binary);
    file << content << std::flush;
    if (!file.good()) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

void writeCase(const std::filesystem::path& folder, const std::vector<Sample>& samples)
{
    std::filesystem::create_directories(folder / "expected");
    std::string log;
    for (const Sample& sample : samples) {
        log += "{\"id\":" + std::to_string(sample.code) +
               ",\"time\":" + compact(Json::Value(sample.title)) + ",\"vars\":" + sample.variables +
               "}\n";
    }
    write(folder / "log", log);
    write(folder / "cmd", "exec events-viewer --all --input_file log\n");

    std::ostringstream printed;
    std::streambuf* const screen = std::cout.rdbuf(printed.rdbuf());
    const std::string table = allEventsTable((folder / "log").string());
    std::cout.rdbuf(screen);
    write(folder / "expected" / "stdout", printed.str() + table + "\n");
}

void writeCases(const std::filesystem::path& folder)
{
    std::vector<Sample> samples = everyCode();
    for (const std::vector<Sample>& more :
         {everyDescription(), everyDescriptionWithWrongVariables(), everyReason()}) {
        samples.insert(samples.end(), more.begin(), more.end());
    }
    writeCase(folder / "every_entry_of_the_vocabulary", samples);
    writeCase(folder / "every_description_with_all_its_variables", everyDescription());
}

} // namespace

} // namespace eventsviewer::reference

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: write_cases FOLDER\n";
        return 2;
    }
    eventsviewer::reference::writeCases(argv[1]);
    return 0;
}
