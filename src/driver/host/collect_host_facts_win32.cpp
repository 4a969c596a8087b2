#include "driver/host/collect_host_facts.h"
#include "driver/host/windows_facts.h"

namespace ovrik {

host_facts collect_host_facts() { return facts_of_windows(running_windows()); }

}  // namespace ovrik
