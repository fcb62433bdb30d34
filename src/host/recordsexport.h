#pragma once

// Marks what `mcrecords` offers to other libraries; everything else is hidden.
#define MCRECORDS_API __attribute__((visibility("default")))
