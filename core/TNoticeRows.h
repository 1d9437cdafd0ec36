// The store's rows by slot (slot = nb_internal_key - 1), in fixed blocks so that growing never moves them.
#pragma once

#include "core/TBlockVector.h"
#include "core/TNoticeRecord.h"

using TNoticeRows = TBlockVector<TNoticeRecord>;
