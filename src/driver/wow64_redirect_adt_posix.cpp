#include "driver/wow64_redirect_adt.h"

namespace ovrik {

wow64_redirect_adt::wow64_redirect_adt() = default;
wow64_redirect_adt::~wow64_redirect_adt() = default;

}  // namespace ovrik
