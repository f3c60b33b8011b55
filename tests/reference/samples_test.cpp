// A walk that is cut short finds nothing wrong in what it leaves out.

#include "reference/samples.h"

#include "reference/naive.h"
#include "reference/naive_json.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace eventsviewer::reference {
namespace {

TEST(EverySample, HasEveryCode)
{
    std::set<std::int32_t> codes;
    for (const Sample& sample : everySample()) {
        codes.insert(sample.code);
    }
    for (std::int32_t code = vocabulary::eventNames().front().code - 10;
         code <= vocabulary::eventNames().back().code + 10; ++code) {
        EXPECT_EQ(1U, codes.count(code)) << code;
    }
    for (const std::int32_t code : {INT32_MIN, -1, 0, 1, INT32_MAX}) {
        EXPECT_EQ(1U, codes.count(code)) << code;
    }
}

/// The values of the variable `key`, as JSON, in the samples of `description` whose other variables
/// are all strings. "missing" means none, "all missing" no variables.
std::set<std::string> valuesOf(const std::string& key, const vocabulary::Description& description,
                               const std::vector<Sample>& samples)
{
    std::set<std::string> values;
    for (const Sample& sample : samples) {
        if (sample.code != description.code) {
            continue;
        }
        const Json::Value root = parsed(sample.variables);
        bool areOthersStrings = true;
        for (const vocabulary::Slot& slot : description.slots) {
            areOthersStrings &= slot.key == key || root[slot.key].isString();
        }
        if (root.empty()) {
            values.insert("all missing");
        }
        if (areOthersStrings) {
            values.insert(root.isMember(key) ? compact(root[key]) : "missing");
        }
    }
    return values;
}

TEST(EverySample, HasEachVariableOfEveryKindAndEachReason)
{
    const std::vector<Sample> samples = everySample();
    for (const vocabulary::Description& description : vocabulary::descriptions()) {
        for (const vocabulary::Slot& slot : description.slots) {
            SCOPED_TRACE(asRow(description) + " " + slot.key);
            const std::set<std::string> values = valuesOf(slot.key, description, samples);
            for (const char* const value : {"missing", "all missing", "7", "-1.5", "true", "false",
                                            "null", "[\"x\"]", "{\"x\":\"y\"}"}) {
                EXPECT_EQ(1U, values.count(value)) << value;
            }
            if (slot.table.empty()) {
                EXPECT_EQ(1U, values.count(compact("the " + slot.key)));
            }
            for (const vocabulary::Reason& reason : vocabulary::reasons()) {
                std::vector<std::string> names = namesLike(reason);
                names.push_back(reason.name);
                for (const std::string& name : names) {
                    EXPECT_TRUE(reason.table != slot.table || values.count(compact(name)) == 1)
                        << name;
                }
            }
        }
    }
}

TEST(NamesLike, AreNearlyTheName)
{
    EXPECT_EQ(
        (std::vector<std::string>{"bbm", "BM", "BB", "BBMX", " BBM", "BBM ", "1", "", "text"}),
        namesLike({"BeamSwitchTypes", "BBM", "text"}));
}

} // namespace
} // namespace eventsviewer::reference
