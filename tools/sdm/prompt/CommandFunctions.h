// What the commands do; the table in Commands.cpp says how they are called.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "Commands.h"

namespace cli
{

/// The first word of some commands.
constexpr const char* jsonWord = "--json";

/// Of `list`.
constexpr const char* changedWord = "--changed";

/// Takes `jsonWord` away. Whether it was there.
bool takeJsonWord(Arguments& arguments);

void writeJson(Session& session, const nlohmann::ordered_json& document);

// Reading.
Outcome listItems(Session& session, const Arguments& words);
Outcome showItem(Session& session, const Arguments& arguments);
Outcome explainItem(Session& session, const Arguments& words);
Outcome getItems(Session& session, const Arguments& words);
Outcome importItem(Session& session, const Arguments& arguments);

// Changing.
Outcome setItems(Session& session, const Arguments& arguments);
Outcome changeLocally(Session& session, const Arguments& arguments);

// User data and the device as a whole.
Outcome resetUserData(Session& session, const Arguments& arguments);
Outcome reloadUserData(Session& session, const Arguments& arguments);
Outcome restartService(Session& session, const Arguments& arguments);
Outcome lockItem(Session& session, const Arguments& arguments);
Outcome unlockItem(Session& session, const Arguments& arguments);
Outcome demandFault(Session& session, const Arguments& arguments);

// Looking inside.
Outcome showTraffic(Session& session, const Arguments& arguments);
Outcome showSecurityLog(Session& session, const Arguments& arguments);
Outcome showStats(Session& session, const Arguments& arguments);
Outcome changeLogLevel(Session& session, const Arguments& arguments);

} // namespace cli
