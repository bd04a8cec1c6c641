#include "_packing/descriptor.hpp"

static const orx::descriptor::Entry kEntry{
    orx::descriptor::of_packing("UnpackM", "y[i] = the next element of a where mask[i] is not 0")};
