// Visibility of the library's public names; everything else stays inside the shared object.
#pragma once

/// Marks a class or function that services link with.
#define SDM_EXPORT __attribute__((visibility("default")))
