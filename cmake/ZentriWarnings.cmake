# The warnings for our own code, all in one place. Link zentri_warnings PRIVATE.
add_library(zentri_warnings INTERFACE)
if(MSVC)
  target_compile_options(zentri_warnings INTERFACE /W4 /utf-8 /Zc:__cplusplus /EHsc
                                                   $<$<BOOL:${ZENTRI_WERROR}>:/WX>)
else()
  target_compile_options(zentri_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor
                                                   -Woverloaded-virtual $<$<BOOL:${ZENTRI_WERROR}>:-Werror>)
endif()

# Sanitizers apply to everything that is linked, so they are not in zentri_warnings.
if(ZENTRI_SANITIZE)
  add_compile_options(-fsanitize=${ZENTRI_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ZENTRI_SANITIZE})
endif()

# Line coverage, for tools/coverage.
if(ZENTRI_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()
