# What `cmake --install` installs: library, headers, programs, a CMake package, dsp.pc and the documents; and the target
# `uninstall`, which removes it. DspPackages.cmake makes Debian packages of it.

include(CMakePackageConfigHelpers)

# A folder that is given as an absolute path inside the prefix moves with the prefix as a relative one does.
function(dsp_relative_to_prefix folder result)
  set(path ${folder})
  if(IS_ABSOLUTE ${folder})
    file(RELATIVE_PATH path ${CMAKE_INSTALL_PREFIX} ${folder})
    if(path MATCHES "^\\.\\.")
      set(path ${folder})
    endif()
  endif()
  set(${result} ${path} PARENT_SCOPE)
endfunction()
dsp_relative_to_prefix(${CMAKE_INSTALL_LIBDIR} dsp_libdir)
dsp_relative_to_prefix(${CMAKE_INSTALL_INCLUDEDIR} dsp_includedir)
set(dsp_package_dir ${dsp_libdir}/cmake/dsp)

install(TARGETS dsp dsp_static EXPORT dsp
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
        LIBRARY DESTINATION ${dsp_libdir} COMPONENT runtime NAMELINK_COMPONENT development
        ARCHIVE DESTINATION ${dsp_libdir} COMPONENT development)
foreach(header dsp/dsp.h dsp/rf/matrix.h)
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES ${header} DESTINATION ${dsp_includedir}/${folder} COMPONENT development)
endforeach()

install(EXPORT dsp NAMESPACE dsp:: FILE dspConfig.cmake DESTINATION ${dsp_package_dir} COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/dspConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/dspConfigVersion.cmake DESTINATION ${dsp_package_dir} COMPONENT development)

# dsp.pc names folders relative to its own, so that a prefix can be moved, unless they lie outside the prefix.
set(dsp_pkgconfig_dir ${dsp_libdir}/pkgconfig)
if(IS_ABSOLUTE ${dsp_libdir})
  set(dsp_pc_prefix ${CMAKE_INSTALL_PREFIX})
else()
  file(RELATIVE_PATH dsp_pc_prefix /${dsp_pkgconfig_dir} /)
  string(PREPEND dsp_pc_prefix "\${pcfiledir}/")
endif()
foreach(kind includedir libdir)
  set(dsp_pc_${kind} ${dsp_${kind}})
  if(NOT IS_ABSOLUTE ${dsp_${kind}})
    set(dsp_pc_${kind} "\${prefix}/${dsp_${kind}}")
  endif()
endforeach()
list(TRANSFORM dsp_runtime PREPEND -l OUTPUT_VARIABLE dsp_pc_runtime)
list(JOIN dsp_pc_runtime " " dsp_pc_runtime)
set(dsp_pc_private "Libs.private: ${dsp_pc_runtime}")
if(NOT dsp_shared)
  set(dsp_pc_private "Libs.private:")
  set(dsp_pc_libs " ${dsp_pc_runtime}")
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/dsp.pc.in ${PROJECT_BINARY_DIR}/dsp.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/dsp.pc DESTINATION ${dsp_pkgconfig_dir} COMPONENT development)

install(FILES README.md CHANGELOG.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documents)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documents
        FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN badges EXCLUDE PATTERN reference EXCLUDE)

if(DSP_TOP)
  add_custom_target(uninstall COMMAND ${CMAKE_COMMAND} -P ${CMAKE_CURRENT_LIST_DIR}/Uninstall.cmake
                    WORKING_DIRECTORY ${PROJECT_BINARY_DIR} VERBATIM)
endif()
