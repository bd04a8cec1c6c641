#pragma once

#define ORX_API extern "C" __attribute__((visibility("default")))
