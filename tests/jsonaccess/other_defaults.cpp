// The JSON access with a library whose defaults are all different: a setting that the JSON access
// does not give explicitly is wrong here.

#include <json/reader.h>
#include <json/writer.h>

namespace Json {
namespace {

void turnOver(Value& settings)
{
    for (const std::string& name : settings.getMemberNames()) {
        if (settings[name].isBool()) {
            settings[name] = !settings[name].asBool();
        }
    }
}

struct OtherReaderDefaults : CharReaderBuilder {
    OtherReaderDefaults()
    {
        turnOver(settings_);
        settings_["stackLimit"] = 10;
    }
};

struct OtherWriterDefaults : StreamWriterBuilder {
    OtherWriterDefaults()
    {
        turnOver(settings_);
        settings_["commentStyle"] = "None";
        settings_["indentation"] = "    ";
        settings_["precision"] = 3;
        settings_["precisionType"] = "decimal";
    }
};

} // namespace
} // namespace Json

#define CharReaderBuilder OtherReaderDefaults
#define StreamWriterBuilder OtherWriterDefaults
#include "jsonaccess/json_access.cpp"
