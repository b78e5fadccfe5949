# Cross-builds for 64-bit Windows with mingw-w64; the programs run under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)

# Where a distribution has two thread models, the POSIX one has std::thread.
find_program(MINGW_CXX NAMES x86_64-w64-mingw32-g++-posix x86_64-w64-mingw32-g++ REQUIRED)
mark_as_advanced(MINGW_CXX)
set(CMAKE_CXX_COMPILER "${MINGW_CXX}")
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)  # of the compiler's run-time

# Libraries of the building system do not serve; GoogleTest is built from source.
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_MODULE_PATH "${CMAKE_CURRENT_LIST_DIR}/googletest-cross-built")

# Wine without its offers to install a .NET and an HTML engine, and without its log
find_program(WINE NAMES wine64 wine PATHS /usr/lib/wine)
mark_as_advanced(WINE)
if(WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR env WINEDEBUG=-all WINEDLLOVERRIDES=mscoree,mshtml= "${WINE}")
endif()
