# Installed package: the shared library, the C header, a CMake package
# (find_package(sentivo) gives sentivo::sentivo) and a pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS sentivo EXPORT sentivoTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/sentivo DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(TARGET sentivo_tool)
    install(TARGETS sentivo_tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(EXPORT sentivoTargets NAMESPACE sentivo:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/sentivo)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/sentivoConfig.cmake.in
    ${PROJECT_BINARY_DIR}/sentivoConfig.cmake
    INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/sentivo)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/sentivoConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/sentivoConfig.cmake ${PROJECT_BINARY_DIR}/sentivoConfigVersion.cmake
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/sentivo)

# The way from the .pc file up to the prefix, whatever the library folder is.
file(RELATIVE_PATH SENTIVO_PC_TO_PREFIX "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
configure_file(${PROJECT_SOURCE_DIR}/cmake/sentivo.pc.in ${PROJECT_BINARY_DIR}/sentivo.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/sentivo.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
