// What every file of the service layer starts from: its public header and the mark of an exported function.
#pragma once

#include "orx/serv.h"

#define ORX_API extern "C" __attribute__((visibility("default")))
