# For cross builds: the library consists of headers only, so the build machine's can be used. They are reached through
# a symbolic link, because the build machine's include folder must not be searched.
set(nlohmann_json_FOUND TRUE)
set(headers ${CMAKE_BINARY_DIR}/header-only)
file(MAKE_DIRECTORY ${headers})
file(CREATE_LINK /usr/include/nlohmann ${headers}/nlohmann SYMBOLIC)
if(NOT TARGET nlohmann_json::nlohmann_json)
  add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED GLOBAL)
  target_include_directories(nlohmann_json::nlohmann_json SYSTEM INTERFACE ${headers})
endif()
