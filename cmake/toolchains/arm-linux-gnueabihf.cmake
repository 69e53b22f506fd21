# The device: 32-bit ARM with Debian's cross compiler, against the libraries that scripts/arm-sysroot lays out.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)

get_filename_component(SDM_SYSROOT "${CMAKE_CURRENT_LIST_DIR}/../../build/sysroot-armhf" ABSOLUTE)
set(CMAKE_SYSROOT "${SDM_SYSROOT}")

# Programs are this machine's, everything else is the device's.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} "${SDM_SYSROOT}")
set(ENV{PKG_CONFIG_LIBDIR} "${SDM_SYSROOT}/usr/lib/arm-linux-gnueabihf/pkgconfig:${SDM_SYSROOT}/usr/share/pkgconfig")
unset(ENV{PKG_CONFIG_PATH})

# What is built here runs here, in user emulation.
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm -L "${SDM_SYSROOT}")
