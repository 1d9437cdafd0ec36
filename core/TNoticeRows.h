// The store's rows by slot, in key order, in blocks of 64 rows (about 6 KB): growing never moves them, and
// a copied store shares them until either side changes a block, so a change under an open copy costs one
// small block however large the board is.
#pragma once

#include "core/TBlockVector.h"
#include "core/TNoticeRecord.h"

using TNoticeRows = TBlockVector<TNoticeRecord, 6>;
