# Cross-builds for Windows x64 with mingw-w64, in its variant with POSIX threads, which std::thread needs.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(ZENTRI_MINGW x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${ZENTRI_MINGW}-gcc-posix)
set(CMAKE_CXX_COMPILER ${ZENTRI_MINGW}-g++-posix)
set(CMAKE_RC_COMPILER ${ZENTRI_MINGW}-windres)

# Qt for Windows is where ZENTRI_QT_WINDOWS says, or in the cache of tools/qt-windows.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZENTRI_QT_WINDOWS)
if(NOT ZENTRI_QT_WINDOWS)
  execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/../tools/qt-windows OUTPUT_VARIABLE ZENTRI_QT_WINDOWS
                  OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "tools/qt-windows failed")
  endif()
  set(ZENTRI_QT_WINDOWS ${ZENTRI_QT_WINDOWS} CACHE PATH "Qt for Windows")
endif()

set(CMAKE_FIND_ROOT_PATH /usr/${ZENTRI_MINGW} ${ZENTRI_QT_WINDOWS})
set(CMAKE_PREFIX_PATH ${ZENTRI_QT_WINDOWS})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Tests run in Wine.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../tools/in-wine --build ${CMAKE_BINARY_DIR}
                                  --qt ${ZENTRI_QT_WINDOWS} --)
