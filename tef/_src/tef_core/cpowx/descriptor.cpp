#include "_complex/power.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_power("Powx", "a^b, one b for all")};
