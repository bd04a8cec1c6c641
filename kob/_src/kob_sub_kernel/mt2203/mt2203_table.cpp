#include "mt2203/mt2203_table.hpp"

alignas(64) const orx::brng::Mt2203Parameters _kob_mt2203_table[6024] = {
#include "mt2203/mt2203_table.inc"
};
