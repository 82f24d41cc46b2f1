# Cross-building for 64-bit Windows with Debian's mingw-w64 compilers.
#   cmake -S . -B build-win -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake
# The "-posix" compilers are used because only their C++ library has
# std::thread and std::mutex. Everything the compiler brings (libgcc,
# libstdc++, winpthread) is linked in statically, so quorvex.dll and the
# programs need no DLLs beyond Windows' own.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(QUORVEX_MINGW_TRIPLE x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${QUORVEX_MINGW_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${QUORVEX_MINGW_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${QUORVEX_MINGW_TRIPLE}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${QUORVEX_MINGW_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static")

# Test programs run under Wine when the build runs on Linux.
find_program(QUORVEX_WINE NAMES wine64 wine PATHS /usr/lib/wine)
if(QUORVEX_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${QUORVEX_WINE})
endif()

# SQLite and GoogleTest built for Windows by scripts/windows-thirdparty live
# under one prefix; it is searched like the compiler's own root.
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QUORVEX_WINDOWS_PREFIX)
if(QUORVEX_WINDOWS_PREFIX)
  list(APPEND CMAKE_FIND_ROOT_PATH ${QUORVEX_WINDOWS_PREFIX})
  # Header-only libraries that the command-line host includes without
  # looking for them (CLI11, nlohmann/json) are copied there too.
  set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES ${QUORVEX_WINDOWS_PREFIX}/include)
endif()
