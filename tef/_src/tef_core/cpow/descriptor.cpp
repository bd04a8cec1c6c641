#include "_complex/power.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_power("Pow", "a^b")};
