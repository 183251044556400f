# Debian packages of what `cmake --install` installs, made by scripts/package. That script puts the files that every
# package must have into ${dsp_debian}.

set(DSP_MAINTAINER "dsp developers <dsp@example.org>" CACHE STRING "maintainer of the Debian packages")
set(dsp_debian ${PROJECT_BINARY_DIR}/debian)
set(dsp_debian_name_runtime libdsp${DSP_ABI})
set(dsp_debian_name_development libdsp-dev)
set(dsp_debian_name_tools dsp-tools)
set(dsp_debian_name_python python3-dsp)
set(dsp_debian_name_documents libdsp-doc)

# A manual page for each program, made of its --help.
find_program(HELP2MAN help2man REQUIRED)
set(dsp_pages)
function(dsp_manual_page program about)
  if(TARGET ${program})
    get_target_property(name ${program} OUTPUT_NAME)
    set(page ${dsp_debian}/${name}.1)
    add_custom_command(OUTPUT ${page}.gz DEPENDS ${program} VERBATIM
      COMMAND ${CMAKE_COMMAND} -E make_directory ${dsp_debian}
      COMMAND ${HELP2MAN} --no-info --no-discard-stderr --name ${about} --version-string=${DSP_RELEASE}
              --manual "User Commands" --source "dsp ${DSP_RELEASE}" --output ${page} $<TARGET_FILE:${program}>
      COMMAND sed -i -f ${PROJECT_SOURCE_DIR}/cmake/manual_page.sed ${page}
      COMMAND gzip -9nf ${page})
    set(dsp_pages ${dsp_pages} ${page}.gz PARENT_SCOPE)
  endif()
endfunction()
dsp_manual_page(spectrum "draw the averaged spectrum of a recording")
dsp_manual_page(tone "measure frequency, level, distortion and noise of a recorded tone")
dsp_manual_page(stream "filter sound files and change their sample rate")
dsp_manual_page(live "draw the spectrum of raw samples in the terminal")
dsp_manual_page(one_port "calibrate reflection measurements in Touchstone files")
add_custom_target(manual_pages ALL DEPENDS ${dsp_pages})
install(FILES ${dsp_pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)

install(DIRECTORY python/dsp DESTINATION lib/python3/dist-packages COMPONENT python
        FILES_MATCHING PATTERN "*.py" PATTERN py.typed PATTERN __pycache__ EXCLUDE)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/build/reference/html DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libdsp-doc
        COMPONENT documents PATTERN .nojekyll EXCLUDE)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT ${DSP_MAINTAINER})
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ
                                                WORLD_EXECUTE)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

# dsp_package(<component> <section> <summary> <description> [DEPENDS ...]): what is said in a package's control file.
function(dsp_package component section summary description)
  cmake_parse_arguments(PARSE_ARGV 4 arg "ALL" "DEPENDS" "CONTROL")
  string(TOUPPER ${component} upper)
  set(name ${dsp_debian_name_${component}})
  foreach(file copyright changelog.gz)
    install(FILES ${dsp_debian}/${file} DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} COMPONENT ${component})
  endforeach()
  set(text "${summary}\n${description}\n")
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_DESCRIPTION ${text} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${arg_DEPENDS}" PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_CONTROL_EXTRA "${arg_CONTROL}" PARENT_SCOPE)
  if(arg_ALL)
    set(CPACK_DEBIAN_${upper}_PACKAGE_ARCHITECTURE all PARENT_SCOPE)
  else()
    set(CPACK_DEBIAN_${upper}_PACKAGE_SHLIBDEPS ON PARENT_SCOPE)
  endif()
  set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${component} PARENT_SCOPE)
endfunction()

set(needs_library "libdsp${DSP_ABI} (>= ${DSP_RELEASE})")
dsp_package(runtime libs "routines for measurement signals: shared library" [[
Spectra and windows, filters and sample-rate conversion, statistics,
interpolation, trace display and one-port calibration: plain functions with
C linkage on one record of samples.
.
This package holds the shared library.]]
  CONTROL ${dsp_debian}/triggers ${dsp_debian}/symbols)
dsp_package(development libdevel "routines for measurement signals: headers and archive" [[
Spectra and windows, filters and sample-rate conversion, statistics,
interpolation, trace display and one-port calibration: plain functions with
C linkage on one record of samples.
.
This package holds what programs are built with: headers, the archive, and
the descriptions for CMake and pkg-config.]]
  DEPENDS "libdsp${DSP_ABI} (= ${DSP_RELEASE})")
dsp_package(tools science "programs that measure recorded signals" [[
dsp-spectrum draws averaged spectra of recordings, dsp-tone measures the
frequency, level, distortion and noise of a tone, dsp-stream filters sound
files and changes their rate, dsp-live draws a spectrum in the terminal, and
dsp-oneport calibrates reflection measurements in Touchstone files.]]
  DEPENDS "${needs_library}")
dsp_package(python python "routines for measurement signals: Python package" [[
Spectra and windows, filters and sample-rate conversion, statistics,
interpolation, trace display and one-port calibration, for NumPy arrays.]]
  DEPENDS "${needs_library}, python3, python3-numpy" CONTROL ${dsp_debian}/postinst ${dsp_debian}/prerm ALL)
dsp_package(documents doc "routines for measurement signals: manual and reference" [[
The manual of the library libdsp, its reference with a page for each family
of routines, and the measured figures of its accuracy and speed.]]
  ALL)
set(CPACK_DEBIAN_TOOLS_PACKAGE_RECOMMENDS "gnuplot-nox | gnuplot")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS libdsp-doc)
include(CPack)
