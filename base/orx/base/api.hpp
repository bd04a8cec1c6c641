// The mark of an exported function: C linkage, visible outside its shared library.
#pragma once

#define ORX_API extern "C" __attribute__((visibility("default")))
