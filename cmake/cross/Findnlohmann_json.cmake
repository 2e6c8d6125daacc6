# For cross builds: the library is headers only, so this machine's serve any target. Their folder is linked to,
# because the machine's own include folder must not come into the search path.
set(nlohmann_json_FOUND TRUE)
set(headers ${CMAKE_BINARY_DIR}/header-only)
file(MAKE_DIRECTORY ${headers})
file(CREATE_LINK /usr/include/nlohmann ${headers}/nlohmann SYMBOLIC)
if(NOT TARGET nlohmann_json::nlohmann_json)
  add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED GLOBAL)
  target_include_directories(nlohmann_json::nlohmann_json SYSTEM INTERFACE ${headers})
endif()
