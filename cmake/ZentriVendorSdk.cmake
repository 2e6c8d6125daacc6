# The build for the product: the vendor's SDK and MFC as what the module's sources include and link, and the rules that
# the host's process sets. Nobody has tried this build yet. Whatever depends on the vendor's headers and libraries, and
# so may have to change with the first attempt, is in this file and in vendor_sdk.h; docs/windows.md lists it.
set(ZENTRI_ARX_SDK "" CACHE PATH "The vendor's SDK for release 23: the folder that holds inc and lib-x64")
if(NOT ZENTRI_ARX_SDK)
  message(FATAL_ERROR "ZENTRI_ARX_SDK is not set: give the folder of the vendor's SDK, -DZENTRI_ARX_SDK=C:/…")
endif()
foreach(part inc lib-x64)
  if(NOT IS_DIRECTORY ${ZENTRI_ARX_SDK}/${part})
    message(FATAL_ERROR "ZENTRI_ARX_SDK is not the vendor's SDK: there is no ${ZENTRI_ARX_SDK}/${part}")
  endif()
endforeach()
if(NOT MSVC OR NOT CMAKE_SIZEOF_VOID_P EQUAL 8)
  message(FATAL_ERROR "The vendor's SDK is for MSVC and x64: run cmake in its x64 command prompt")
endif()

# The defaults of the other builds are for a service on the developer's own machine.
if(NOT ZENTRI_SERVICE_ADDRESS OR NOT ZENTRI_PROBE_ADDRESS)
  message(FATAL_ERROR "The product has no default service: set both ZENTRI_SERVICE_ADDRESS (host name, optionally "
                      "with a port) and ZENTRI_PROBE_ADDRESS (web address)")
endif()

# A host of release 23 is built with toolset v141 (Visual Studio 2017), and a process has one msvcp140.dll, the host's.
# Run-time libraries serve modules of older toolsets, never of newer ones.
set(ZENTRI_HOST_TOOLSET 141)
if(NOT MSVC_TOOLSET_VERSION EQUAL ZENTRI_HOST_TOOLSET)
  message(WARNING "The host is built with toolset v${ZENTRI_HOST_TOOLSET}, this compiler is of v${MSVC_TOOLSET_VERSION}: "
                  "the module may need a newer Visual C++ run-time library than the host brings. Use toolset "
                  "v${ZENTRI_HOST_TOOLSET} (vcvarsall.bat x64 -vcvars_ver=14.16), or install the newer "
                  "redistributable package with the product.")
endif()
if(NOT QT_LIBINFIX)
  message(WARNING "Qt in ${Qt5_DIR} has plain library names: in a host that uses Qt itself the module gets the host's "
                  "Qt5Core.dll, whatever its version. Build Qt with \"configure -qtlibinfix Zentri\".")
endif()

# The debug run-time library and the debug MFC would come into the process beside the host's release ones: two heaps,
# and two sets of MFC's state and class lists.
if(CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_CONFIGURATION_TYPES Release RelWithDebInfo CACHE STRING "No Debug: the host uses the release MFC" FORCE)
elseif(NOT CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo|MinSizeRel)$")
  message(FATAL_ERROR "The host uses the release MFC and run-time library, so CMAKE_BUILD_TYPE=${CMAKE_BUILD_TYPE} is "
                      "not possible: use Release, or RelWithDebInfo for debugging")
endif()
set(CMAKE_MSVC_RUNTIME_LIBRARY MultiThreadedDLL)
# MFC as a DLL, the one that the host has: the module is an extension DLL, so that MFC's state is the host's. The
# definitions select it; the flag is for generators of Visual Studio projects.
set(CMAKE_MFC_FLAG 2)

add_library(zentri_sdk INTERFACE)
target_compile_definitions(zentri_sdk INTERFACE
  _AFXDLL _AFXEXT _WINDOWS UNICODE _UNICODE _CRT_SECURE_NO_WARNINGS
  # The module's sources and Qt's headers use std::min and std::max. GDI+ and, possibly, the SDK want the macros: see
  # vendor_sdk.h.
  NOMINMAX
  # In C++17 std::byte is ambiguous with the byte of rpcndr.h wherever a header says "using namespace std", which the
  # SDK's are expected to do. The module does not use std::byte.
  _HAS_STD_BYTE=0
  # From 14.40 on the constructor of std::mutex is constexpr and leaves the mutex in a state that the functions of an
  # older msvcp140.dll dereference as a null pointer.
  _DISABLE_CONSTEXPR_MUTEX_CONSTRUCTOR)
# /permissive- is not among the options: the SDK's and MFC's headers are not expected to be conforming. The module's own
# sources are (tools/check-windows), so it can be added to zentri_warnings once the headers prove to compile with it.
target_include_directories(zentri_sdk SYSTEM INTERFACE ${ZENTRI_ARX_SDK}/inc ${ZENTRI_ARX_SDK}/inc-x64)
target_link_directories(zentri_sdk INTERFACE ${ZENTRI_ARX_SDK}/lib-x64)
# The vendor's libraries are named from memory of the documentation.
target_link_libraries(zentri_sdk INTERFACE
  rxapi.lib ac1st23.lib acdb23.lib acge23.lib acgiapi.lib acad.lib accore.lib acui23.lib adui23.lib
  wininet.lib ole32.lib user32.lib)
# Every source is read after the SDK's headers.
target_precompile_headers(zentri_sdk INTERFACE ${CMAKE_CURRENT_LIST_DIR}/vendor_sdk.h)
