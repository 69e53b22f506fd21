#include <RejectReasonsStrings.h>

const std::string RejectReasonsStrings::unchanged_data = "UNCHANGED_DATA";
const std::string RejectReasonsStrings::not_changed = "NOT_CHANGED";
