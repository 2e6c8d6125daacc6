# zentri_module_library(NAME SOURCES... [LINK libs...])
#   An object library of the module. Its sources include the SDK's headers by their own names and the module's
#   headers by folder ("chat/ZR_AiChatManager.h").
function(zentri_module_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} OBJECT ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ON AUTOUIC ON)
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR})
  target_compile_definitions(${name} PUBLIC UNICODE _UNICODE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
                                            QT_DEPRECATED_WARNINGS)
  target_link_libraries(${name} PUBLIC zentri_sdk ${ARG_LINK} PRIVATE zentri_warnings)
endfunction()

# zentri_test(NAME SOURCES... [LINK libs...] [DISPLAY] [ALONE] [SERVICE] [FIXTURE name])
#   A GoogleTest program whose every test is a CTest of its own, in a process of its own: the module keeps
#   process-wide singletons, and each test starts with fresh ones. Widget tests run on Qt's offscreen platform.
#   DISPLAY tests need real windows; they share one X server and so run one at a time.
#   ALONE tests change what every other process would see.
#   SERVICE tests start the AI service, ZENTRI_SERVICE_PROGRAM, with ServiceProcess.
#   FIXTURE: a CTest fixture that must have been set up before.
function(zentri_test name)
  cmake_parse_arguments(ARG "DISPLAY;ALONE;SERVICE" "FIXTURE" "SOURCES;LINK" ${ARGN})
  if(ARG_SERVICE)
    list(APPEND ARG_LINK zentri_test_service)
    if(WIN32)
      list(PREPEND CMAKE_CROSSCOMPILING_EMULATOR
           ${CMAKE_SOURCE_DIR}/tests/support/service/with-services ${ZENTRI_SERVICE_PROGRAM})
    endif()
  endif()
  add_executable(${name} ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ON RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE ${ARG_LINK} GTest::gtest GTest::gmock zentri_warnings)
  if(ARG_DISPLAY AND WIN32)
    set(properties RESOURCE_LOCK display LABELS display ENVIRONMENT "QT_QPA_PLATFORM=windows")
  elseif(ARG_DISPLAY)
    set(properties RESOURCE_LOCK display LABELS display ENVIRONMENT "QT_QPA_PLATFORM=xcb")
  else()
    set(properties ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
  endif()
  if(ARG_FIXTURE)
    list(APPEND properties FIXTURES_REQUIRED ${ARG_FIXTURE})
  endif()
  if(ARG_ALONE)
    list(APPEND properties RUN_SERIAL TRUE)
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 60 ${properties})
endfunction()

# zentri_python_test(FILE [CLASSES class...])
#   A script of Python's unittest whose every test method is a CTest of its own, <class>.<name without test_>; of the
#   named classes, or of all.
function(zentri_python_test file)
  cmake_parse_arguments(ARG "" "" "CLASSES" ${ARGN})
  get_filename_component(file ${file} ABSOLUTE)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
  file(STRINGS ${file} lines REGEX "^(class |    def test_)")
  foreach(line ${lines})
    if(line MATCHES "^class ([A-Za-z]+)")
      set(class ${CMAKE_MATCH_1})
    elseif(line MATCHES "def test_([a-z0-9_]+)" AND (NOT ARG_CLASSES OR class IN_LIST ARG_CLASSES))
      add_test(NAME ${class}.${CMAKE_MATCH_1} COMMAND python3 ${file} ${class}.test_${CMAKE_MATCH_1})
      set_tests_properties(${class}.${CMAKE_MATCH_1} PROPERTIES TIMEOUT 60)
    endif()
  endforeach()
endfunction()

# zentri_bench(NAME SOURCES... [LINK libs...])
#   A Google Benchmark program, called bench_*; CI runs each once.
function(zentri_bench name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE ${ARG_LINK} benchmark::benchmark zentri_warnings)
endfunction()
