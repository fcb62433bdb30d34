#pragma once

// What mcbinning is made of, for diagnosis: the algorithm classes with their steps, the data pass,
// percentiles, helpers. A host that bins needs mcbinning.h alone.

#include "algorithm/binalgorithm.h"
#include "algorithm/binefpreprocess.h"
#include "algorithm/efbinalgorithm.h"
#include "common/bincancelinfo.h"
#include "common/binprogressreporter.h"
#include "common/display.h"
#include "common/vectormath.h"
#include "metadata/binaryrecorditerator.h"
#include "metadata/bindatacache.h"
#include "metadata/bindatapreparator.h"
#include "metadata/bindataset.h"
#include "metadata/bindatatuple.h"
#include "metadata/efbindatatuple.h"
