# What `cmake --install` puts down: library, headers, a CMake package, dsp.pc and the documents; and Debian packages of
# the same by CPack (`scripts/package`).

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(dsp_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/dsp)

install(TARGETS dsp EXPORT dsp
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
foreach(header dsp/dsp.h dsp/rf/matrix.h)
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder} COMPONENT development)
endforeach()

install(EXPORT dsp NAMESPACE dsp:: FILE dspConfig.cmake DESTINATION ${dsp_package_dir} COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/dspConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/dspConfigVersion.cmake DESTINATION ${dsp_package_dir} COMPONENT development)

# Relative to where the file lies, so that a prefix can be moved.
set(dsp_pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH dsp_pc_prefix ${CMAKE_INSTALL_PREFIX}/${dsp_pkgconfig_dir} ${CMAKE_INSTALL_PREFIX})
configure_file(${CMAKE_CURRENT_LIST_DIR}/dsp.pc.in ${PROJECT_BINARY_DIR}/dsp.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/dsp.pc DESTINATION ${dsp_pkgconfig_dir} COMPONENT development)

install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)
install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development FILES_MATCHING PATTERN "*.md")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "The developers of dsp <dsp@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "routines for measurement signals")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libdsp${DSP_ABI})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "Routines for measurement signals: the shared library")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libdsp-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libdsp${DSP_ABI} (= ${DSP_RELEASE})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Routines for measurement signals: headers, CMake package and documents")
include(CPack)
