#include "metadata/ibinusermissing.h"

IBINUserMissing::~IBINUserMissing() = default;
