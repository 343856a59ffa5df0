#include "unicode_private.hpp"
namespace ZOLT_2_18::strings::_private {
core_set const avx2_cores = portable_cores;
}
