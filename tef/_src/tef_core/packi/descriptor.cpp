#include "_packing/descriptor.hpp"

static const orx::descriptor::Entry kEntry{orx::descriptor::of_packing("PackI", "y[i] = a[i * stride]")};
