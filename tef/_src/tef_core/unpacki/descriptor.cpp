#include "_packing/descriptor.hpp"

static const orx::descriptor::Entry kEntry{orx::descriptor::of_packing("UnpackI", "y[i * stride] = a[i]")};
