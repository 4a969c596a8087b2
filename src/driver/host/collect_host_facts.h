// Gathers the facts about the machine that the program runs on.
#pragma once

#include "driver/host/host_facts.h"

namespace ovrik {

/// What the host does not tell stays empty, the computer's name becomes "<unk>".
host_facts collect_host_facts();

}  // namespace ovrik
