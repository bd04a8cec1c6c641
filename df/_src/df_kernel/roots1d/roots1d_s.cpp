#include "_service/single.hpp"
#include "roots1d/roots1d.hpp"
