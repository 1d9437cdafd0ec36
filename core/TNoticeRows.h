// The store's rows by slot, in key order, in blocks of 512 rows (about 50 KB) so that growing never moves
// them and a copied store shares them until either side changes a block.
#pragma once

#include "core/TBlockVector.h"
#include "core/TNoticeRecord.h"

using TNoticeRows = TBlockVector<TNoticeRecord, 9>;
