// The caller's table of threads.
#pragma once

#include "orx/serv.h"

namespace orx {

// A caller who gives no table gets everything done on his own thread.
inline const ThreadingServices* threading_or_serial(const ThreadingServices* threading) {
  return threading ? threading : orx_serv_threading_serial();
}

}  // namespace orx
