# `cmake --install`: the library, the public headers, the command line, a CMake package
# (find_package(TolvenXml)) and a pkg-config file (tolven-xml.pc).
include(CMakePackageConfigHelpers)

set(tolven_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/TolvenXml)

install(TARGETS tolven_xml EXPORT TolvenXmlTargets ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
file(GLOB tolven_public_headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/tolven/*.hpp)
install(FILES ${tolven_public_headers} ${PROJECT_BINARY_DIR}/include/tolven/version.hpp
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tolven)
if(TARGET tolven-xml)
  install(TARGETS tolven-xml RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(EXPORT TolvenXmlTargets NAMESPACE TolvenXml:: DESTINATION ${tolven_package_dir})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/TolvenXmlConfig.cmake.in
  ${PROJECT_BINARY_DIR}/TolvenXmlConfig.cmake INSTALL_DESTINATION ${tolven_package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TolvenXmlConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/TolvenXmlConfig.cmake ${PROJECT_BINARY_DIR}/TolvenXmlConfigVersion.cmake
  DESTINATION ${tolven_package_dir})

# The .pc finds its prefix from its own folder, so an install with --prefix needs no reconfigure.
file(RELATIVE_PATH tolven_pc_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" tolven_pc_to_prefix "${tolven_pc_to_prefix}")
configure_file(${PROJECT_SOURCE_DIR}/cmake/tolven-xml.pc.in ${PROJECT_BINARY_DIR}/tolven-xml.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tolven-xml.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
