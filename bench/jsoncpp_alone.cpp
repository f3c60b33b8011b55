// jsoncpp_alone FILE: reads the file line by line, parses each line once with one reader, and does
// nothing else. No program that uses the JSON library for every line can be faster.

#include <json/reader.h>

#include <fstream>
#include <iostream>
#include <memory>
#include <string>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: jsoncpp_alone FILE\n";
        return 2;
    }
    // With these two the library's defaults are the settings that the program uses.
    Json::CharReaderBuilder builder;
    builder["allowTrailingCommas"] = false;
    builder["skipBom"] = false;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());

    std::ifstream file(argv[1]);
    std::string line;
    std::size_t objects = 0;
    while (std::getline(file, line)) {
        Json::Value root;
        reader->parse(line.data(), line.data() + line.size(), &root, nullptr);
        objects += root.isObject() ? 1 : 0;
    }
    std::cout << objects << '\n';
}
