#include "common/progresslistener.h"

ProgressListener::~ProgressListener() = default;
