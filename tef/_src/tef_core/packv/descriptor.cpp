#include "_packing/descriptor.hpp"

static const orx::descriptor::Entry kEntry{orx::descriptor::of_packing("PackV", "y[i] = a[index[i]]")};
