// The generic editors: one parameter at a time, by number.
#include "ss_task.hpp"

namespace {

enum class Editor : int8_t { None, Integer, Real };

struct Parameter {
  void* SSTask::*field = nullptr;
  int status = 0;
  Editor editor = Editor::None;
};

struct Parameters {
  static constexpr int kLast = 66;
  Parameter by_id[kLast + 1];

  constexpr Parameters() {
#define ORX_SS_FIELD(name, id, editor, status) by_id[id] = {&SSTask::name, status, Editor::editor};
#define ORX_SS_INTERNAL(name)
#include "ss_fields.def"
  }
};

constexpr Parameters kParameters;

int edit(SSTask* task, long long id, const void* pointer, Editor editor) {
  if (!task) return KOB_SS_ERROR_TASK;
  if (id < 1 || id > Parameters::kLast) return KOB_SS_ERROR_BAD_ID;
  const Parameter& parameter = kParameters.by_id[id];
  if (parameter.editor != editor) return KOB_SS_ERROR_BAD_ID;
  if (!pointer) return parameter.status;
  task->*parameter.field = const_cast<void*>(pointer);
  return KOB_SS_OK;
}

}  // namespace

ORX_API int __kobdSSEditTask(SSTask* task, long long id, const double* array) {
  return edit(task, id, array, Editor::Real);
}
ORX_API int __kobsSSEditTask(SSTask* task, long long id, const float* array) {
  return edit(task, id, array, Editor::Real);
}
ORX_API int __kobiSSEditTask(SSTask* task, long long id, const void* integers) {
  return edit(task, id, integers, Editor::Integer);
}

ORX_API int __kobSSUnset(SSTask* task, long long id) {
  if (!task) return KOB_SS_ERROR_TASK;
  if (id < 1 || id > Parameters::kLast) return KOB_SS_ERROR_BAD_ID;
  task->*kParameters.by_id[id].field = nullptr;
  return KOB_SS_OK;
}
