#include "_service/double.hpp"
#include "roots1d/roots1d.hpp"
