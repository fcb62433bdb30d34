#include "algorithm/iefbinalgorithm.h"

IEFBINAlgorithm::~IEFBINAlgorithm() = default;
