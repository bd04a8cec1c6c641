// The summary of a stream as bytes and back. Numbers lie as they lie in memory, so images travel between machines
// of one byte order: all that this library runs on are little-endian.
//
//   header: "OSQ1", bytes of a value (4 or 8), variables, 0; eps
//   for each variable: observed, greatest; active, block, fill, runs, finished runs, 0; the raw values;
//   for each run: error; count, level; the values
#include "squantiles/join.hpp"

namespace orx::ss::squantiles {

namespace {

constexpr int32_t kMagic = 'O' | 'S' << 8 | 'Q' << 16 | '1' << 24;

struct Header {
  int32_t magic, value_size, variables, zero;
  double eps;
};
struct VariableImage {
  int64_t observed;
  double greatest;
  int32_t active, block, fill, run_count, first_run, zero;
};
struct RunImage {
  double error;
  int32_t count, level;
};
static_assert(sizeof(Header) == 24 && sizeof(VariableImage) == 40 && sizeof(RunImage) == 16);

// Writes, or only counts where there is nowhere to write to.
class Writer {
 public:
  explicit Writer(void* to) : to_(static_cast<char*>(to)) {}
  template <class R>
  void put(const R* records, int64_t count) {
    const int64_t bytes = count * int64_t(sizeof(R));
    if (to_ && bytes) __builtin_memcpy(to_ + size_, records, size_t(bytes));
    size_ += bytes;
  }
  int64_t size() const { return size_; }

 private:
  char* to_;
  int64_t size_ = 0;
};

// Reads until there is nothing left; from then on it fails.
class Reader {
 public:
  Reader(const void* from, int64_t size) : from_(static_cast<const char*>(from)), left_(size) {}
  template <class R>
  bool get(R* records, int64_t count) {
    if (!has<R>(count)) return false;
    const int64_t bytes = count * int64_t(sizeof(R));
    if (bytes) __builtin_memcpy(records, from_, size_t(bytes));
    from_ += bytes;
    left_ -= bytes;
    return true;
  }
  template <class R>
  bool has(int64_t count) const {
    return count >= 0 && count <= left_ / int64_t(sizeof(R));
  }
  bool at_end() const { return left_ == 0; }

