# Configures the module for the vendor's SDK, as far as that goes without MSVC: clang-cl stands in for it, which takes
# the same options, and the SDK is a set of empty folders. Checks the build rules that CMake generates.
# usage: cmake -DSOURCE=… -DFOLDER=… -DLLVM=… -DQT=… [-DSDK=…] ["-DSETTINGS=-DNAME=VALUE …"] [-DMSC=1916] [-DPLAIN_QT=ON]
#              [-DERROR=text] [-DWARNING=text] -P configure_with_sdk.cmake
#   SETTINGS replaces the settings of a product's build that are not under test.
#   MSC is the version of the compiler, as in _MSC_VER; that of toolset v141 by default.
#   PLAIN_QT has CMake find a Qt without a library infix.
#   ERROR and WARNING are parts of the message that is expected; without them no error or warning must appear.
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER}/sdk/inc ${FOLDER}/sdk/inc-x64 ${FOLDER}/sdk/lib-x64 ${FOLDER}/empty)
if(NOT DEFINED SETTINGS)
  set(SETTINGS "-DZENTRI_SERVICE_ADDRESS=ai.example.com -DZENTRI_PROBE_ADDRESS=https://www.example.com")
endif()
separate_arguments(SETTINGS UNIX_COMMAND "${SETTINGS}")
if(NOT MSC)
  set(MSC 1916)
endif()
if(PLAIN_QT)
  file(MAKE_DIRECTORY ${FOLDER}/qt/lib)
  foreach(part bin include mkspecs plugins)
    file(CREATE_LINK ${QT}/${part} ${FOLDER}/qt/${part} SYMBOLIC)
  endforeach()
  file(COPY ${QT}/lib/cmake DESTINATION ${FOLDER}/qt/lib)
  file(GLOB libraries ${QT}/lib/*.a)
  foreach(library ${libraries})
    get_filename_component(name ${library} NAME)
    file(CREATE_LINK ${library} ${FOLDER}/qt/lib/${name} SYMBOLIC)
  endforeach()
  set(extras ${FOLDER}/qt/lib/cmake/Qt5Core/Qt5CoreConfigExtras.cmake)
  file(READ ${extras} content)
  string(REGEX REPLACE "set\\(QT_LIBINFIX [^\n]*\n" "" content "${content}")
  file(WRITE ${extras} "${content}")
  set(QT ${FOLDER}/qt)
endif()
execute_process(
  COMMAND ${CMAKE_COMMAND} -G Ninja -S ${SOURCE} -B ${FOLDER}/build -DZENTRI_VENDOR_SDK=ON -DCMAKE_BUILD_TYPE=Release
          -DCMAKE_SYSTEM_NAME=Windows -DCMAKE_TRY_COMPILE_TARGET_TYPE=STATIC_LIBRARY
          -DCMAKE_CXX_COMPILER=${LLVM}/clang-cl -DCMAKE_CXX_COMPILER_TARGET=x86_64-pc-windows-msvc
          -DCMAKE_CXX_FLAGS=-fmsc-version=${MSC}
          -DCMAKE_LINKER=${LLVM}/lld-link -DCMAKE_AR=${LLVM}/llvm-lib -DCMAKE_RC_COMPILER=${LLVM}/llvm-rc
          -DCMAKE_MT=${LLVM}/llvm-mt -DCMAKE_PREFIX_PATH=${QT} -DZENTRI_ARX_SDK=${SDK} ${SETTINGS}
  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
# CMake breaks its messages into lines.
string(REGEX REPLACE "[ \n]+" " " text "${output}")
function(expect_message kind)
  string(FIND "${text}" "CMake ${kind}" place)
  if(NOT ${ARGV1})
    if(NOT place EQUAL -1)
      message(FATAL_ERROR "unexpected ${kind}:\n${output}")
    endif()
    return()
  endif()
  string(FIND "${text}" "${${ARGV1}}" words)
  if(place EQUAL -1 OR words EQUAL -1)
    message(FATAL_ERROR "expected a ${kind} with \"${${ARGV1}}\":\n${output}")
  endif()
endfunction()
expect_message(Error ERROR)
expect_message(Warning WARNING)
if(ERROR)
  if(result EQUAL 0)
    message(FATAL_ERROR "expected to fail:\n${output}")
  endif()
  return()
endif()
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${output}")
endif()

file(READ ${FOLDER}/build/build.ninja rules)
foreach(expected "build bin/ZR_Zentri.arx:" "/DEF:${SOURCE}/host/ZR_Zentri.def" "-LIBPATH:${SDK}/lib-x64"
                 "rxapi.lib" "acdb23.lib" "acge23.lib" "acad.lib" "accore.lib" "adui23.lib" "wininet.lib"
                 "imsvc${SDK}/inc " "-D_AFXDLL" "-D_AFXEXT" "/utf-8" "/Zc:__cplusplus" "/W4" "/EHsc"
                 "-std:c++17" "ZR_Zentri.rc.res" "-DNOMINMAX" "-D_HAS_STD_BYTE=0"
                 "-D_DISABLE_CONSTEXPR_MUTEX_CONSTRUCTOR")
  string(FIND "${rules}" "${expected}" place)
  if(place EQUAL -1)
    message(FATAL_ERROR "build.ninja does not contain ${expected}")
  endif()
endforeach()
foreach(unwanted "${SOURCE}/sim/" "${SOURCE}/tests/" "-D_USRDLL" "-D_DEBUG" "/permissive-")
  string(FIND "${rules}" "${unwanted}" place)
  if(NOT place EQUAL -1)
    message(FATAL_ERROR "build.ninja contains ${unwanted}")
  endif()
endforeach()

# One run-time library for everything that is compiled.
file(READ ${FOLDER}/build/compile_commands.json commands)
string(JSON count LENGTH "${commands}")
math(EXPR last "${count} - 1")
set(checked 0)
foreach(index RANGE ${last})
  string(JSON command GET "${commands}" ${index} command)
  string(JSON source GET "${commands}" ${index} file)
  if(NOT source MATCHES "\\.(cpp|cxx)$")
    continue()
  endif()
  math(EXPR checked "${checked} + 1")
  if(NOT command MATCHES " [-/]MD " OR command MATCHES " [-/]M(Dd|T|Td) ")
    message(FATAL_ERROR "not the DLL of the release run-time library:\n${command}")
  endif()
endforeach()
if(checked LESS 50)
  message(FATAL_ERROR "only ${checked} sources were checked")
endif()
