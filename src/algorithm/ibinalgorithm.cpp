#include "algorithm/ibinalgorithm.h"

IBINAlgorithm::~IBINAlgorithm() = default;