 private:
  const char* from_;
  int64_t left_;
};

template <class T>
void write(const StreamState& state, Writer& to) {
  const Header header = {kMagic, int32_t(sizeof(T)), state.count, 0, state.eps};
  to.put(&header, 1);
  for (int v = 0; v < state.count; ++v) {
    const StreamVariable& s = state.variables()[v];
    const VariableImage image = {s.observed, s.greatest,  s.active,    s.block,
                                 s.fill,     s.run_count, s.first_run, 0};
    to.put(&image, 1);
    to.put(static_cast<const T*>(s.raw), s.fill);
    for (int k = 0; k < s.run_count; ++k) {
      const RunImage run = {s.runs[k].error, s.runs[k].count, s.runs[k].level};
      to.put(&run, 1);
      to.put(values_of<T>(s.runs[k]), run.count);
    }
  }
}

// Are values and records such as a summary may have? What is wrong beyond that can give wrong quantiles, but no
// harm.
bool is_sound(const VariableImage& v, double eps) {
  constexpr int most_blocks = 50;
  return v.observed >= 0 && (v.active == 0 || v.active == 1) && v.block >= 0 && v.block < most_blocks &&
         v.run_count >= 0 && v.first_run >= 0 && v.first_run <= v.run_count && v.fill >= 0 &&
         v.fill <= 2 * run_size(v.block, eps);
}
bool is_sound(const RunImage& run, bool present, int block, double eps) {
  constexpr int most_levels = 62;
  if (run.count < 1 || run.level < 0 || run.level > most_levels || !(run.error >= 0)) return false;
  return !present || (run.count == run_size(block, eps) && run.level >= 1 && run.level < block_levels(block));
}

template <class T>
int read_variable(Reader& from, StreamVariable& variable, double eps) {
  VariableImage image;
  if (!from.get(&image, 1) || !is_sound(image, eps) || !from.has<T>(image.fill) ||
      !from.has<RunImage>(image.run_count))
    return KOB_SS_ERROR_STREAM_IMAGE;
  variable.observed = image.observed;
  variable.greatest = image.greatest;
  variable.active = image.active;
  variable.block = image.block;
  variable.first_run = image.first_run;
  if (image.fill) {
    variable.size = 2 * run_size(image.block, eps);
    variable.raw = allocate_array<T>(variable.size);
    if (!variable.raw) return KOB_SS_ERROR_MEMORY;
    variable.fill = image.fill;
    if (!from.get(static_cast<T*>(variable.raw), image.fill)) return KOB_SS_ERROR_STREAM_IMAGE;
  }
  if (!reserve_runs(variable, image.run_count)) return KOB_SS_ERROR_MEMORY;
  double told = image.fill, excess = 0;  // what the runs tell may exceed what was seen by twice their error
  for (int k = 0; k < image.run_count; ++k) {
    RunImage run;
    if (!from.get(&run, 1) || !is_sound(run, k >= image.first_run, image.block, eps) ||
        !from.has<T>(run.count))
      return KOB_SS_ERROR_STREAM_IMAGE;
    T* const values = allocate_array<T>(run.count);
    if (!values) return KOB_SS_ERROR_MEMORY;
    variable.runs[variable.run_count++] = {values, run.count, run.level, run.error};
    from.get(values, run.count);
    told += represented(variable.runs[k]);
    excess += 2 * run.error;
  }
  const double seen = double(image.observed);
  return told >= seen && told - excess <= seen ? KOB_SS_OK : KOB_SS_ERROR_STREAM_IMAGE;
}

template <class T>
int read(SSTask* task, Reader& from) {
  Header header;
  if (!from.get(&header, 1) || header.magic != kMagic || header.value_size != int32_t(sizeof(T)) ||
      !(header.eps > 0 && header.eps <= 1) || header.variables < 1 ||
      !from.has<VariableImage>(header.variables))
    return KOB_SS_ERROR_STREAM_IMAGE;
  if (!task->dimension || value(task, task->dimension) != header.variables) return KOB_SS_ERROR_DIMENSION;
  StreamState* state = new_state(header.eps, header.variables);
  if (!state) return KOB_SS_ERROR_MEMORY;
  int status = KOB_SS_OK;
  for (int v = 0; v < state->count && !status; ++v)
    status = read_variable<T>(from, state->variables()[v], state->eps);
  if (!status && !from.at_end()) status = KOB_SS_ERROR_STREAM_IMAGE;
  if (status)
    free_state(state);
  else
    adopt_state(task, state);
  return status;
}

void write_state(const SSTask* task, Writer& to) {
  const StreamState& state = *state_of(task);
  task->isDouble ? write<double>(state, to) : write<float>(state, to);
}

}  // namespace

}  // namespace orx::ss::squantiles

using namespace orx::ss::squantiles;

ORX_API long long __kobSSGetStreamSize(const SSTask* task) {
  if (!task) return KOB_SS_ERROR_TASK;
  if (!state_of(task)) return 0;
  Writer counter(nullptr);
  write_state(task, counter);
  return counter.size();
}

ORX_API int __kobSSSaveStream(const SSTask* task, void* image) {
  if (!task) return KOB_SS_ERROR_TASK;
  if (!state_of(task)) return KOB_SS_OK;
  if (!image) return KOB_SS_ERROR_STREAM_IMAGE;
  Writer writer(image);
  write_state(task, writer);
  return KOB_SS_OK;
}

ORX_API int __kobSSLoadStream(SSTask* task, const void* image, long long size) {
  if (!task) return KOB_SS_ERROR_TASK;
  if (!image) return KOB_SS_ERROR_STREAM_IMAGE;
  Reader reader(image, size);
  return task->isDouble ? read<double>(task, reader) : read<float>(task, reader);
}
