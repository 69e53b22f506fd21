// Visibility of what libsdmhost.so offers beyond the contract.
#pragma once

/// Marks what libsdmhost.so defines.
#define SDM_HOST_EXPORT __attribute__((visibility("default")))
