#include "output/utf8_locale.h"

namespace uni {

utf8_locale::utf8_locale() = default;
utf8_locale::~utf8_locale() = default;

}  // namespace uni
