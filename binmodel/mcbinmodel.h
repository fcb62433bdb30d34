#pragma once

// All that a host needs to keep, read, apply and measure bins.

#include "file/binfile.h"
#include "measure/binstatistics.h"
#include "measure/evidence.h"
#include "model/binlookup.h"
#include "model/binmodel.h"
#include "model/binmodelexport.h"
#include "model/binsettings.h"
#include "model/binsource.h"
#include "model/missingdefinition.h"
#include "model/refusal.h"
#include "model/resultselection.h"
#include "model/variableinfo.h"
#include "run/outputmodel.h"
