#include "metadata/ibinencoder.h"

IBINEncoder::~IBINEncoder() = default;
