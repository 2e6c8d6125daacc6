# The vendor's SDK and MFC as what the module's sources include and link.
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

# MFC as a DLL, the one that the host has: the module is an extension DLL, so that MFC's state is the host's. The
# definitions are what MFC goes by; the flag is for generators of Visual Studio projects.
set(CMAKE_MFC_FLAG 2)
add_library(zentri_sdk INTERFACE)
target_compile_definitions(zentri_sdk INTERFACE _AFXDLL _AFXEXT _WINDOWS UNICODE _UNICODE NOMINMAX
                                                _CRT_SECURE_NO_WARNINGS)
target_include_directories(zentri_sdk SYSTEM INTERFACE ${ZENTRI_ARX_SDK}/inc ${ZENTRI_ARX_SDK}/inc-x64)
target_link_directories(zentri_sdk INTERFACE ${ZENTRI_ARX_SDK}/lib-x64)
target_link_libraries(zentri_sdk INTERFACE
  rxapi.lib ac1st23.lib acdb23.lib acge23.lib acgiapi.lib acad.lib accore.lib acui23.lib adui23.lib
  wininet.lib ole32.lib user32.lib)
# Every source is read after the SDK's headers.
target_precompile_headers(zentri_sdk INTERFACE ${CMAKE_CURRENT_LIST_DIR}/vendor_sdk.h)
