#include "_math/sort.hpp"

#include "orx/base/api.hpp"

using namespace orx::sorting;

ORX_API double __kobdQSortSelect(int n, double* array, int k) { return select(array, 0, n - 1, k); }
ORX_API void __kobdQSortStep(int n, double* array, int stride) { sort(array, n, Strided(stride)); }
ORX_API void __kobdQSort(int n, double* array) { sort(array, n, Contiguous()); }
