#include "eventlog/log_files.h"

#include <dirent.h>
#include <fnmatch.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <set>
#include <string_view>
#include <utility>

namespace eventsviewer {

namespace {

constexpr std::size_t kMostFiles = 4; // of a log: see fileNamesOf

using Identity = std::pair<dev_t, ino_t>;

// A log with the files that it has now.
struct Candidate {
    std::string path;
    std::vector<Identity> files;
    std::uint64_t bytes = 0;
};

Identity identityOf(const struct stat& status)
{
    return {status.st_dev, status.st_ino};
}

std::string without(const std::string& text, std::string_view end)
{
    const std::size_t rest = text.size() - std::min(text.size(), end.size());
    const bool hasEnd = rest > 0 && text.compare(rest, end.size(), end) == 0;
    return text.substr(0, hasEnd ? rest : text.size());
}

class Search {
public:
    explicit Search(const std::string& name) : name_(name) {}
    void add(const std::string& path);
    FoundLogs result();

private:
    void addLog(const std::string& path);
    void addFolder(const std::string& path, const struct stat& status);

    const std::string& name_;
    FoundLogs found_;
    std::vector<Candidate> candidates_;
    std::set<Identity> folders_; // that were searched: a link may lead to one again
};

void Search::add(const std::string& path)
{
    struct stat status = {};
    const std::size_t before = candidates_.size() + found_.errors.size();
    if (path == "-" || stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) {
        addLog(path);
    } else if (folders_.count(identityOf(status)) == 0) {
        addFolder(path, status);
        if (candidates_.size() + found_.errors.size() == before) {
            found_.errors.push_back({path, "no log called " + name_ + " in this folder"});
        }
    }
}

void Search::addLog(const std::string& path)
{
    Candidate candidate{path, {}};
    for (const std::string& name : fileNamesOf(path)) {
        struct stat status = {};
        if (path == "-" ? fstat(0, &status) == 0 : stat(name.c_str(), &status) == 0) {
            candidate.files.push_back(identityOf(status));
            candidate.bytes +=
                S_ISREG(status.st_mode) ? static_cast<std::uint64_t>(status.st_size) : 0;
        }
    }
    candidates_.push_back(std::move(candidate));
}

void Search::addFolder(const std::string& path, const struct stat& status)
{
    if (!folders_.insert(identityOf(status)).second) {
        return;
    }
    errno = 0;
    DIR* const folder = opendir(path.c_str());
    std::set<std::string> names;
    while (const dirent* const entry = folder != nullptr ? readdir(folder) : nullptr) {
        names.emplace(entry->d_name);
    }
    if (errno != 0) {
        found_.errors.push_back({path, std::strerror(errno)});
    }
    if (folder != nullptr) {
        closedir(folder); // so that one is open at a time
    }
    const std::string inside = path.back() == '/' ? path : path + '/';
    std::set<std::string> logs;
    for (const std::string& file : names) {
        struct stat below = {};
        const bool exists = stat((inside + file).c_str(), &below) == 0;
        if (exists && S_ISDIR(below.st_mode)) {
            if (file != "." && file != "..") {
                addFolder(inside + file, below);
            }
            continue;
        }
        const std::string log = without(without(file, ".gz"), ".0");
        const bool isPart = fnmatch(name_.c_str(), log.c_str(), 0) == 0;
        const bool isNamed = isPart || fnmatch(name_.c_str(), file.c_str(), 0) == 0;
        // Reading a pipe or a device could wait for ever.
        if (isNamed && (!exists || S_ISREG(below.st_mode))) {
            struct stat whole = {};
            const bool isWhole =
                isPart && (stat((inside + log).c_str(), &whole) != 0 || S_ISREG(whole.st_mode));
            if (logs.insert(isWhole ? log : file).second) {
                addLog(inside + (isWhole ? log : file));
            }
        }
    }
}

FoundLogs Search::result()
{
    std::set<Identity> taken;
    std::set<std::string> missing;
    const auto isNew = [&taken, &missing](const Candidate& candidate) {
        bool isOne = candidate.files.empty() && missing.insert(candidate.path).second;
        for (const Identity& file : candidate.files) {
            isOne = taken.insert(file).second || isOne;
        }
        return isOne;
    };
    // A log with its predecessor comes before either of them alone.
    for (std::size_t files = kMostFiles + 1; files-- > 0;) {
        for (Candidate& candidate : candidates_) {
            if (candidate.files.size() == files && !isNew(candidate)) {
                candidate.path.clear();
            }
        }
    }
    for (Candidate& candidate : candidates_) {
        if (!candidate.path.empty()) {
            found_.bytes += candidate.bytes;
            found_.paths.push_back(std::move(candidate.path));
        }
    }
    return std::move(found_);
}

// The names of a path, the last one first.
std::vector<std::string_view> namesOf(std::string_view path)
{
    std::vector<std::string_view> names;
    std::size_t slash = 0;
    do {
        slash = path.rfind('/') + 1; // 0 without one
        names.push_back(path.substr(slash));
        path = path.substr(0, slash - std::min<std::size_t>(slash, 1));
    } while (slash > 0);
    return names;
}

} // namespace

std::vector<std::string> fileNamesOf(const std::string& path)
{
    if (path == "-") {
        return {path};
    }
    const std::string log = without(path, ".gz");
    std::vector<std::string> names = {log + ".0.gz", log + ".0", log + ".gz"};
    if (log == path) {
        names.push_back(log);
    }
    return names;
}

FoundLogs findLogs(const std::vector<std::string>& paths, const std::string& name)
{
    Search search(name);
    for (const std::string& path : paths) {
        search.add(path);
    }
    return search.result();
}

std::vector<std::string> distinctParts(const std::vector<std::string>& paths)
{
    if (paths.size() < 2) {
        return std::vector<std::string>(paths.size());
    }
    std::size_t first = SIZE_MAX; // of the names that are not common to all, from the end
    const std::vector<std::string_view> names = namesOf(paths.front());
    for (const std::string& path : paths) {
        const std::vector<std::string_view> others = namesOf(path);
        const std::size_t most = std::min({first, names.size() - 1, others.size() - 1});
        first = static_cast<std::size_t>(
            std::mismatch(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(most),
                          others.begin())
                .first -
            names.begin());
    }
    std::vector<std::string> parts;
    std::vector<std::string> before;
    std::set<std::string_view> different;
    for (std::size_t count = 1; different.size() < paths.size(); ++count) {
        before.swap(parts);
        parts.clear();
        for (const std::string& path : paths) {
            const std::vector<std::string_view> all = namesOf(path);
            const char* const begin = all[std::min(all.size(), first + count) - 1].data();
            parts.emplace_back(begin, all[first].data() + all[first].size());
        }
        if (parts == before) { // two are the same after all
            return paths;
        }
        different = {parts.begin(), parts.end()};
    }
    return parts;
}

} // namespace eventsviewer
