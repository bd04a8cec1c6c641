#include "measure.hpp"

#include <algorithm>

#include "arguments.hpp"
#include "call_arrays.hpp"

void record::add(const verdict& v, const sample& at) {
  ++count;
  correct += v.correct;
  if (v.wrong && wrong++ == 0) wrong_at = at;
  if (!v.wrong && v.error > worst) {
    worst = v.error;
    worst_at = at;
  }
}

void record::merge(const record& other) {
  if (wrong == 0) wrong_at = other.wrong_at;
  if (other.worst > worst || (other.worst == worst && other.worst_at.in[0] > worst_at.in[0])) {
    worst = other.worst;
    worst_at = other.worst_at;
  }
  count += other.count;
  correct += other.correct;
  wrong += other.wrong;
}

template <class T>
std::vector<record> measure_strata(const function_entry& f, const judged_function& judged, double effort) {
  call_arrays<T> arrays(1);
  const columns<T> x = make_arguments<T>(f, judged, effort, arrays.random());
  judge exactly(judged);
  std::vector<record> records(f.kernels.size());
  std::vector<exact_result> exact(call_arrays<T>::most);
  const int inputs = f.shape->inputs, parameters = inputs + f.shape->scalars;

  for (size_t done = 0, n; done < x[0].size(); done += n) {
    n = std::min<size_t>(arrays.shuffle(), x[0].size() - done);
    T element[6];
    const std::array<T, 4> scalar = make_scalars<T>(arrays.random());
    std::copy(scalar.begin(), scalar.end(), element + inputs);
    for (int j = 0; j < inputs; ++j) std::copy_n(x[j].data() + done, n, arrays.at[j]);
    for (size_t i = 0; i < n; ++i) {
      for (int j = 0; j < inputs; ++j) element[j] = arrays.at[j][i];
      exact[i] = exactly(element, parameters);
    }
    for (size_t k = 0; k < records.size(); ++k) {
      arrays.call(f, f.kernels[k], static_cast<int>(n), scalar);
      for (size_t i = 0; i < n; ++i) {
        sample at{{}, arrays.at[2][i]};
        for (int j = 0; j < inputs; ++j) at.in[j] = arrays.at[j][i];
        records[k].add(compare(exact[i], arrays.at[2][i]), at);
      }
    }
  }
  return records;
}

template std::vector<record> measure_strata<float>(const function_entry&, const judged_function&, double);
template std::vector<record> measure_strata<double>(const function_entry&, const judged_function&, double);
