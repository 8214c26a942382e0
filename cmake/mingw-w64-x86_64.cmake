# Cross build for 64-bit Windows with Debian's MinGW-w64 (g++-mingw-w64-x86-64). The posix
# thread model is the one whose libstdc++ has std::mutex and std::thread.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(KY_MINGW_PREFIX x86_64-w64-mingw32)
find_program(CMAKE_C_COMPILER NAMES ${KY_MINGW_PREFIX}-gcc-posix ${KY_MINGW_PREFIX}-gcc REQUIRED)
find_program(CMAKE_CXX_COMPILER NAMES ${KY_MINGW_PREFIX}-g++-posix ${KY_MINGW_PREFIX}-g++ REQUIRED)
find_program(CMAKE_RC_COMPILER NAMES ${KY_MINGW_PREFIX}-windres REQUIRED)
set(CMAKE_FIND_ROOT_PATH /usr/${KY_MINGW_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# A host points CMAKE_PREFIX_PATH at an installed KyGraph tree anywhere.
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)
# Tests run under Wine from the build tree.
find_program(KY_WINE NAMES wine64 wine)
if(KY_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${KY_WINE})
endif()
