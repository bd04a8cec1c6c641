#include "_complex/descriptor.hpp"

static const Entry kEntry{of_products({
    .name = "Mul",
    .computes = "a b",
    .method = "singles as doubles; doubles with three roundings in a part",
    .c_name = "mul",
    // C99, annex G.5.1. A part that is infinity times 0 is NaN and raises invalid.
    .specials = {{{2, 3, 4, 5}, {-7, 22}},
                 {{0, 1, 0, 1}, {-1, 0}},
                 {{-0.0, 0, 1, 0}, {-0.0, 0}},
                 {{kInf, kNaN, 1, 1}, {kInf, kInf}, StatusOk, kReporting},
                 {{kNaN, -kInf, 1, 2}, {kInf, -kInf}, StatusOk, kReporting},
                 {{3, 4, kNaN, kInf}, {-kInf, kInf}, StatusOk, kReporting},
                 {{kInf, kInf, kInf, kInf}, {kNaN, kInf}, StatusOk, kReporting, FE_INVALID},
                 {{kInf, 0, 1, 0}, {kInf, kNaN}, StatusOk, kReporting, FE_INVALID},
                 {{kInf, 1, 2, 3}, {kInf, kInf}, StatusOk, kReporting},
                 {{kInf, 0, 0, 0}, {kNaN, kNaN}, StatusOk, kReporting, FE_INVALID},
                 {{kNaN, 1, 1, 1}, {kNaN, kNaN}},
                 {{kNaN, 0, kLargest, kLargest}, {kNaN, kNaN}, StatusOk, kReporting},
                 {{kLargest, 0, 2, 0}, {kInf, 0}, StatusOverflow, kReporting},
                 {{kLargest, kLargest, 1, 1}, {0, kInf}, StatusOverflow, kReporting}},
    .c = {.bounds = {.la = 0.51, .ha = 0.51, .ep = 1.119},
          .specials = {{{kLargest, kLargest, kLargest, kLargest}, {0, kInf}, StatusOverflow, kReporting}}},
    // sqrt(5)/2; products that underflow lose their own last bits.
    .z = {.bounds = {.la = 1.119, .ha = 1.119, .ep = 1.119},
          .specials = {{{kLargest, kLargest, kLargest, kLargest},
                        {0, kInf},
                        StatusOverflow,
                        kReporting,
                        FE_OVERFLOW | FE_INVALID}},
          .floor = {.la = 0x1p-1018, .ha = 0x1p-1018}},
})};
