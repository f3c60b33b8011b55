// Writes the program's own tables as one JSON object, for scripts:
//   {"names": {"684": NAME, ...},
//    "reasons": [{"table": TABLE, "name": NAME, "explanation": TEXT}, ...],
//    "descriptions": {"835": {"text": TEXT, "slots": [{"key": KEY, "table": TABLE,
//                                                      "reasons": {NAME: TEXT, ...}}, ...]}, ...}}
// A slot that no table explains has neither "table" nor "reasons".

#include "catalog/event_name_table.h"
#include "describe/description_catalog.h"
#include "vocabulary/reason_table_list.h"

#include <json/writer.h>

#include <iostream>
#include <string>

int main()
{
    using namespace eventsviewer;

    Json::Value tables;
    for (const EventName& row : EventNameTable) {
        tables["names"][std::to_string(row.code)] = row.name;
    }
    for (const auto& [name, table] : reasonTablesByName()) {
        for (const Reason& reason : *table) {
            Json::Value entry;
            entry["table"] = name;
            entry["name"] = reason.name;
            entry["explanation"] = reason.explanation;
            tables["reasons"].append(entry);
        }
    }
    for (const Description& row : DescriptionCatalog) {
        Json::Value& description = tables["descriptions"][std::to_string(row.code)];
        description["text"] = row.text;
        description["slots"] = Json::arrayValue;
        for (const Slot& slot : row.slots) {
            Json::Value entry;
            entry["key"] = slot.key;
            if (slot.reasons != nullptr) {
                entry["table"] = nameOf(*slot.reasons);
                for (const Reason& reason : *slot.reasons) {
                    entry["reasons"][reason.name] = reason.explanation;
                }
            }
            description["slots"].append(entry);
        }
    }
    std::cout << tables << '\n';
}
