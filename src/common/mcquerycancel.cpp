#include "common/mcquerycancel.h"

MCQueryCancel::~MCQueryCancel() = default;
