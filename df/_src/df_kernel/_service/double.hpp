// The double-precision instance of what is included after this file.
#pragma once

using Real = double;
#define ORX_DF_NAME(name) orx_df_kernel_d##name
