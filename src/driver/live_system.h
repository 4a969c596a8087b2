// The running Windows as a source.
#pragma once

namespace ovrik {

/// True if this run may read the running system. False: it may not, or there is no Windows that
/// runs here; which has been said on standard error.
bool check_live_system();

/// The same for the shadow copies of the running system.
bool check_shadow_copies();

}  // namespace ovrik
