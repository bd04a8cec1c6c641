// The single-precision instance of what is included after this file.
#pragma once

using Real = float;
#define ORX_DF_NAME(name) orx_df_kernel_s##name
