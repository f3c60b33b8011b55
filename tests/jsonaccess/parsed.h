#pragma once

#include "jsonaccess/json_access.h"

namespace eventsviewer::jsonaccess {

inline Json::Value parsed(std::string_view text)
{
    Json::Value root;
    parse(text, root);
    return root;
}

} // namespace eventsviewer::jsonaccess
