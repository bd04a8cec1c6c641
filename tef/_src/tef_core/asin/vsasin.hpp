// Constants of the arc sine and the arc cosine, single; arc.hpp tells what for.
#pragma once
#include "frame/simd.hpp"

ORX_ISA_BEGIN(orx::tef)

struct sAsinData {
  Row<float> one = 1.0f, half = 0.5f, two = 2.0f, minus_one = -1.0f, minus_half = -0.5f;
  Row<float> quarter = 0x1.921fb6p+0f, quarter_lo = -0x1.777a5cp-25f;  // pi/2
  Row<float> tiny = 0x1p-28f;                                          // its eighth power does not underflow
  // to 2^-31.6 of the angle, to 2^-27.5 of the angle, and to 2^-14.6 of the angle
  Row<float> ha[6] = {0x1.55554cp-5f,  0x1.3338a4p-8f,  0x1.6ca948p-11f,
                      0x1.04be3ep-13f, 0x1.d68a7ap-17f, 0x1.343b5p-17f};
  Row<float> la[5] = {0x1.5555cap-5f, 0x1.330164p-8f, 0x1.748bc2p-11f, 0x1.8b9a98p-14f, 0x1.59ec9cp-15f};
  Row<float> ep[2] = {0x1.5205f6p-5f, 0x1.82708cp-8f};
};
inline constexpr sAsinData vsasin_data{};

ORX_ISA_END
