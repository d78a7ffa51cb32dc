#pragma once

#include "DataHelpers.h"

class Session;

namespace StateList {

/**
 * Every state of every country (the children of the items of list 1), as
 * ItemID and ItemName, by name. Empty, reported, on failure.
 */
Rows allStates(Session& session);

} // namespace StateList
