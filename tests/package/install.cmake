# Sets up the folders of a machine that has only the host and the packages, for the tests of the packages.
# usage: cmake -DFOLDER=… -DPACKAGES=… -DHOST_FILES=… -P install.cmake
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER}/host)
file(COPY ${HOST_FILES} DESTINATION ${FOLDER}/host)
file(ARCHIVE_EXTRACT INPUT ${PACKAGES}/ZR_Zentri.bundle.zip DESTINATION "${FOLDER}/Application Plugins")
file(ARCHIVE_EXTRACT INPUT ${PACKAGES}/without-qt/ZR_Zentri.bundle.zip DESTINATION ${FOLDER}/without-qt)
