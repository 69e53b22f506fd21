// Reasons of the contract, made when the library is loaded.
#include <RejectReasonsStrings.h>

const std::string RejectReasonsStrings::unchanged_data = "UNCHANGED_DATA";
const std::string RejectReasonsStrings::not_changed = "NOT_CHANGED";
