# Packages the build again: the result must be byte-identical to the existing package.
# usage: cmake -DPACKAGE=… -DBUILD=… -DFOLDER=… -P package_again.cmake
file(REMOVE_RECURSE ${FOLDER})
execute_process(COMMAND ${PACKAGE} --windows --build ${BUILD} --out ${FOLDER} RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "tools/package failed")
endif()
file(SHA256 ${BUILD}/package/ZR_Zentri.bundle.zip before)
file(SHA256 ${FOLDER}/ZR_Zentri.bundle.zip now)
if(NOT before STREQUAL now)
  message(FATAL_ERROR "the package differs: SHA-256 ${before}, now ${now}")
endif()
