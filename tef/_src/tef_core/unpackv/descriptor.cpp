#include "_packing/descriptor.hpp"

static const orx::descriptor::Entry kEntry{orx::descriptor::of_packing("UnpackV", "y[index[i]] = a[i]")};
