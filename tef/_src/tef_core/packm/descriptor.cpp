#include "_packing/descriptor.hpp"

static const orx::descriptor::Entry kEntry{
    orx::descriptor::of_packing("PackM", "y = the elements of a whose mask is not 0")};
