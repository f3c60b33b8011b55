#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace eventsviewer {

/// A new folder for a test. The destructor removes it with everything in it.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "events-viewer-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("no temporary folder: " + pattern);
        }
        path_ = pattern;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    std::string path(const std::string& name) const { return (path_ / name).string(); }

    /// Writes the file `name` and returns its path.
    std::string write(const std::string& name, const std::string& content) const
    {
        std::ofstream file(path_ / name, std::ios::binary);
        file << content << std::flush;
        if (!file.good()) {
            throw std::runtime_error("cannot write " + path(name));
        }
        return path(name);
    }

    std::string read(const std::string& name) const
    {
        std::ifstream file(path_ / name, std::ios::binary);
        if (!file.good()) {
            throw std::runtime_error("cannot read " + path(name));
        }
        std::ostringstream content;
        content << file.rdbuf();
        return content.str();
    }

private:
    std::filesystem::path path_;
};

} // namespace eventsviewer
