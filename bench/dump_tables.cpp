// Writes the names, descriptions and reasons as one JSON object, for the scripts in peers/:
//   {"names": {"684": NAME, ...},
//    "descriptions": {"835": {"text": TEXT, "slots": [{"key": KEY, "reasons": {NAME: TEXT,
//    ...}}]}}}
// A slot without a table has no "reasons".

#include "catalog/event_name_table.h"
#include "describe/description_catalog.h"

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
    for (const Description& row : DescriptionCatalog) {
        Json::Value& description = tables["descriptions"][std::to_string(row.code)];
        description["text"] = row.text;
        description["slots"] = Json::arrayValue;
        for (const Slot& slot : row.slots) {
            Json::Value entry;
            entry["key"] = slot.key;
            if (slot.reasons != nullptr) {
                for (const Reason& reason : *slot.reasons) {
                    entry["reasons"][reason.name] = reason.explanation;
                }
            }
            description["slots"].append(entry);
        }
    }
    std::cout << tables << '\n';
}
