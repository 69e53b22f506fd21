// Visibility of the library's public names; everything else stays inside the shared object.
#pragma once

#define SDM_EXPORT __attribute__((visibility("default")))
