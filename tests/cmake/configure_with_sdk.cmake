# Configures the module for the vendor's SDK, as far as possible without MSVC: with clang-cl, which takes the same
# options, and an SDK of empty folders. Then checks the contents of the generated build.
# usage: cmake -DSOURCE=… -DFOLDER=… -DLLVM=… -DQT=… [-DSDK=…] [-DERROR=text] -P configure_with_sdk.cmake
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER}/sdk/inc ${FOLDER}/sdk/inc-x64 ${FOLDER}/sdk/lib-x64 ${FOLDER}/empty)
execute_process(
  COMMAND ${CMAKE_COMMAND} -G Ninja -S ${SOURCE} -B ${FOLDER}/build -DZENTRI_VENDOR_SDK=ON -DCMAKE_BUILD_TYPE=Release
          -DCMAKE_SYSTEM_NAME=Windows -DCMAKE_TRY_COMPILE_TARGET_TYPE=STATIC_LIBRARY
          -DCMAKE_CXX_COMPILER=${LLVM}/clang-cl -DCMAKE_CXX_COMPILER_TARGET=x86_64-pc-windows-msvc
          -DCMAKE_LINKER=${LLVM}/lld-link -DCMAKE_AR=${LLVM}/llvm-lib -DCMAKE_RC_COMPILER=${LLVM}/llvm-rc
          -DCMAKE_MT=${LLVM}/llvm-mt -DCMAKE_PREFIX_PATH=${QT} -DZENTRI_ARX_SDK=${SDK}
  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(ERROR)
  string(FIND "${output}" "${ERROR}" place)
  if(result EQUAL 0 OR place EQUAL -1)
    message(FATAL_ERROR "expected to fail with \"${ERROR}\":\n${output}")
  endif()
  return()
endif()
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${output}")
endif()

file(READ ${FOLDER}/build/build.ninja rules)
foreach(expected "build bin/ZR_Zentri.arx:" "/DEF:${SOURCE}/host/ZR_Zentri.def" "-LIBPATH:${SDK}/lib-x64"
                 "rxapi.lib" "acdb23.lib" "acge23.lib" "acad.lib" "accore.lib" "adui23.lib" "wininet.lib"
                 "imsvc${SDK}/inc " "-D_AFXDLL" "-D_AFXEXT" "/utf-8" "/permissive-" "/Zc:__cplusplus" "/W4" "/EHsc"
                 "-std:c++17" "ZR_Zentri.rc.res")
  string(FIND "${rules}" "${expected}" place)
  if(place EQUAL -1)
    message(FATAL_ERROR "build.ninja does not contain ${expected}")
  endif()
endforeach()
foreach(unwanted "${SOURCE}/sim/" "${SOURCE}/tests/" "-D_USRDLL")
  string(FIND "${rules}" "${unwanted}" place)
  if(NOT place EQUAL -1)
    message(FATAL_ERROR "build.ninja contains ${unwanted}")
  endif()
endforeach()
