# For cross builds: builds GoogleTest from the sources in Debian's package.
set(GTest_FOUND TRUE)
if(NOT TARGET gtest)
  set(INSTALL_GTEST OFF)
  set(BUILD_GMOCK ON)
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  foreach(part gtest gmock gtest_main gmock_main)
    # As system headers they cause no warnings.
    get_target_property(folders ${part} INTERFACE_INCLUDE_DIRECTORIES)
    set_target_properties(${part} PROPERTIES INTERFACE_SYSTEM_INCLUDE_DIRECTORIES "${folders}")
  endforeach()
endif()
