#include "command_line_model.h"

#include <cstdlib>
#include <string_view>

namespace eventsviewer::fuzz {

namespace {

struct Option {
    std::string_view name;
    Action action; // none for an option that takes an argument
    char letter;
};

// The names begin with different letters, so any beginning of one but the empty one is unique.
constexpr Option kOptions[] = {
    {"show", kActionShow, 's'},       {"all", kActionAll, 'a'},
    {"log", kActionLog, 'l'},         {"help", kActionHelp, 'h'},
    {"input_file", kActionNone, 'i'}, {"output_file", kActionNone, 'o'},
    {"number", kActionNone, 'n'},
};

const Option* optionWithLetter(char letter)
{
    for (const Option& option : kOptions) {
        if (option.letter == letter) {
            return &option;
        }
    }
    return nullptr;
}

const Option* optionWithName(std::string_view name)
{
    for (const Option& option : kOptions) {
        if (!name.empty() && option.name.substr(0, name.size()) == name) {
            return &option;
        }
    }
    return nullptr;
}

class Model {
public:
    Model(const std::vector<std::string>& arguments, Action action) : arguments_(arguments)
    {
        options_.action = action;
    }

    std::optional<Options> run()
    {
        while (next_ < arguments_.size()) {
            const std::string& element = arguments_[next_++];
            if (element == "--") {
                break;
            }
            const bool accepted = element.substr(0, 2) == "--" ? takeName(element.substr(2))
                                  : element.size() > 1 && element[0] == '-'
                                      ? takeGroup(element.substr(1))
                                      : true;
            if (!accepted) {
                return std::nullopt;
            }
        }
        return options_;
    }

private:
    bool takeName(const std::string& text)
    {
        const std::size_t equals = text.find('=');
        const Option* const option = optionWithName(std::string_view(text).substr(0, equals));
        if (option == nullptr) {
            return false;
        }
        if (option->action != kActionNone) {
            options_.action = option->action;
            return equals == std::string::npos;
        }
        return equals != std::string::npos ? takeArgument(*option, text.substr(equals + 1))
                                           : takeNextAsArgument(*option);
    }

    bool takeGroup(const std::string& letters)
    {
        for (std::size_t i = 0; i < letters.size(); ++i) {
            const Option* const option = optionWithLetter(letters[i]);
            if (option == nullptr) {
                return false;
            }
            if (option->action == kActionNone) {
                return i + 1 < letters.size() ? takeArgument(*option, letters.substr(i + 1))
                                              : takeNextAsArgument(*option);
            }
            options_.action = option->action;
        }
        return true;
    }

    bool takeNextAsArgument(const Option& option)
    {
        return next_ < arguments_.size() && takeArgument(option, arguments_[next_++]);
    }

    bool takeArgument(const Option& option, const std::string& argument)
    {
        if (option.letter == 'i') {
            options_.inputPath = argument;
        } else if (option.letter == 'o') {
            options_.outputPath = argument;
        } else {
            char* end = nullptr;
            options_.count = std::strtoull(argument.c_str(), &end, 10);
            return end != argument.c_str() && options_.count > 0;
        }
        return true;
    }

    const std::vector<std::string>& arguments_;
    std::size_t next_ = 0;
    Options options_;
};

} // namespace

std::optional<Options> modelOptions(const std::vector<std::string>& arguments, Action action)
{
    return Model(arguments, action).run();
}

} // namespace eventsviewer::fuzz
