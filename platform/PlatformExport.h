// Visibility of the contract's types. Services are found by name and then down-cast, so the type
// information of every contract class has to be one and the same in the library, the service and the
// platform, however each of them was built.
#pragma once

/// Marks a class, function or text that the platform defines, or whose type information is shared.
#define SDM_PLATFORM_EXPORT __attribute__((visibility("default")))
