// The board's package-level data: the per-node notice counters. Created by the board when it is built
// (rows: console nodes; columns: the four severity texts) and freed with it; null while no board exists.
// Board thread only.
#pragma once

#include "support/Zs_stat1.h"

#include <memory>

extern std::unique_ptr<TStats_Obj> PVO_Node_Stats;
