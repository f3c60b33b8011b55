// write_case FOLDER: writes the case that shows every sample. The reference makes its table.

#include "reference/naive.h"
#include "reference/naive_json.h"
#include "reference/samples.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>

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

void writeCase(const std::filesystem::path& folder)
{
    std::filesystem::create_directories(folder / "expected");
    std::string log;
    for (const Sample& sample : everySample()) {
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

} // namespace

} // namespace eventsviewer::reference

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: write_case FOLDER\n";
        return 2;
    }
    eventsviewer::reference::writeCase(argv[1]);
    return 0;
}
