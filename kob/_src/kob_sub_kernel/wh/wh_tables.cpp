#include "wh/wh_tables.hpp"

#define WH_ROW(m0, m1, m2, m3, a0, a1, a2, a3) {m0, m1, m2, m3},
alignas(64) const uint32_t _kob_WH_M[273][4] = {
#include "wh/wh_tables.inc"
};
#undef WH_ROW

#define WH_ROW(m0, m1, m2, m3, a0, a1, a2, a3) a0 | a1 << 8 | a2 << 16 | uint32_t(a3) << 24,
alignas(64) const uint32_t _kob_WH_A[273] = {
#include "wh/wh_tables.inc"
};
#undef WH_ROW

#define WH_ROW(m0, m1, m2, m3, a0, a1, a2, a3) {1.0 / m0, 1.0 / m1, 1.0 / m2, 1.0 / m3},
alignas(64) const double _kobdWH_IM_Tab[273][4] = {
#include "wh/wh_tables.inc"
};
#undef WH_ROW
