#include "core/Znb_data.h"

std::unique_ptr<TStats_Obj> PVO_Node_Stats;
