# The library. Every dsp/<family>/*.cpp belongs to it; a file named *.isa.cpp holds kernels and is compiled once per
# instruction set, into a namespace named by DSP_ISA (see dsp/simd/isa.h).

file(GLOB dsp_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/dsp/*/*.cpp)
set(dsp_kernels ${dsp_sources})
list(FILTER dsp_kernels INCLUDE REGEX "\\.isa\\.cpp$")
list(FILTER dsp_sources EXCLUDE REGEX "\\.isa\\.cpp$")

function(dsp_object_library name)
  add_library(${name} OBJECT ${ARGN})
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden
                                           VISIBILITY_INLINES_HIDDEN ON CXX_EXTENSIONS OFF)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_compile_definitions(${name} PRIVATE DSP_BUILDING $<$<IN_LIST:avx2,${dsp_isas}>:DSP_ISA_X86>)
  # Results must not depend on the processor, so no contraction by the compiler.
  target_compile_options(${name} PRIVATE -ffp-contract=off -fno-math-errno -fno-trapping-math)
  target_link_libraries(${name} PRIVATE dsp_options)
endfunction()

# The transform's kernels alone may fuse products with sums: they promise their results to rounding only.
set(dsp_fused_kernels ${dsp_kernels})
list(FILTER dsp_fused_kernels INCLUDE REGEX "/dsp/fft/")
set_source_files_properties(${dsp_fused_kernels} PROPERTIES COMPILE_OPTIONS -ffp-contract=fast)
# Written in vectors where they pay; making more of them costs its short transforms twice their time.
set_property(SOURCE ${PROJECT_SOURCE_DIR}/dsp/fft/fft_kernels.isa.cpp APPEND PROPERTY COMPILE_OPTIONS -fno-tree-vectorize
                                                                              -fno-tree-slp-vectorize)

set(dsp_isas baseline)
if(DSP_ISA_DISPATCH AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$" AND CMAKE_SIZEOF_VOID_P EQUAL 8)
  list(APPEND dsp_isas avx2 avx512)
endif()
# Loops that cost time are kernels; the rest is to be small, vectorised where that is cheap, and so is the baseline
# where the processor will hardly ever have no better set.
set(dsp_for_speed $<$<CONFIG:Release>:-O3>)
set(dsp_for_size "$<$<CONFIG:Release>:-O2;-ftree-vectorize>" $<$<CXX_COMPILER_ID:GNU>:-fvect-cost-model=dynamic>)
set(dsp_isa_flags_baseline ${dsp_for_speed})
if("avx2" IN_LIST dsp_isas)
  set(dsp_isa_flags_baseline ${dsp_for_size})
endif()
set(dsp_isa_flags_avx2 ${dsp_for_speed} -mavx2 -mfma)
set(dsp_isa_flags_avx512 ${dsp_for_speed} -mavx512f -mavx512dq -mavx512vl -mavx512bw -mfma -mprefer-vector-width=512)

dsp_object_library(dsp_common ${dsp_sources})
target_compile_options(dsp_common PRIVATE ${dsp_for_size})
set(dsp_objects $<TARGET_OBJECTS:dsp_common>)
foreach(isa IN LISTS dsp_isas)
  if(dsp_kernels)
    dsp_object_library(dsp_kernels_${isa} ${dsp_kernels})
    target_compile_options(dsp_kernels_${isa} PRIVATE ${dsp_isa_flags_${isa}})
    target_compile_definitions(dsp_kernels_${isa} PRIVATE DSP_ISA=${isa})
    list(APPEND dsp_objects $<TARGET_OBJECTS:dsp_kernels_${isa}>)
  endif()
endforeach()
add_library(dsp SHARED ${dsp_objects})
add_library(dsp::dsp ALIAS dsp)
set_target_properties(dsp PROPERTIES VERSION ${DSP_RELEASE} SOVERSION ${DSP_ABI} LINKER_LANGUAGE CXX)
target_include_directories(dsp INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<INSTALL_INTERFACE:include>)
target_link_libraries(dsp PRIVATE $<BUILD_INTERFACE:dsp_options>)
if(UNIX AND NOT APPLE)
  # The version script also hides std:: template instances, which visibility flags do not; -Bsymbolic binds
  # calls inside the library to its own routines even when a program defines an `invert` of its own.
  target_link_options(dsp PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map -Wl,-Bsymbolic
                      -Wl,-z,defs)
  if(DSP_SANITIZE)
    set_target_properties(dsp PROPERTIES LINK_OPTIONS
      "-Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map;-Wl,-Bsymbolic")
  endif()
  set_target_properties(dsp PROPERTIES LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
endif()

# The same objects as an archive: tests reach internals through it, and put a failing heap in place of heap.cpp.
add_library(dsp_static STATIC EXCLUDE_FROM_ALL ${dsp_objects})
set_target_properties(dsp_static PROPERTIES LINKER_LANGUAGE CXX)
target_include_directories(dsp_static INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_definitions(dsp_static INTERFACE DSP_STATIC)
