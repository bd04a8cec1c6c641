// Parameters of the 273 Wichmann-Hill generators, by the number of the sub-generator. Moduli are primes just
// below 2^24, no two alike in the whole table; multipliers are primitive roots below 256, so that a product
// fits in 32 bits. The period of each generator is the product of its four m - 1 over 8, above 2^92.9.
//
// The multipliers of rows 1 to 271 did best in the spectral test of the combined generator in dimensions 2 to
// 6; wh_tables.inc tells among how many, and the figures reached.
#pragma once

#include <cstdint>

extern "C" {
extern const uint32_t _kob_WH_M[273][4];     // moduli
extern const uint32_t _kob_WH_A[273];        // multipliers, the first in the lowest byte
extern const double _kobdWH_IM_Tab[273][4];  // 1 / modulus
}
