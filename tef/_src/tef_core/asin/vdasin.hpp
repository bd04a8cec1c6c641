// Constants of the arc sine and the arc cosine, double; arc.hpp tells what for.
#pragma once
#include "frame/simd.hpp"

ORX_ISA_BEGIN(orx::tef)

struct dAsinData {
  Row<double> one = 1.0, half = 0.5, two = 2.0, minus_one = -1.0, minus_half = -0.5;
  Row<double> quarter = 0x1.921fb54442d18p+0, quarter_lo = 0x1.1a62633145c07p-54;  // pi/2
  Row<double> tiny = 0x1p-60;
  // (A - r)/r^3, r <= 1: to 2^-59.8 of the angle, to 2^-55.8 of the angle, and to 2^-27.6 of the angle
  Row<double> ha[13] = {0x1.5555555555578p-5,  0x1.333333332deeep-8,  0x1.6db6db722ee5cp-11,
                        0x1.f1c71a89bb8dap-14, 0x1.6e8be02a7126ap-16, 0x1.1c49d8425acd7p-18,
                        0x1.ca21e48458f8bp-21, 0x1.7571bf1a20a22p-23, 0x1.61aeef8ab178p-25,
                        0x1.df02e38680477p-29, 0x1.65c83d857aaf9p-28, -0x1.5b24740220bedp-30,
                        0x1.0c494cd96c54ep-31};
  Row<double> la[12] = {0x1.5555555555384p-5,  0x1.333333336ff95p-8,   0x1.6db6db417c4cbp-11,
                        0x1.f1c72c8df160bp-14, 0x1.6e89ec088f40ep-16,  0x1.1c6c61168d6edp-18,
                        0x1.c6f3ac7546769p-21, 0x1.8f06b3f293923p-23,  0x1.a9795c1b7b031p-26,
                        0x1.4195ba68b257ap-26, -0x1.0c6d764a60854p-28, 0x1.0655a9e13dbacp-29};
  Row<double> ep[5] = {0x1.5555c9d33e76fp-5, 0x1.33016e65acd88p-8, 0x1.748aeec7f3e4p-11,
                       0x1.8ba18d7995903p-14, 0x1.59e76297fe1fdp-15};
};
inline constexpr dAsinData vdasin_data{};

ORX_ISA_END
