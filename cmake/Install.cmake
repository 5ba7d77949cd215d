# What `cmake --install` puts where: headers, library, programs, the CMake package and the pkg-config file.
include(CMakePackageConfigHelpers)

set(SONVEX_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/qo_sonvexLib)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/sonvex DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${PROJECT_BINARY_DIR}/include/sonvex/export.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/sonvex)
install(TARGETS qo_sonvexLib EXPORT qo_sonvexLibTargets)
install(EXPORT qo_sonvexLibTargets NAMESPACE qo:: DESTINATION ${SONVEX_PACKAGE_DIR})

# Programs and package find the library relative to themselves, so the installed folder can be moved. In the build the
# library lies as it will be installed: a RUNPATH that the installation had to change would end in an empty entry until
# then, and the loader takes that for the current folder.
if(TARGET sonvex-analyser)
    file(RELATIVE_PATH bin_to_lib ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(sonvex-analyser PROPERTIES
        INSTALL_RPATH "$ORIGIN/${bin_to_lib}"
        BUILD_WITH_INSTALL_RPATH ON)
    get_target_property(build_bin sonvex-analyser BINARY_DIR)
    get_filename_component(build_lib ${build_bin}/${bin_to_lib} ABSOLUTE)
    set_target_properties(qo_sonvexLib PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${build_lib})
    install(TARGETS sonvex-analyser sonvex-talker)
endif()

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/qo_sonvexLibConfig.cmake.in qo_sonvexLibConfig.cmake
    INSTALL_DESTINATION ${SONVEX_PACKAGE_DIR})
write_basic_package_version_file(qo_sonvexLibConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/qo_sonvexLibConfig.cmake ${PROJECT_BINARY_DIR}/qo_sonvexLibConfigVersion.cmake
    DESTINATION ${SONVEX_PACKAGE_DIR})

file(RELATIVE_PATH SONVEX_PC_TO_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" SONVEX_PC_TO_PREFIX ${SONVEX_PC_TO_PREFIX})
configure_file(${PROJECT_SOURCE_DIR}/cmake/qo_sonvexLib.pc.in qo_sonvexLib.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/qo_sonvexLib.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
