#include "_complex/descriptor.hpp"

static const Entry kEntry{of_sums({
    .name = "Sub",
    .computes = "a - b",
    .c_name = "sub",
    .specials = {{{2, 3, 5, -1}, {-3, 4}},
                 {{kLargest, 0, -kLargest, 0}, {kInf, 0}, StatusOverflow, kReporting},
                 {{kLargest, 0, -kLargest, 0}, {kInf, 0}, StatusOk, kEP, FE_OVERFLOW},
                 {{1, -kLargest, 2, kLargest}, {-1, -kInf}, StatusOverflow, kReporting},
                 {{kNaN, kLargest, 0, -kLargest}, {kNaN, kInf}, StatusOverflow, kReporting},
                 {{kInf, kLargest, 0, -kLargest}, {kInf, kInf}, StatusOk, kAllClasses, FE_OVERFLOW},
                 {{kInf, 1, 1, 1}, {kInf, 0}},
                 {{1, 1, 1, -kInf}, {0, kInf}},
                 {{kInf, 1, kInf, 1}, {kNaN, 0}, StatusOk, kAllClasses, FE_INVALID},
                 {{kNaN, 1, 1, 1}, {kNaN, 0}},
                 {{-0.0, 0, 0, 0}, {-0.0, 0}}},
})};
