// A C++ program that was built against the installed library: exponentials of a vector, in pieces on threads.
#include <orx/serv.h>
#include <orx/tef.h>

#include <cmath>
#include <cstdio>
#include <vector>

int main() {
  struct Work {
    std::vector<float> x = std::vector<float>(1000), y = std::vector<float>(1000);
  } work;
  for (int i = 0; i < 1000; ++i) work.x[i] = float(i) * 0.01f;
  orx_serv_threading()->parallelFor(10, 0, &work, [](int piece, int, int, void* args) {
    auto& w = *static_cast<Work*>(args);
    _tefsExp(100, &w.x[100 * piece], &w.y[100 * piece]);
  });
  double worst = 0;
  for (int i = 0; i < 1000; ++i)
    worst = std::fmax(worst, std::fabs(work.y[i] / std::exp(double(work.x[i])) - 1));
  std::printf("largest relative error %.1e\n", worst);
  return worst < 1.2e-7 ? 0 : 1;
}
