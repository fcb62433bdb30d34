#include "common/progressreport.h"

ProgressReport::~ProgressReport() = default;
