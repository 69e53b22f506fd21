// Visibility of what libsdmhost.so offers beyond the contract.
#pragma once

#define SDM_HOST_EXPORT __attribute__((visibility("default")))
